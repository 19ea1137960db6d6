// Commands that rewrite characters inside lines: tabs to spaces and back, removing a set of
// characters, removing zero-width characters.
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoCommandUndo.h"
#include "ZvMemoControl/ZvMemoLineBlock.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "ZvMemoControl/ZvUniUtils.h"

#include <unicode/utf16.h>

#include <algorithm>
#include <functional>

namespace zv {

namespace {

bool IsBlankUnit(char16_t c) {
    return c == u' ' || c == u'\t';
}

// Blanks that reach a tab stop become one tab, except a single space that a non-blank
// follows. Returns the tabs written in place of blanks.
int SpacesToTabs(std::u16string_view line, int tab, std::u16string& out) {
    int col = 0, made = 0;
    std::size_t pending = 0; // blanks since the last stop or character, not yet written
    bool pendingTab = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char16_t c = line[i];
        if (!IsBlankUnit(c)) {
            out.append(line.substr(i - pending, pending));
            pending = 0;
            pendingTab = false;
            out.push_back(c);
            ++col;
            continue;
        }
        col = c == u'\t' ? (col / tab + 1) * tab : col + 1;
        ++pending;
        pendingTab = pendingTab || c == u'\t';
        if (col % tab != 0)
            continue;
        const bool lone =
            pending == 1 && !pendingTab && (i + 1 == line.size() || !IsBlankUnit(line[i + 1]));
        if (lone) {
            out.push_back(u' ');
        } else {
            out.push_back(u'\t');
            made += !(pending == 1 && pendingTab);
        }
        pending = 0;
        pendingTab = false;
    }
    out.append(line.substr(line.size() - pending));
    return made;
}

bool IsZeroWidth(char32_t c) {
    return c == 0x200B || c == 0x200C || c == 0x200D || c == 0x2060 || c == 0xFEFF;
}

// Removes the code points `drop` picks from every line of the command's range (a surrogate
// pair is one code point: both halves go or stay).
template <typename Drop> bool RemoveCodePoints(TZvMemo& memo, Drop drop) {
    return RunLineCommand(memo, false, std::make_unique<TReplaceAllUndo>(),
                          [&](const TLineList& lines, TLineList& result) {
                              MapLines(lines, result,
                                       [&](std::u16string_view line, std::u16string& out) {
                                           for (std::size_t i = 0; i < line.size();) {
                                               const std::size_t start = i;
                                               char32_t c;
                                               U16_NEXT(line.data(), i, line.size(), c);
                                               if (!drop(c))
                                                   out.append(line.substr(start, i - start));
                                           }
                                           return out.size() != line.size();
                                       });
                          });
}

// A blank conversion over the command's lines: `convert` writes a line's new text and
// returns how many blanks or tabs it replaced, 0 for a line it leaves alone. The counts go
// to FTabCharsReplaced and FTabCharsChangedLines.
using TBlankConversion = std::function<int(std::u16string_view line, std::u16string& out)>;
bool ConvertBlanks(TZvMemo& memo, const TBlankConversion& convert) {
    int replaced = 0, changedLines = 0;
    const bool changed = RunLineCommand(
        memo, false, std::make_unique<TReplaceAllUndo>(),
        [&](const TLineList& lines, TLineList& result) {
            MapLines(lines, result, [&](std::u16string_view line, std::u16string& out) {
                const int n = convert(line, out);
                replaced += n;
                changedLines += n > 0;
                return n > 0;
            });
        });
    memo.FTabCharsReplaced = replaced;
    memo.FTabCharsChangedLines = changedLines;
    return changed;
}

} // namespace

bool TZvMemo::acnConvertTabsToSpaces(bool) {
    const int tab = std::max(DocState().FTabSize, 1);
    const bool changed = ConvertBlanks(*this, [tab](std::u16string_view line, std::u16string& out) {
        if (line.find(u'\t') == line.npos)
            return 0;
        out.assign(line);
        WConvertTabToSpace(out, tab, u' ');
        return static_cast<int>(std::count(line.begin(), line.end(), u'\t'));
    });
    if (changed)
        DocState().FHasTabs = false;
    return changed;
}

bool TZvMemo::acnConvertSpacesToTabs() {
    const int tab = std::max(DocState().FTabSize, 1);
    const bool changed = ConvertBlanks(*this, [tab](std::u16string_view line, std::u16string& out) {
        if (line.find(u' ') == line.npos)
            return 0;
        const int made = SpacesToTabs(line, tab, out);
        return out == line ? 0 : std::max(made, 1);
    });
    if (changed)
        DocState().FHasTabs = true;
    return changed;
}

bool TZvMemo::acnRemoveCharactersFromText(std::u16string_view list) {
    if (list.empty())
        return false;
    std::u32string points;
    for (std::size_t i = 0; i < list.size();) {
        char32_t c;
        U16_NEXT(list.data(), i, list.size(), c);
        points.push_back(c);
    }
    return RemoveCodePoints(*this, [&points](char32_t c) { return points.find(c) != points.npos; });
}

bool TZvMemo::acnRemoveCharacterFromText(char16_t c) {
    return acnRemoveCharactersFromText(std::u16string_view(&c, 1));
}

bool TZvMemo::acnRemoveZeroWidthSpaces() {
    return RemoveCodePoints(*this, IsZeroWidth);
}

bool TZvMemo::CheckForZeroWidthSpaces() const {
    for (int row = 0; row < RowCount(); ++row)
        for (char16_t c : RowText(row))
            if (IsZeroWidth(c))
                return true;
    return false;
}

} // namespace zv
