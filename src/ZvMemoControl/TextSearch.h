// TTextSearch: one prepared search of a document's rows: a plain text (several lines allowed)
// or a regular expression (PCRE2, compiled once with the JIT), with the whole-word, skip-tags
// and skip comments/strings filters. Forward and backward steps and the walk over every hit
// share one forward scan, so find next, find previous and find all see the same hits.
#pragma once

#include "ZvMemoControl/SearchOptions.h"
#include "ZvMemoControl/ZvMemoEditText.h"

#include <climits>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

class TZvMemoStrings;
class TRegexPattern;

// A hit: [Start, End) in rows of the store. A plain hit may run from one row into its wrapped
// continuation; a multi-line text or a regular expression may cross line ends.
struct TSearchHit {
    TZvPos Start;
    TZvPos End;
    bool operator==(const TSearchHit&) const = default;
};

// The text of a hit and, for a regular expression, of its groups (for a replacement).
// Valid only during the call that hands it over.
class TMatchGroups {
public:
    TMatchGroups(std::u16string_view subject, const std::size_t* offsets, int count)
        : FSubject(subject), FOffsets(offsets), FCount(count) {}
    // Groups including group 0, the whole hit.
    int Count() const { return FCount; }
    // Group `i` (empty when it did not take part or is out of range).
    std::u16string_view Group(int i) const;

private:
    std::u16string_view FSubject;
    const std::size_t* FOffsets; // start, end pairs into FSubject
    int FCount;
};

// What the document's scanner says of a position, for the skip filters.
class ISearchTokens {
public:
    virtual ~ISearchTokens() = default;
    virtual bool InComment(TZvPos pos) const = 0;
    virtual bool InString(TZvPos pos) const = 0;
};

// Called for each hit in document order; false stops the walk.
using THitVisitor = std::function<bool(const TSearchHit& hit, const TMatchGroups& groups)>;

class TTextSearch {
public:
    TTextSearch();
    ~TTextSearch();
    TTextSearch(TTextSearch&&) noexcept;
    TTextSearch& operator=(TTextSearch&&) noexcept;

    // Prepares a search of `text` with `options` (frDownward and frUpward are ignored: the
    // call chooses the direction). A plain text splits at its line ends (CR LF, CR, LF); a
    // line end matches any line end of the document, and a text ending in one matches only
    // where its last line ends a line. A regular expression sees rows joined by CR LF and
    // matches across them only within 51 rows; it never yields an empty hit. An invalid
    // expression returns false with PCRE2's message and offset in Error(), and the search
    // prepared before stays as it was. `userDelimiters` add to the whole-word set.
    bool Prepare(std::u16string_view text, TZvFindOptions options,
                 std::u16string_view userDelimiters = {});
    const std::u16string& Text() const { return FText; }
    TZvFindOptions Options() const { return FOptions; }
    bool Empty() const { return FText.empty(); }
    const std::string& Error() const { return FError; }
    // The scanner's answers for frSkipComments and frSkipStrings (null: nothing is skipped).
    // Must outlive its use here.
    void SetTokens(const ISearchTokens* tokens) { FTokens = tokens; }

    // Every hit that starts at or behind `from` and ends at or before `to`, in order, each
    // starting at or behind the end of the one before. Returns the number visited.
    std::int64_t ForEach(const TZvMemoStrings& lines, TZvPos from, TZvPos to,
                         const THitVisitor& visit) const;
    // The first hit starting at or behind `from` that ends at or before `to`.
    std::optional<TSearchHit> FindForward(const TZvMemoStrings& lines, TZvPos from,
                                          TZvPos to = kTextEnd) const;
    // The last hit of ForEach(`to`, `from`): the nearest hit ending at or before `from` and
    // starting at or behind `to`.
    std::optional<TSearchHit> FindBackward(const TZvMemoStrings& lines, TZvPos from,
                                           TZvPos to = {0, 0}) const;

    // A position behind the end of any text.
    static constexpr TZvPos kTextEnd{INT32_MAX, INT32_MAX};

private:
    struct TFragment {
        std::u16string Text, Lower, Upper; // Lower and Upper: unit-wise case forms
    };
    // Plain: the first unit index >= from of a candidate for the first fragment in `buffer`.
    std::size_t FindCandidate(std::u16string_view buffer, std::size_t from) const;
    bool EqualsFragment(std::u16string_view text, const TFragment& fragment) const;
    // The filters of a candidate at `offset` of `buffer` (the text around it, which may go on
    // into a wrapped row), `length` units long, standing at `pos`. `before`: the unit before
    // it on its line (0: it starts the line); `lineStart`: it stands at a line's first column.
    bool Accepted(std::u16string_view buffer, std::size_t offset, std::size_t length, TZvPos pos,
                  char16_t before, bool lineStart) const;
    // The end of a multi-line hit whose first line starts at `col` of `row`, if the later
    // fragments fit the rows below.
    std::optional<TZvPos> MultiLineEnd(const TZvMemoStrings& lines, int row, int col) const;
    // ForEach for hits that start at row `lastRow` or above.
    std::int64_t ForEachPlain(const TZvMemoStrings& lines, TZvPos from, TZvPos to, int lastRow,
                              const THitVisitor& visit) const;
    std::int64_t ForEachRegex(const TZvMemoStrings& lines, TZvPos from, TZvPos to, int lastRow,
                              const THitVisitor& visit) const;

    std::u16string FText;
    TZvFindOptions FOptions = 0;
    std::u16string FDelimiters;
    std::vector<TFragment> FFragments;       // plain: the text's lines, at least one
    std::unique_ptr<TRegexPattern> FPattern; // set exactly when FOptions has frRegExp
    std::string FError;
    const ISearchTokens* FTokens = nullptr;
};

} // namespace zv
