// The scanner state stored at the end of each row (TStyle and its parts), kept small: the
// rarely used variable-length parts live behind one shared, copy-on-write pointer each, so a
// row without here-documents, nested blocks or fold words carries no heap data.
#pragma once

#include "ZvMemoControl/StyleTypes.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace zv {

// Copy-on-write holder of an immutable value; empty means a default-constructed T. Copies
// share the value through one atomic reference count, so storing a state on a row costs one
// increment and the holder is a single pointer.
template <class T> class TCowPtr {
public:
    TCowPtr() = default;
    TCowPtr(const TCowPtr& o) noexcept : FNode(o.FNode) {
        if (FNode)
            FNode->Refs.fetch_add(1, std::memory_order_relaxed);
    }
    TCowPtr(TCowPtr&& o) noexcept : FNode(std::exchange(o.FNode, nullptr)) {}
    TCowPtr& operator=(TCowPtr o) noexcept {
        std::swap(FNode, o.FNode);
        return *this;
    }
    ~TCowPtr() { reset(); }

    const T& get() const { return FNode ? FNode->Value : Empty(); }
    // A private copy to change; never shared with another holder.
    T& mut() {
        if (!FNode || FNode->Refs.load(std::memory_order_acquire) > 1) {
            TNode* copy = new TNode{{1}, get()};
            reset();
            FNode = copy;
        }
        return FNode->Value;
    }
    void reset() noexcept {
        if (FNode && FNode->Refs.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete FNode;
        FNode = nullptr;
    }
    bool operator==(const TCowPtr& o) const { return FNode == o.FNode || get() == o.get(); }

private:
    struct TNode {
        std::atomic<std::uint32_t> Refs;
        T Value;
    };
    static const T& Empty() {
        static const T empty{};
        return empty;
    }
    TNode* FNode = nullptr;
};

// Bits of TStyleProperties::FBooleanArray.
enum TStylePropertyBit : std::uint8_t {
    spStringEnd = 0,
    spStringStart = 1,
    spInComment = 2,
    spSymbol = 3,
    spHexNumber = 4,
    spInTag = 5,
    spKeyword = 6,
    spInLineComment = 7,
    spStringOnLine = 8,
    spNumber = 9,
    spInScript = 10,
    spURL = 12,
    spVerbatim = 13,
    spSavedInTag = 14,
    spDocComment = 15,
    spHyperscript = 16,
};

// Scanner state at a point of a line. 20 bytes.
struct TStyleProperties {
    std::uint32_t FBooleanArray = 0;
    TScriptType ScriptType = scNone;
    TScriptType ScriptTypeOld = scNone;
    char16_t HyperscriptEnd = 0;
    std::int8_t BracketId = -1; // -1 none, 0 character literal, 1 String, 2 String2
    std::int8_t CachedBracketId = -1;
    std::int8_t Index = -1;
    std::int8_t TagNr = 0;
    std::int8_t CommentStyle = 0; // 0 none, 1 style A, 2 style B
    std::int8_t NestedCommentIndex = 0;
    std::int8_t ScriptStringId = -1;
    std::int8_t Brace1Level = 0;
    std::int8_t Brace2Level = 0;
    std::int8_t Brace3Level = 0;

    bool Get(TStylePropertyBit bit) const { return (FBooleanArray >> bit) & 1u; }
    void Set(TStylePropertyBit bit, bool on) {
        FBooleanArray = on ? (FBooleanArray | (1u << bit)) : (FBooleanArray & ~(1u << bit));
    }
    bool operator==(const TStyleProperties&) const = default;
};

// The rarely used, variable-length part of an open block's state.
struct TBlockExtra {
    std::u16string HereDocString;   // terminator of the open here-document
    std::vector<std::int8_t> Cache; // stack of the enclosing block ids
    bool operator==(const TBlockExtra&) const = default;
};

// The open block at a point of a line. 16 bytes: the flags are bits.
struct TBlockStyle {
    TCowPtr<TBlockExtra> Extra;
    std::int8_t Id = -1; // -1 none, n > 0 the n-th block, -2 a here-document
    bool Force : 1 = false;
    bool IsLine : 1 = false;
    bool HighlightKeywords : 1 = true;
    bool HighlightSymbols : 1 = true;
    bool HighlightBlocks : 1 = true;
    bool HighlightNumbers : 1 = true;
    bool HighlightStrings : 1 = true;
    bool HighlightChars : 1 = true;

    const std::u16string& HereDocString() const { return Extra.get().HereDocString; }
    const std::vector<std::int8_t>& Cache() const { return Extra.get().Cache; }
    bool operator==(const TBlockStyle&) const = default;
};

// A fold word found on a line.
struct TNodeStyle {
    std::uint16_t FBooleanArray = 0;
    std::int32_t EndBegin = 0;
    std::int32_t nIndent = 0;
    std::int32_t nr = 0;
    std::u16string sTag;
    TCEListItemType ceListItem = ceNone;
    TScriptType scType = scNone;
    std::int32_t NodeEndBefore = 0;
    std::int32_t Id = 0;
    std::int32_t Start = 0;
    std::int32_t Stop = 0;
    bool operator==(const TNodeStyle&) const = default;
};

// A region word found on a line.
struct TRegionStyle {
    std::int32_t nBegin = 0;
    std::int32_t nEnd = 0;
    std::int8_t nr = 0;
    bool NodeHead = false;
    bool NodeEnd = false;
    bool operator==(const TRegionStyle&) const = default;
};

struct TLineFoldWords {
    std::vector<TNodeStyle> NodeStyles;
    std::vector<TRegionStyle> RegionStyles;
    bool operator==(const TLineFoldWords&) const = default;
};

// The state at the end of one row. Bit 0 of FBooleanArray: the record is valid. Members are
// ordered for packing: 56 bytes, of which nothing is on the heap unless a here-document,
// nested blocks or fold words need it.
struct TStyle {
    TBlockStyle Block;
    TCowPtr<TLineFoldWords> Folds;
    TStyleProperties Properties;
    std::int32_t NodeSection = -1;
    std::uint16_t FBooleanArray = 0;

    bool Valid() const { return FBooleanArray & 1u; }
    const std::vector<TNodeStyle>& NodeStyles() const { return Folds.get().NodeStyles; }
    const std::vector<TRegionStyle>& RegionStyles() const { return Folds.get().RegionStyles; }
    bool operator==(const TStyle&) const = default;
};

// Every row carries a TStyle: these sizes are part of the per-row memory budget.
static_assert(sizeof(TStyleProperties) == 20);
static_assert(sizeof(TBlockStyle) == 16);
static_assert(sizeof(TRegionStyle) == 12);
static_assert(sizeof(TStyle) <= 56);

// The start-of-document state; `full` also empties the fold and region words.
void ClearStyle(TStyle& state, bool full);

} // namespace zv
