// Replacement texts (escapes, groups, preserve case) and the single and replace-all edits.
#include "ZvMemoControl/SearchReplace.h"

#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoCommandUndo.h"
#include "ZvMemoControl/ZvMemoLineBlock.h"
#include "ZvMemoControl/ZvMemoRows.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <unicode/uchar.h>

#include <algorithm>

namespace zv {
namespace {

int HexDigit(char16_t c) {
    if (c >= u'0' && c <= u'9')
        return c - u'0';
    if (c >= u'a' && c <= u'f')
        return c - u'a' + 10;
    if (c >= u'A' && c <= u'F')
        return c - u'A' + 10;
    return -1;
}

void AppendCodePoint(std::u16string& out, std::uint32_t code) {
    if (code > 0x10FFFF)
        code = 0xFFFD;
    if (code < 0x10000) {
        out.push_back(static_cast<char16_t>(code));
    } else {
        out.push_back(static_cast<char16_t>(0xD7C0 + (code >> 10)));
        out.push_back(static_cast<char16_t>(0xDC00 + (code & 0x3FF)));
    }
}

bool IsLetter(char16_t c) {
    return u_isalpha(c);
}

// A group number at `i` of `s`: one digit, or digits in braces (`i` is moved past it).
int GroupNumber(std::u16string_view s, std::size_t& i) {
    if (i < s.size() && s[i] >= u'0' && s[i] <= u'9')
        return s[i++] - u'0';
    if (i < s.size() && s[i] == u'{') {
        std::size_t j = i + 1;
        int n = 0;
        while (j < s.size() && s[j] >= u'0' && s[j] <= u'9' && n < 100000)
            n = n * 10 + (s[j++] - u'0');
        if (j > i + 1 && j < s.size() && s[j] == u'}') {
            i = j + 1;
            return n;
        }
    }
    return -1;
}

// The rows of the text behind a replace-all, built while the hits are walked: rows that no
// hit touches are the store's own (shared), changed ones go into an arena.
class TReplaceBuilder {
public:
    TReplaceBuilder(const TZvMemoStrings& lines, int firstRow)
        : FLines(lines), FFirst(firstRow), FAt{0, firstRow} {
        FOut.Rows.clear();
    }
    // Copies the text up to `start`, then `replacement` (its line ends the document's), and
    // goes on behind `end`.
    void Replace(TZvPos start, TZvPos end, std::u16string_view replacement) {
        CopyTo(start);
        std::size_t piece = 0;
        for (std::size_t i = 0; i < replacement.size(); ++i) {
            const char16_t c = replacement[i];
            if (c != u'\r' && c != u'\n')
                continue;
            FRow.append(replacement.substr(piece, i - piece));
            EmitRow(-1);
            if (c == u'\r' && i + 1 < replacement.size() && replacement[i + 1] == u'\n')
                ++i;
            piece = i + 1;
        }
        FRow.append(replacement.substr(piece));
        FAt = end;
        FTouched = true;
    }
    // The text from the first row to the end of the last hit's row, and its range.
    TEditText Finish(TZvPos& from, TZvPos& to) {
        const int last = FAt.Y;
        CopyTo({FLines.GetLineLength(last), last});
        EmitRow(-1);
        from = {0, FFirst};
        to = {FLines.GetLineLength(last), last};
        const TEditText old = ExtractText(FLines, from, to);
        for (std::size_t i = 0; i + 1 < FEndOf.size(); ++i)
            FOut.Ends.push_back(FEndOf[i] < 0 ? leDocument
                                              : old.Ends[static_cast<std::size_t>(FEndOf[i])]);
        return std::move(FOut);
    }

private:
    // Copies the old text from FAt up to `p`; rows passed whole end with their own line end.
    void CopyTo(TZvPos p) {
        while (FAt.Y < p.Y) {
            if (!FTouched && FRow.empty() && FAt.X == 0) {
                FOut.Rows.push_back(FLines.GetRowText(FAt.Y));
                FEndOf.push_back(FAt.Y - FFirst);
            } else {
                FRow.append(FLines.Get(FAt.Y).substr(static_cast<std::size_t>(FAt.X)));
                EmitRow(FAt.Y - FFirst);
            }
            FAt = {0, FAt.Y + 1};
        }
        const std::u16string_view row = FLines.Get(p.Y);
        const auto from = std::min(static_cast<std::size_t>(FAt.X), row.size());
        FRow.append(row.substr(from, static_cast<std::size_t>(std::max(p.X - FAt.X, 0))));
        FAt = p;
    }
    // Ends the row being built; `oldEnd` is the index of the old line end behind it (-1: a
    // line end of the replacement, or the last row, whose end is dropped by Finish).
    void EmitRow(int oldEnd) {
        FOut.Rows.push_back(FArena.Add(FRow));
        FEndOf.push_back(oldEnd);
        FRow.clear();
        FTouched = false;
    }

    const TZvMemoStrings& FLines;
    const int FFirst;
    TZvPos FAt;              // the old text is copied up to here
    std::u16string FRow;     // the row being built
    bool FTouched = false;   // FRow holds replaced text
    TEditText FOut;          // Invariant: FEndOf.size() == FOut.Rows.size()
    std::vector<int> FEndOf; // per row: old line end behind it, or -1
    TRowArena FArena;
};

} // namespace

std::u16string ProcessRegExReplace(std::u16string_view text) {
    std::u16string out;
    out.reserve(text.size());
    bool escaped = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        if (c == u'\\') {
            escaped = !escaped;
            out.push_back(c);
            continue;
        }
        if (!escaped) {
            out.push_back(c);
            continue;
        }
        escaped = false;
        switch (c) {
        case u'a':
            out.back() = 0x07;
            break;
        case u'e':
            out.back() = 0x1B;
            break;
        case u'f':
            out.back() = 0x0C;
            break;
        case u't':
            out.back() = 0x09;
            break;
        case u'n':
        case u'r':
            out.back() = u'\r';
            out.push_back(u'\n');
            if (c == u'r' && i + 2 < text.size() && text[i + 1] == u'\\' && text[i + 2] == u'n')
                i += 2;
            break;
        case u'x': {
            std::uint32_t code = 0;
            std::size_t j = i + 1;
            while (j < text.size() && HexDigit(text[j]) >= 0 && code <= 0x10FFFF)
                code = code * 16 + static_cast<std::uint32_t>(HexDigit(text[j++]));
            if (j == i + 1) {
                out.push_back(c);
                break;
            }
            out.pop_back();
            AppendCodePoint(out, code);
            i = j - 1;
            break;
        }
        default:
            out.push_back(c);
        }
    }
    return out;
}

std::u16string MatchCaseByLetter(std::u16string_view model, std::u16string_view text) {
    std::u16string out(text);
    std::size_t i = 0, j = 0;
    bool upper = false;
    const auto toCase = [](char16_t c, bool up) {
        return static_cast<char16_t>(up ? u_toupper(c) : u_tolower(c));
    };
    while (i < model.size() && j < out.size()) {
        const char16_t m = model[i], t = out[j];
        if (!IsLetter(t) && IsLetter(m)) {
            ++i;
        } else if (IsLetter(t) && !IsLetter(m)) {
            out[j++] = toCase(t, upper);
        } else if (u_isupper(m) && u_islower(t)) {
            out[j++] = toCase(t, true);
            upper = true;
            ++i;
        } else if (u_islower(m) && u_isupper(t)) {
            out[j++] = toCase(t, false);
            upper = false;
            ++i;
        } else {
            upper = u_isupper(m);
            ++i;
            ++j;
        }
    }
    if (i >= model.size())
        for (; j < out.size() && IsLetter(out[j]); ++j)
            out[j] = toCase(out[j], upper);
    return out;
}

std::u16string ExpandReplacement(std::u16string_view replacement, const TMatchGroups& groups) {
    std::u16string out;
    out.reserve(replacement.size());
    for (std::size_t i = 0; i < replacement.size();) {
        const char16_t c = replacement[i];
        if ((c == u'\\' || c == u'$') && i + 1 < replacement.size()) {
            if (replacement[i + 1] == c) {
                out.push_back(c);
                i += 2;
                continue;
            }
            std::size_t j = i + 1;
            const int group = GroupNumber(replacement, j);
            if (group >= 0) {
                out.append(groups.Group(group));
                i = j;
                continue;
            }
        }
        out.push_back(c);
        ++i;
    }
    return out;
}

std::u16string TReplacement::For(const TTextSearch& search, const TMatchGroups& groups) const {
    std::u16string text = (search.Options() & frRegExp) ? ExpandReplacement(Text, groups) : Text;
    return PreserveCase ? MatchCaseByLetter(groups.Group(0), text) : text;
}

bool ReplaceSelection(TZvMemo& memo, const TTextSearch& search, const TReplacement& replacement) {
    if (!memo.HasSelection() || !MayChangeText(memo))
        return false;
    TZvPos start, end;
    memo.OrderedSelection(start, end);
    std::optional<std::u16string> text;
    search.ForEach(memo.Lines(), start, end, [&](const TSearchHit& hit, const TMatchGroups& g) {
        if (hit.Start == start && hit.End == end)
            text = replacement.For(search, g);
        return false;
    });
    return text && memo.InsertText(*text);
}

std::int64_t ReplaceAll(TZvMemo& memo, const TTextSearch& search, const TReplacement& replacement,
                        TZvPos from, TZvPos to) {
    if (!MayChangeText(memo))
        return 0;
    const TZvMemoStrings& lines = memo.Lines();
    std::optional<TReplaceBuilder> builder;
    const std::int64_t count =
        search.ForEach(lines, from, to, [&](const TSearchHit& hit, const TMatchGroups& g) {
            if (!builder)
                builder.emplace(lines, hit.Start.Y);
            builder->Replace(hit.Start, hit.End, replacement.For(search, g));
            return true;
        });
    if (count == 0)
        return 0;
    TZvPos changeFrom, changeTo;
    const TEditText text = builder->Finish(changeFrom, changeTo);
    auto record = std::make_unique<TReplaceAllUndo>();
    if (memo.HasSelection())
        record->SetSelection(memo, memo.SelStart(), memo.SelEnd());
    const TZvPos caret = memo.Caret();
    memo.Change(changeFrom, changeTo, text, std::move(record), caret);
    const int row = std::clamp(caret.Y, 0, memo.RowCount() - 1);
    memo.SetTextCursor(std::min(caret.X, memo.RowLength(row)), row);
    return count;
}

} // namespace zv
