// Commands on marked lines (a numbered bookmark or a plain line mark on the line): mark the
// repeated lines, copy, cut or delete the marked ones (one undo step), clear every mark.
#include "ZvMemoControl/LineMarks.h"
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoCommandUndo.h"
#include "ZvMemoControl/ZvMemoLineBlock.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <unordered_set>

namespace zv {
namespace {

bool IsMarked(const TZvMemoStrings& lines, int row) {
    return GetBookmark(lines, row) >= 0 || HasLinemark(lines, row);
}

// Every line of the document but the empty row behind a final line end.
TLineBlock WholeDocument(const TZvMemo& memo) {
    int last = memo.RowCount() - 1;
    if (last > 0 && memo.RowLength(last) == 0 && !memo.Lines().IsLineWrapped(last))
        --last;
    return ReadLines(memo, 0, last);
}

// Whether line `i` of `block` carries a mark.
bool LineMarked(const TZvMemo& memo, const TLineBlock& block, int i) {
    return IsMarked(memo.Lines(), block.LineRows[static_cast<std::size_t>(i)]);
}

} // namespace

int TZvMemo::acnBookmarkDuplicatedLines() {
    const TLineBlock block = WholeDocument(*this);
    std::unordered_set<std::u16string_view> seen;
    seen.reserve(block.Old.Lines.size());
    int marked = 0;
    for (int i = 0; i < block.Old.Count(); ++i) {
        if (seen.insert(block.Old.Text(i)).second || LineMarked(*this, block, i))
            continue;
        ToggleLinemark(Lines(), block.LineRows[static_cast<std::size_t>(i)]);
        ++marked;
    }
    return marked;
}

std::u16string TZvMemo::MarkedLinesText() const {
    const TLineBlock block = WholeDocument(*this);
    std::u16string text;
    for (int i = 0; i < block.Old.Count(); ++i)
        if (LineMarked(*this, block, i))
            text.append(block.Old.Text(i)).push_back(u'\n');
    return text;
}

bool TZvMemo::acnCopyBookmarkedLines() {
    const std::u16string text = MarkedLinesText();
    return !text.empty() && Clipboard().SetText(text, false);
}

bool TZvMemo::acnDelBookmarkedLines() {
    if (!MayChangeText(*this))
        return false;
    const TLineBlock block = WholeDocument(*this);
    TLineList kept;
    for (int i = 0; i < block.Old.Count(); ++i)
        if (!LineMarked(*this, block, i))
            kept.Add(block.Old.Lines[static_cast<std::size_t>(i)],
                     i > 0 ? block.Old.Ends[static_cast<std::size_t>(i - 1)] : leDocument);
    if (kept.Count() == block.Old.Count())
        return false;
    const TZvPos caret = Caret();
    auto record = std::make_unique<TDelBookmarkedLinesUndo>();
    if (HasSelection())
        record->SetSelection(*this, SelStart(), SelEnd());
    if (WriteLines(*this, block, kept, std::move(record)) < 0)
        return false;
    SelectLines(*this, 0, 0, false, caret);
    return true;
}

bool TZvMemo::acnCutBookmarkedLines() {
    if (!MayChangeText(*this) || !acnCopyBookmarkedLines())
        return false;
    return acnDelBookmarkedLines();
}

void TZvMemo::acnClearBookmarks() {
    ClearMarks(Lines(), true);
    ClearMarks(Lines(), false);
}

} // namespace zv
