// Text segmentation for the editor control: where grapheme clusters and words begin, and
// whether a row needs complex script processing. Implemented with ICU break iterators.
#pragma once

#include <memory>
#include <string_view>

namespace zv {

class ITextBreaks {
public:
    virtual ~ITextBreaks() = default;
    // The first cluster boundary after `pos` in `row` (row.size() at most); pos >= size
    // gives pos + 1, so that stepping past the end of a row moves one column.
    virtual int NextCluster(std::u16string_view row, int pos) = 0;
    // The last cluster boundary before `pos` (0 at least); pos > size gives pos - 1.
    virtual int PrevCluster(std::u16string_view row, int pos) = 0;
    // True when `row` needs shaping: right-to-left, combining marks, complex scripts.
    virtual bool IsComplex(std::u16string_view row) = 0;
};

// The ICU form; one object per control, used from the main thread only (it keeps one
// iterator and re-targets it, so a keystroke allocates nothing).
std::unique_ptr<ITextBreaks> CreateIcuTextBreaks();

} // namespace zv
