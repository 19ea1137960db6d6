// Insertion: typed characters (with auto-close of brackets and quotes, and enclosing a
// selection), overtype, Enter with auto-indent, tabs, and text insertion. Each ends in the one
// change sequence.
#include "ZvMemoControl/ZvMemo.h"

#include "ZvMemoControl/WrapRows.h"
#include "ZvMemoControl/ZvMemoRows.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "ZvMemoControl/ZvUniUtils.h"

#include <unicode/uchar.h>

namespace zv {
namespace {

constexpr std::u16string_view kTextOpeners = u"({[\"";
constexpr std::u16string_view kTextClosers = u")}]\"";

bool IsQuote(char16_t c) {
    return c == u'"' || c == u'\'';
}

} // namespace

TEditText TZvCustomMemo::PaddingFor(TZvPos caret) const {
    TEditText pad;
    const int len = RowLength(caret.Y);
    if (caret.X > len && !RowsAreCut(DocState()))
        pad.Rows.front().Assign(std::u16string(static_cast<std::size_t>(caret.X - len), u' '));
    return pad;
}

// Puts `text` in place of the selection, or at the caret (padding virtual space with
// spaces), and records it with `record`.
TZvPos TZvCustomMemo::InsertAtCaret(const TEditText& text, std::unique_ptr<TUndo> record) {
    EnsureRow(FCurY);
    const TZvPos caret = Caret();
    if (HasSelection() && !FColumnMode) {
        TZvPos s, e;
        OrderedSelection(s, e);
        const TZvPos start = Unwrapped(SelStart()), end = Unwrapped(SelEnd());
        record->FUndoSelStartX = start.X;
        record->FUndoSelStartY = start.Y;
        record->FUndoSelEndX = end.X;
        record->FUndoSelEndY = end.Y;
        return Change(ClipToText(s), ClipToText(e), text, std::move(record), caret);
    }
    TEditText padded = PaddingFor(caret);
    if (padded.Empty())
        return Change(caret, caret, text, std::move(record), caret);
    padded.Append(text);
    const TZvPos at{RowLength(caret.Y), caret.Y};
    return Change(at, at, padded, std::move(record), caret);
}

bool TZvCustomMemo::InsertChar(char16_t c) {
    if (FReadOnly || !CanEdit())
        return false;
    std::u16string text(1, c);
    if (c == 26) {
        text = u"\t"; // a literal tab, never expanded
        c = u'\t';
    } else if (c == u'\t' && FTabAsSpaces && !DocState().FBinaryMode) {
        const int visual = FromRealCursorPos(FCurY, FCurX), tab = std::max(DocState().FTabSize, 1);
        text.assign(static_cast<std::size_t>(tab - visual % tab), u' ');
    }
    if (FOverwrite && !HasSelection() && c != u'\t')
        return OverwriteChar(c);
    std::unique_ptr<TUndo> record;
    if (HasSelection())
        record = std::make_unique<TReplaceUndo>();
    else if (c == u'\t')
        record = std::make_unique<TPasteUndo>(); // a tab key never merges with letters
    else
        record = std::make_unique<TInsertCharUndo>();
    InsertAtCaret(TEditText::FromString(text, true), std::move(record));
    HardWrapRow(FCurY);
    return true;
}

bool TZvCustomMemo::OverwriteChar(char16_t c) {
    if (FReadOnly || !CanEdit())
        return false;
    EnsureRow(FCurY);
    const auto row = RowText(FCurY);
    if (HasSelection() || FCurX >= static_cast<int>(row.size())) {
        const bool over = FOverwrite;
        FOverwrite = false;
        InsertChar(c);
        FOverwrite = over;
        return true;
    }
    const TZvPos from = Caret();
    const TZvPos to{Breaks().NextCluster(row, FCurX), FCurY};
    TEditText text;
    text.Rows.front().Assign(std::u16string_view(&c, 1));
    Change(from, to, text, std::make_unique<TOverwriteCharUndo>(), from);
    return true;
}

// The blanks that start the caret's logical line, up to the caret.
std::u16string TZvCustomMemo::IndentForEnter() const {
    const int first = FLines->GetWrappedMainLineNumber(FCurY);
    const auto row = RowText(first);
    const int limit = first == FCurY ? std::min(FCurX, static_cast<int>(row.size()))
                                     : static_cast<int>(row.size());
    int n = 0;
    while (n < limit && (row[n] == u' ' || row[n] == u'\t'))
        ++n;
    std::u16string indent(row.substr(0, static_cast<std::size_t>(n)));
    if (FTabAsSpaces)
        WConvertTabToSpace(indent, std::max(DocState().FTabSize, 1), u' ');
    if (!FIndentAfter.empty() && first == FCurY) {
        // An opening the syntax names ("{", ":") as the last thing left of the caret.
        int end = std::min(FCurX, static_cast<int>(row.size()));
        while (end > 0 && CharIsWhiteSpace(row[end - 1], true))
            --end;
        if (end > 0 && FIndentAfter.find(row[end - 1]) != std::u16string::npos)
            indent += IndentUnit();
    }
    return indent;
}

bool TZvCustomMemo::EnterPress() {
    if (FReadOnly || FSyncEditMode || !CanEdit())
        return false;
    if (CaretsActive())
        return EditAtCarets(TCaretEdit::Enter);
    EnsureRow(FCurY);
    if (FOverwrite && !FDoc->FChangeHistoryUndo) {
        if (HasSelection())
            DeleteSelection();
        SetTextCursor(FCurX, NextVisibleRow(FCurY));
        return true;
    }
    const std::u16string indent = FAutoIndent ? IndentForEnter() : std::u16string();
    TEditText text;
    text.Rows.emplace_back(indent);
    text.Ends.push_back(leDocument);
    std::unique_ptr<TUndo> record;
    if (HasSelection()) {
        record = std::make_unique<TReplaceUndo>();
    } else {
        record = std::make_unique<TInsertCharUndo>();
        FCurX = std::min(FCurX, RowLength(FCurY)); // Enter past the end adds no blanks
    }
    InsertAtCaret(text, std::move(record));
    FUpdate = true;
    return true;
}

bool TZvCustomMemo::InsertText(std::u16string_view text, bool moveToEnd) {
    if (FReadOnly || !CanEdit())
        return false;
    std::u16string expanded(text);
    if (!DocState().FPreserveTab && !DocState().FBinaryMode)
        WConvertTabToSpace(expanded, std::max(DocState().FTabSize, 1), u' ');
    TZvPos start, end;
    OrderedSelection(start, end);
    if (!HasSelection())
        start = Caret();
    std::unique_ptr<TUndo> record;
    if (HasSelection())
        record = std::make_unique<TReplaceUndo>();
    else
        record = std::make_unique<TPasteUndo>();
    InsertAtCaret(TEditText::FromString(expanded, true), std::move(record));
    if (!moveToEnd || FPasteDoNotMoveCursor)
        SetTextCursor(start.X, start.Y);
    return true;
}

bool TZvCustomMemo::InsertTab() {
    if (FReadOnly || !CanEdit())
        return false;
    if (FSmartTab && FCurY > 0 && !FOverwrite && !HasSelection() && !FColumnMode) {
        const auto above = RowText(FCurY - 1);
        const int visual = FromRealCursorPos(FCurY, FCurX);
        int col = ToRealCursorPos(FCurY - 1, visual);
        while (col < static_cast<int>(above.size()) && !CharIsWhiteSpace(above[col], true))
            ++col;
        while (col < static_cast<int>(above.size()) && CharIsWhiteSpace(above[col], true))
            ++col;
        const int target = FromRealCursorPos(FCurY - 1, col);
        if (col < static_cast<int>(above.size()) && target > visual)
            return InsertText(std::u16string(static_cast<std::size_t>(target - visual), u' '));
    }
    return FOverwrite ? OverwriteChar(u'\t') : InsertChar(u'\t');
}

// ---- Typed characters -------------------------------------------------------------------

bool TZvCustomMemo::KeyPress(char16_t c) {
    switch (c) {
    case u'\r':
    case u'\n':
        return EnterPress();
    case u'\b':
        return Backspace();
    case u'\t':
        return InsertTab();
    default:
        break;
    }
    if ((c < 32 && c != 26) || c == 127)
        return false;
    if (CaretsActive())
        return EditAtCarets(TCaretEdit::Char, c);
    if (SyncActive() && SyncEdit(TCaretEdit::Char, c))
        return true;
    if (HasSelection() && !FColumnMode && TryEnclose(c))
        return true;
    if (!HasSelection() && !FColumnMode && TryAutoClose(c))
        return true;
    return InsertChar(c);
}

// A bracket or quote typed over a selection encloses it, when the options say so.
bool TZvCustomMemo::TryEnclose(char16_t c) {
    constexpr std::u16string_view brackets = u"([{", partners = u")]}";
    const auto at = brackets.find(c);
    if (FEncloseSelectionWithParenthesis && at != std::u16string_view::npos)
        return EncloseSelection(std::u16string_view(&c, 1), partners.substr(at, 1));
    if (FEncloseSelectionWithQuotes && IsQuote(c))
        return EncloseSelection(std::u16string_view(&c, 1), std::u16string_view(&c, 1));
    return false;
}

bool TZvCustomMemo::EncloseSelection(std::u16string_view open, std::u16string_view close) {
    if (FReadOnly || !CanEdit() || !HasSelection() || FColumnMode)
        return false;
    TZvPos s, e;
    OrderedSelection(s, e);
    s = ClipToText(s);
    e = ClipToText(e);
    TEditText text = TEditText::FromString(open, true);
    text.Append(ExtractText(*FLines, s, e)); // the enclosed text keeps its own line ends
    text.Append(TEditText::FromString(close, true));
    const auto openLength = static_cast<int>(open.size());
    InsertAtCaret(text, std::make_unique<TReplaceUndo>());
    SetSelection({s.X + openLength, s.Y}, {e.Y == s.Y ? e.X + openLength : e.X, e.Y});
    return true;
}

// Brackets and quotes typed with auto-close on: steps over a typed closer, or adds the
// partner of an opener. Returns false when the character is to be inserted plainly.
bool TZvCustomMemo::TryAutoClose(char16_t c) {
    std::u16string_view openers, closers;
    if (FHasSyntax && FAutoCloseBraces) {
        openers = FAutoCloseBraceStart;
        closers = FAutoCloseBraceEnd;
    } else if (!FHasSyntax && FAutoCloseBracesText) {
        openers = kTextOpeners;
        closers = kTextClosers;
    } else {
        return false;
    }
    if (FReadOnly || !CanEdit())
        return false;
    const auto row = RowText(FCurY);
    const int x = FCurX, len = static_cast<int>(row.size());
    const char16_t left = x > 0 && x <= len ? row[x - 1] : 0;
    const char16_t right = x < len ? row[x] : 0;
    const auto closeAt = closers.find(c);
    if (closeAt != std::u16string_view::npos && closeAt < openers.size() && x > 0 &&
        left == openers[closeAt] && right == c) {
        SetTextCursor(x + 1, FCurY);
        return true;
    }
    const auto openAt = openers.find(c);
    if (openAt == std::u16string_view::npos || openAt >= closers.size())
        return false;
    InsertChar(c);
    const char16_t partner = closers[openAt];
    if (IsQuote(c) && (u_isalnum(left) || left > 255))
        return true;
    if (right != 0 && right != u' ' && right != u'\t' && !IsQuote(c))
        return true;
    if (IsQuote(c) && right != 0 &&
        (closers.find(right) == std::u16string_view::npos || IsQuote(right)))
        return true;
    if (FHasSyntax && InCommentOrString(Caret()))
        return true;
    InsertChar(partner);
    SetTextCursor(FCurX - 1, FCurY);
    return true;
}

} // namespace zv
