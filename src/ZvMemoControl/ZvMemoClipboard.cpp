// Clipboard and pasting: copy and cut (with the whole-line form), paste, the re-indenting
// paste, and dropping dragged text (a move is one undo step).
#include "ZvMemoControl/ZvMemo.h"

#include "ZvMemoControl/ZvMemoStrings.h"
#include "ZvMemoControl/ZvUniUtils.h"

namespace zv {
namespace {

std::u16string ToLf(std::u16string_view text) {
    return TEditText::FromString(text, false).ToLfString();
}

} // namespace

bool TZvCustomMemo::SplitClipboardText(std::u16string& text) {
    const auto zero = text.find(u'\0');
    if (zero == std::u16string::npos)
        return false;
    const bool mark = text.find(u'\1', zero) != std::u16string::npos;
    text.resize(zero);
    return mark;
}

bool TZvCustomMemo::CanCopy() const {
    return HasSelection() || FCopyLineToClipboard || !TokenAtCursor().empty();
}

bool TZvCustomMemo::CanPaste() const {
    return !FReadOnly;
}

bool TZvCustomMemo::CopyToClipboard() {
    std::u16string text;
    bool wholeLine = false;
    if (FMultiEditMode || (FColumnMode && HasSelection())) {
        text = CaretsText();
    } else if (HasSelection()) {
        text = GetSelection();
    } else if (FCopyLineToClipboard) {
        int rows = 0;
        text = FLines->GetUnwrappedLine(FCurY, rows);
        text += u"\n";
        wholeLine = true;
    } else {
        text = TokenAtCursor();
    }
    if (FOnClipboard) {
        bool handled = false;
        FOnClipboard(text, handled);
        if (handled)
            return true;
    }
    if (text.empty())
        return false;
    if (!Clipboard().SetText(ToLf(text), wholeLine)) {
        if (FServices.Prompt)
            FServices.Prompt->ShowMessage("Cannot access the clipboard!");
        return false;
    }
    return true;
}

bool TZvCustomMemo::CutToClipboard() {
    if (FReadOnly || !CanEdit())
        return false;
    if (CaretsActive())
        return CutAtCarets();
    const bool wholeLine = !HasSelection() && FCopyLineToClipboard;
    if (!CopyToClipboard())
        return false;
    if (wholeLine) {
        const int first = FLines->GetWrappedMainLineNumber(FCurY);
        const int last = first + FLines->GetWrappedLineCount(first) - 1;
        if (last + 1 < RowCount())
            SetSelection({0, first}, {0, last + 1});
        else if (first > 0)
            SetSelection({RowLength(first - 1), first - 1}, {RowLength(last), last});
        else
            SetSelection({0, first}, {RowLength(last), last});
    }
    return DeleteSelection();
}

bool TZvCustomMemo::PasteFromClipboard(bool addLineEnd) {
    if (FReadOnly || !CanEdit())
        return false;
    std::u16string text;
    bool wholeLine = false;
    bool handled = false;
    if (FOnClipboard)
        FOnClipboard(text, handled);
    if (!handled) {
        if (!Clipboard().GetText(text, wholeLine))
            return false;
        wholeLine = SplitClipboardText(text) || wholeLine;
    }
    if (addLineEnd)
        text += u"\r\n";
    if (text.empty())
        return false;
    if (CaretsActive())
        return PasteAtCarets(text);
    return SmartPasteText(text, wholeLine);
}

// Lines after the first move by (target - their smallest indent) columns.
std::u16string TZvCustomMemo::ReindentForPaste(std::u16string_view text, int target) const {
    TEditText lines = TEditText::FromString(text, true);
    std::vector<std::u16string> rows;
    int least = target;
    for (std::size_t i = 0; i < lines.Rows.size(); ++i) {
        std::u16string row(lines.Rows[i].View());
        WConvertTabToSpace(row, std::max(DocState().FTabSize, 1), u' ');
        if (i > 0 && !row.empty()) {
            const auto indent = static_cast<int>(std::min(row.find_first_not_of(u' '), row.size()));
            least = std::min(least, indent);
        }
        rows.push_back(std::move(row));
    }
    const int shift = target - least;
    std::u16string out;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        std::u16string row = std::move(rows[i]);
        if (i > 0) {
            out += u"\r\n";
            if (shift > 0 && !row.empty())
                row.insert(0, static_cast<std::size_t>(shift), u' ');
            else if (shift < 0)
                row.erase(0,
                          std::min<std::size_t>(static_cast<std::size_t>(-shift),
                                                std::min(row.find_first_not_of(u' '), row.size())));
        }
        out += row;
    }
    return out;
}

bool TZvCustomMemo::SmartPasteText(std::u16string_view text, bool atLineStart, bool forceSmart,
                                   int cursorAt, bool useSel) {
    if (FReadOnly || !CanEdit())
        return false;
    std::u16string work(text);
    if (useSel) {
        const std::u16string sel = GetSelection();
        work = work.find(u"[[sel]]") != std::u16string::npos
                   ? WStringReplace(work, u"[[sel]]", sel, true, false)
                   : WStringReplace(work, u"%sel%", sel, true, false);
    }
    if (atLineStart) {
        // A whole line goes in above the caret's row; the caret keeps its place in its line.
        const TZvPos caret = Caret();
        ClearSelection();
        SetTextCursor(0, caret.Y);
        auto record = std::make_unique<TPasteUndo>();
        record->FInsertAtBOL = true;
        const TEditText lines = TEditText::FromString(work, true);
        const TZvPos end = Change({0, caret.Y}, {0, caret.Y}, lines, std::move(record), caret);
        SetTextCursor(caret.X, end.Y);
        return true;
    }
    if ((forceSmart || FSmartPaste) && !DocState().FBinaryMode) {
        TZvPos s, e;
        OrderedSelection(s, e);
        work = ReindentForPaste(work, FromRealCursorPos(s.Y, s.X));
    }
    const TZvPos start = HasSelection() ? std::min(SelStart(), SelEnd()) : Caret();
    InsertText(work);
    if (cursorAt >= 0) {
        const std::int64_t base = FLines->GetCharPosFromXY(start.X, start.Y);
        int x = 0, y = 0;
        FLines->GetXYFromCharPos(base + cursorAt, x, y, true);
        SetTextCursor(x, y);
    }
    return true;
}

bool TZvCustomMemo::DropText(int x, int y, std::u16string_view text, bool move) {
    if (FReadOnly || !CanEdit() || text.empty())
        return false;
    TZvPos drop = ClipToText({x, y});
    if (!move || !HasSelection()) {
        ClearSelection();
        SetTextCursor(drop.X, drop.Y);
        return InsertText(text);
    }
    TZvPos s, e;
    OrderedSelection(s, e);
    s = ClipToText(s);
    e = ClipToText(e);
    if (drop > s && drop < e)
        return false; // dropped into itself
    // Where the drop point lands once the selection is gone.
    if (drop >= e) {
        if (drop.Y == e.Y)
            drop = {s.X + (drop.X - e.X), s.Y};
        else
            drop.Y -= e.Y - s.Y;
    }
    auto del = std::make_unique<TDeleteBufUndo>();
    del->SetSelection(*this, SelStart(), SelEnd());
    del->FDragDrop = true;
    Change(s, e, TEditText(), std::move(del), Caret());
    auto paste = std::make_unique<TPasteUndo>();
    paste->FDragDrop = true;
    // The moved text keeps its own line ends.
    const TZvPos end =
        Change(drop, drop, TEditText::FromString(text, false), std::move(paste), drop);
    SetSelection(drop, end);
    return true;
}

} // namespace zv
