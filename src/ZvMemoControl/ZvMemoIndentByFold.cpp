// Indent by fold level: every line's leading blanks become one indent unit per code fold the
// line lies inside, read from the fold flags the last fold pass left on the rows.
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoCommandUndo.h"
#include "ZvMemoControl/ZvMemoLineBlock.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <algorithm>
#include <vector>

namespace zv {

namespace {

// Columns of the row's leading blanks, tabs going to the next multiple of `tab`.
int LeadingColumns(std::u16string_view text, int tab) {
    int columns = 0;
    for (char16_t c : text) {
        if (c == u' ')
            ++columns;
        else if (c == u'\t')
            columns += tab - columns % tab;
        else
            break;
    }
    return columns;
}

// A code fold still open above the row being read.
struct TOpenFold {
    std::int32_t Id = 0;
    int HeadRow = 0;
    int HeadIndent = 0; // leading columns of the head row
};

// A row of one opening mark ("{" under its head, as the pass folds it with the row above):
// marks only, no word and no blank between them, indented no deeper than `headIndent`.
bool IsLoneOpener(std::u16string_view text, int tab, int headIndent) {
    if (LeadingColumns(text, tab) > headIndent)
        return false;
    const std::size_t start = text.find_first_not_of(u" \t");
    const std::size_t end = text.find_last_not_of(u" \t");
    if (start == std::u16string_view::npos)
        return false;
    for (char16_t c : text.substr(start, end - start + 1))
        if (c == u' ' || c == u'\t' || c == u'_' || c > 0x7F || (c >= u'0' && c <= u'9') ||
            ((c | 0x20) >= u'a' && (c | 0x20) <= u'z'))
            return false;
    return true;
}

// The fold level of rows 0..last. Comment folds, regions and selection folds do not count:
// they are no code structure, and counting a run of comments would push its middle rows
// in. A row that heads or closes a fold stands at the outer level; where the pass ended a
// fold before its closing row (an end-before row), the end row is the block's last body row
// and stays inside, unless it is a deeper fold's own closing row (indented no deeper than
// that fold's head) in the same bunch of ends. A lone opening mark right under a head
// stands with its head.
std::vector<int> FoldLevels(const TZvMemoStrings& lines, int last, int tab) {
    std::vector<int> levels(static_cast<std::size_t>(last + 1), 0);
    std::vector<TOpenFold> open;
    for (int row = 0; row <= last; ++row) {
        const TAttribute& a = lines.GetLineAttribute(row);
        int level = static_cast<int>(open.size());
        if (a.GetValue(abNodeEnd) && a.Enabled() && !open.empty()) {
            const std::vector<std::int32_t>& ended = a.Extra().NodeTopIdNrList;
            const bool endBefore = a.GetValue2(ab2NodeEndBefore);
            const int indent = LeadingColumns(lines.Get(row), tab);
            int inside = 0; // folds ending here that hold the row as body
            const auto endsHere = [&ended](const TOpenFold& f) {
                return std::find(ended.begin(), ended.end(), f.Id) != ended.end();
            };
            while (!open.empty() && endsHere(open.back())) {
                const TOpenFold fold = open.back();
                open.pop_back();
                const bool outermost = open.empty() || !endsHere(open.back());
                if (endBefore && (outermost || indent > fold.HeadIndent))
                    ++inside;
            }
            level = static_cast<int>(open.size()) + inside;
        } else if (!open.empty() && open.back().HeadRow == row - 1 &&
                   IsLoneOpener(lines.Get(row), tab, open.back().HeadIndent)) {
            --level;
        }
        if (a.GetValue(abNodeHead) && !a.GetValue(abNodeComment) && a.Enabled())
            open.push_back({a.Extra().NodeTopIdNr, row, LeadingColumns(lines.Get(row), tab)});
        levels[static_cast<std::size_t>(row)] = level;
    }
    return levels;
}

} // namespace

bool TZvMemo::acnIndentByFold() {
    int first = 0, last = 0;
    CommandRows(*this, false, first, last);
    const TZvMemoStrings& lines = Lines();
    const std::vector<int> levels = FoldLevels(lines, last, std::max(DocState().FTabSize, 1));
    // The level of each logical line of the block, in order: its first row's.
    std::vector<int> lineLevels;
    for (int row = first; row <= last; ++row)
        if (row == first || !lines.IsLineWrapped(row))
            lineLevels.push_back(levels[static_cast<std::size_t>(row)]);
    const std::u16string unit = IndentUnit();
    return RunLineCommand(
        *this, false, std::make_unique<TIndentByFoldUndo>(),
        [&](const TLineList& block, TLineList& result) {
            std::size_t i = 0;
            MapLines(block, result, [&](std::u16string_view line, std::u16string& out) {
                const int level = i < lineLevels.size() ? lineLevels[i] : 0;
                ++i;
                const std::size_t text = line.find_first_not_of(u" \t");
                if (text == std::u16string_view::npos)
                    return false; // blank lines get no trailing blanks
                for (int k = 0; k < level; ++k)
                    out += unit;
                out += line.substr(text);
                return out != line;
            });
        });
}

} // namespace zv
