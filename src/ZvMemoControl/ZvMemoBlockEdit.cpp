// Commands over whole lines and word ranges: block indent and unindent, word deletes. Each is
// one undo step made of ordinary changes, so it passes the one change sequence.
#include "ZvMemoControl/ZvMemo.h"

#include "ZvMemoControl/ZvMemoStrings.h"
#include "ZvMemoControl/ZvMemoUndo.h"

namespace zv {

std::u16string TZvCustomMemo::IndentUnit() const {
    if (!FTabAsSpaces || DocState().FBinaryMode)
        return u"\t";
    return std::u16string(static_cast<std::size_t>(std::max(DocState().FTabSize, 1)), u' ');
}

namespace {

// How many leading units of `row` one unindent removes: a tab, or up to `tab` spaces (a tab
// met within them ends the stop and goes too).
int UnindentWidth(std::u16string_view row, int tab) {
    int n = 0;
    while (n < static_cast<int>(row.size()) && n < tab) {
        if (row[n] == u'\t')
            return n + 1;
        if (row[n] != u' ')
            break;
        ++n;
    }
    return n;
}

} // namespace

TIndentStyle DetectIndentStyle(const TZvMemoStrings& lines, int maxRows) {
    int tabs = 0, spaces = 0;
    const int rows = std::min(lines.Count(), maxRows);
    for (int row = 0; row < rows; ++row) {
        if (lines.IsLineWrapped(row))
            continue;
        const auto text = lines.Get(row);
        if (!text.empty() && text[0] == u'\t')
            ++tabs;
        else if (text.size() > 2 && text[0] == u' ' && text[1] == u' ')
            ++spaces;
    }
    if (tabs == spaces)
        return TIndentStyle::Unknown;
    return tabs > spaces ? TIndentStyle::Tabs : TIndentStyle::Spaces;
}

bool TZvMemo::IndentLines(bool indent) {
    if (FReadOnly || !CanEdit())
        return false;
    TZvPos s = Caret(), e = Caret();
    if (HasSelection())
        OrderedSelection(s, e);
    s.Y = std::clamp(s.Y, 0, RowCount() - 1);
    e.Y = std::clamp(e.Y, 0, RowCount() - 1);
    const int last = e.Y > s.Y && e.X == 0 ? e.Y - 1 : e.Y;
    const std::u16string unit = IndentUnit();
    const int tab = std::max(DocState().FTabSize, 1);
    bool changed = false;
    BeginUndoGroup();
    for (int row = s.Y; row <= last; ++row) {
        const auto text = RowText(row);
        if (indent && !text.empty()) {
            Change({0, row}, {0, row}, TEditText::FromString(unit, false),
                   std::make_unique<TPasteUndo>(), Caret());
            changed = true;
        } else if (!indent) {
            const int width = UnindentWidth(text, tab);
            if (width > 0)
                changed = DeleteRange({0, row}, {width, row}, std::make_unique<TDeleteBufUndo>()) ||
                          changed;
        }
    }
    EndUndoGroup();
    if (s.Y != last || HasSelection())
        SetSelection({0, s.Y},
                     last + 1 < RowCount() ? TZvPos{0, last + 1} : TZvPos{RowLength(last), last});
    return changed;
}

bool TZvMemo::acnIndent() {
    return IndentLines(true);
}

bool TZvMemo::acnUnIndent() {
    return IndentLines(false);
}

bool TZvMemo::DeleteToWordStep(int dx) {
    if (FReadOnly || !CanEdit())
        return false;
    if (HasSelection())
        return DeleteSelection();
    const TZvPos caret = ClipToText(Caret());
    if (dx > 0 && FCurX >= RowLength(FCurY))
        return DeleteChar(); // at or past the row's end: joins the next line, padding first
    const TZvPos target = WordStep(caret, dx);
    const TZvPos from = dx > 0 ? caret : target, to = dx > 0 ? target : caret;
    return DeleteRange(from, to, std::make_unique<TDeleteBufUndo>());
}

bool TZvMemo::acnDeleteWord() {
    return DeleteToWordStep(1);
}

bool TZvMemo::acnDeletePreviousWord() {
    return DeleteToWordStep(-1);
}

} // namespace zv
