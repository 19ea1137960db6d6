// THighlightLists: what a view keeps painted besides the syntax colours: words and
// selections the user marked, found texts, and expressions with colours of their own. Each
// entry is a prepared search, so a highlight finds exactly what a search with the same
// options finds.
#pragma once

#include "ZvMemoControl/StyleTypes.h"
#include "ZvMemoControl/TextSearch.h"

#include <string>
#include <string_view>
#include <vector>

namespace zv {

enum class THighlightList { Words, Selections, Finds, Expressions };

// A hit of an entry and the colours it is painted in (0x00BBGGRR).
struct THighlightMark {
    TSearchHit Hit;
    TColor Back = kNoColor;
    TColor Text = kNoColor;
};

// Colours a list paints in when no others are given.
struct THighlightColours {
    TColor Back, Text;
};
THighlightColours DefaultHighlightColours(THighlightList list);

class THighlightLists {
public:
    // Adds `text` to `list` with the search `options` (case, whole word, regular expression)
    // in `colours`. False, and nothing added, for an empty text, a text the list holds with
    // the same options, or an expression that does not compile.
    bool Add(THighlightList list, std::u16string_view text, TZvFindOptions options,
             THighlightColours colours);
    bool Add(THighlightList list, std::u16string_view text, TZvFindOptions options = frCase) {
        return Add(list, text, options, DefaultHighlightColours(list));
    }
    // Removes the entries of `list` for `text` (any options); true when one went.
    bool Remove(THighlightList list, std::u16string_view text);
    // An expression of its own colours: `text` searched with the given options, painted in
    // `textColor` on `background`. False as Add is.
    bool AddHighlightExpression(std::u16string_view text, bool matchCase, bool wholeWord,
                                bool regEx, TColor background, TColor textColor);
    bool RemoveHighlightExpression(std::u16string_view text) {
        return Remove(THighlightList::Expressions, text);
    }
    // The entries of `list` in the order they were added.
    struct TEntryInfo {
        std::u16string Text;
        TZvFindOptions Options;
        THighlightColours Colours;
    };
    std::vector<TEntryInfo> Entries(THighlightList list) const;
    void Clear(THighlightList list);
    void ClearAll() { FEntries.clear(); }
    bool Empty() const { return FEntries.empty(); }
    int Count(THighlightList list) const;

    // Appends the marks of every entry that lie in rows [firstRow, lastRow] of `lines`, entry
    // by entry in the order they were added (a later one paints over an earlier one).
    void Collect(const TZvMemoStrings& lines, int firstRow, int lastRow,
                 std::vector<THighlightMark>& out) const;

private:
    struct TEntry {
        THighlightList List;
        THighlightColours Colours;
        TTextSearch Search;
    };
    std::vector<TEntry> FEntries;
};

} // namespace zv
