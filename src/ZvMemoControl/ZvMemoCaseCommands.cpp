// Case commands: upper, lower, inverted and capitalized case of the selection or the word at
// the caret, by simple code point mapping, as one change.
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoLineBlock.h"
#include "ZvMemoControl/ZvMemoRows.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "ZvMemoControl/ZvMemoUndo.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

namespace zv {

namespace {

enum class TCaseKind { Upper, Lower, Invert, Capitalize };

bool IsApostrophe(UChar32 c) {
    return c == u'\'' || c == 0x2019;
}

// Appends `in` mapped to `out`; whether anything changed. A row starts outside a word.
bool MapCase(std::u16string_view in, TCaseKind kind, std::u16string& out) {
    bool changed = false, inWord = false;
    UChar32 prev = 0;
    for (std::size_t i = 0; i < in.size();) {
        UChar32 c;
        U16_NEXT(in.data(), i, in.size(), c);
        UChar32 m = c;
        switch (kind) {
        case TCaseKind::Upper:
            m = u_toupper(c);
            break;
        case TCaseKind::Lower:
            m = u_tolower(c);
            break;
        case TCaseKind::Invert:
            m = u_isupper(c) ? u_tolower(c) : u_islower(c) ? u_toupper(c) : c;
            break;
        case TCaseKind::Capitalize:
            if (u_isalpha(c))
                m = inWord ? u_tolower(c) : u_totitle(c);
            // An apostrophe continues a word only after a letter ("don't").
            inWord = u_isalpha(c) || u_isdigit(c) || (IsApostrophe(c) && u_isalpha(prev));
            break;
        }
        prev = c;
        changed = changed || m != c;
        if (U_IS_BMP(m)) {
            out.push_back(static_cast<char16_t>(m));
        } else {
            out.push_back(U16_LEAD(m));
            out.push_back(U16_TRAIL(m));
        }
    }
    return changed;
}

bool ChangeCase(TZvMemo& memo, TCaseKind kind) {
    if (!MayChangeText(memo))
        return false;
    // Each caret's selection or word, or each block row's part (none in a short row), one step.
    if (memo.AtSeveralPlaces())
        return memo.EditAtEveryCaret([&memo, kind] {
            return (memo.FMultiEditMode || memo.HasSelection()) && ChangeCase(memo, kind);
        });
    TZvPos s, e;
    const bool selected = memo.HasSelection();
    if (selected) {
        memo.OrderedSelection(s, e);
        s = {std::min(s.X, memo.RowLength(s.Y)), s.Y};
        e = {std::min(e.X, memo.RowLength(e.Y)), e.Y};
    } else {
        int start = 0;
        const std::u16string word = memo.WordAtCursorPos(start, false);
        if (start == 0)
            return false;
        s = e = {start - 1, memo.Caret().Y};
        e.X += static_cast<int>(word.size());
    }
    TEditText text = ExtractText(memo.Lines(), s, e);
    TRowArena arena;
    std::u16string out;
    bool changed = false;
    for (TRowText& row : text.Rows) {
        out.clear();
        if (MapCase(row.View(), kind, out)) {
            row = arena.Add(out);
            changed = true;
        }
    }
    if (!changed)
        return false;
    const TZvPos caret = memo.Caret();
    auto record = std::make_unique<TReplaceUndo>();
    if (selected)
        record->SetSelection(memo, memo.SelStart(), memo.SelEnd());
    const TZvPos end = memo.Change(s, e, text, std::move(record), caret);
    if (selected)
        memo.SetSelection(s, end);
    else
        memo.SetTextCursor(caret.X, caret.Y);
    return true;
}

} // namespace

bool TZvMemo::acnUpperCase() {
    return ChangeCase(*this, TCaseKind::Upper);
}

bool TZvMemo::acnLowerCase() {
    return ChangeCase(*this, TCaseKind::Lower);
}

bool TZvMemo::acnInvertCase() {
    return ChangeCase(*this, TCaseKind::Invert);
}

bool TZvMemo::acnCapitalize() {
    return ChangeCase(*this, TCaseKind::Capitalize);
}

} // namespace zv
