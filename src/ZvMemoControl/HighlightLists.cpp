// The highlight lists and the marks they give the rows being painted.
#include "ZvMemoControl/HighlightLists.h"

#include "ZvMemoControl/ZvMemoStrings.h"

#include <algorithm>

namespace zv {

THighlightColours DefaultHighlightColours(THighlightList list) {
    switch (list) {
    case THighlightList::Words:
        return {0x0000FF, 0x00FFFF}; // yellow on red
    case THighlightList::Selections:
        return {0x800080, 0xFFFFFF}; // white on purple
    case THighlightList::Finds:
        return {0x806000, 0xFFFFFF}; // white on teal blue
    case THighlightList::Expressions:
        break;
    }
    return {0x000080, 0xFFFFFF}; // white on dark red
}

bool THighlightLists::Add(THighlightList list, std::u16string_view text, TZvFindOptions options,
                          THighlightColours colours) {
    options &= frCase | frWord | frRegExp;
    if (text.empty())
        return false;
    for (const TEntry& e : FEntries)
        if (e.List == list && e.Search.Text() == text && e.Search.Options() == options)
            return false;
    TTextSearch search;
    if (!search.Prepare(text, options))
        return false;
    FEntries.push_back({list, colours, std::move(search)});
    return true;
}

bool THighlightLists::Remove(THighlightList list, std::u16string_view text) {
    return std::erase_if(FEntries, [&](const TEntry& e) {
               return e.List == list && e.Search.Text() == text;
           }) > 0;
}

bool THighlightLists::AddHighlightExpression(std::u16string_view text, bool matchCase,
                                             bool wholeWord, bool regEx, TColor background,
                                             TColor textColor) {
    const TZvFindOptions options = static_cast<TZvFindOptions>(
        (matchCase ? frCase : 0) | (wholeWord ? frWord : 0) | (regEx ? frRegExp : 0));
    return Add(THighlightList::Expressions, text, options, {background, textColor});
}

std::vector<THighlightLists::TEntryInfo> THighlightLists::Entries(THighlightList list) const {
    std::vector<TEntryInfo> out;
    for (const TEntry& e : FEntries)
        if (e.List == list)
            out.push_back({e.Search.Text(), e.Search.Options(), e.Colours});
    return out;
}

void THighlightLists::Clear(THighlightList list) {
    std::erase_if(FEntries, [list](const TEntry& e) { return e.List == list; });
}

int THighlightLists::Count(THighlightList list) const {
    return static_cast<int>(std::count_if(FEntries.begin(), FEntries.end(),
                                          [list](const TEntry& e) { return e.List == list; }));
}

void THighlightLists::Collect(const TZvMemoStrings& lines, int firstRow, int lastRow,
                              std::vector<THighlightMark>& out) const {
    firstRow = std::max(firstRow, 0);
    lastRow = std::min(lastRow, lines.Count() - 1);
    if (lastRow < firstRow)
        return;
    const TZvPos from{0, firstRow}, to{lines.GetLineLength(lastRow), lastRow};
    for (const TEntry& e : FEntries)
        e.Search.ForEach(lines, from, to, [&](const TSearchHit& hit, const TMatchGroups&) {
            out.push_back({hit, e.Colours.Back, e.Colours.Text});
            return true;
        });
}

} // namespace zv
