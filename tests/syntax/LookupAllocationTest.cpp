// The scanner's lookups on a loaded style set take a range of a row and allocate nothing, in
// either case mode: this program counts every allocation of the calling thread.
#include "SyntaxTestFiles.h"

#include "syntax/ZvSyntax.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

namespace {
thread_local std::size_t tAllocations = 0;
} // namespace

void* operator new(std::size_t size) {
    ++tAllocations;
    if (void* p = std::malloc(size ? size : 1))
        return p;
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept {
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}

namespace zv {
namespace {

TEST(LookupAllocation, KeywordTagAndFoldLookupsAllocateNothing) {
    TZvSyntax syntax;
    TMemoStyleHost memo;
    ASSERT_TRUE(syntax.LoadStyleFromFile(&memo, test::U16(test::ShippedSyntaxFolder() / "html.syx"),
                                         u"HTML", 1, u""));
    ASSERT_TRUE(memo.FStyles && memo.FHtmlStyleJS);
    const TZvCustomMemoStyles& html = *memo.FStyles;
    const TZvCustomMemoStyles& js = *memo.FHtmlStyleJS;
    // Words of a row, some hits, some misses, some with letters outside ASCII and the BMP.
    const std::u16string row = u"<DIV class=x>const \u00c9t\u00e9 = await f\U00010400(); "
                               u"function Stra\u00dfe { return null }</div>";
    std::size_t hits = 0;
    const std::size_t before = tAllocations;
    for (std::size_t start = 0; start < row.size(); ++start)
        for (std::size_t length = 1; start + length <= row.size() && length <= 10; ++length) {
            const std::u16string_view range = std::u16string_view(row).substr(start, length);
            for (bool caseSensitive : {true, false}) {
                hits += js.FindKeyword(range, caseSensitive) >= 0;
                hits += html.FindTag(range, caseSensitive) >= 0;
                hits += js.NodeIdList.Contains(range, caseSensitive);
            }
        }
    EXPECT_EQ(tAllocations, before);
    // The ranges did find words: const, await, function, return, null; div in any case.
    EXPECT_GE(hits, 10u);
    // The counter does count: a string of this size is on the heap.
    const std::u16string copy = row;
    EXPECT_GT(tAllocations, before);
}

} // namespace
} // namespace zv
