// The per-row record (TTextAttribute, TAttribute): named flag bits and the row's marks. The
// fields every row uses live inline (16 bytes); the rarely set ones (change history of
// edited lines, search hits, spelling, fold and code-explorer data) live in a side block
// made on first write.
#pragma once

#include "ZvMemoControl/StyleTypes.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

// Bits of TTextAttribute::FBooleanArray, addressed by number through GetValue/SetValue.
enum TAttributeBit : std::uint8_t {
    abChanged = 0,
    abChangeSaved,
    abHidden,
    abLinemark,
    abNodeBegin,
    abNodeClosed,
    abNodeComment,
    abNodeEnd,
    abNodeHead,
    abRgn_Begin,
    abRgn_Closed,
    abRgn_End,
    abSelNodeClosed,
    abSelNodeEnd,
    abSelNodeHead,
    abSpellCheck,
    abTag,
    abTempNodeBegin,
    abTempNodeClosed,
    abTempNodeComment,
    abTempNodeEnd,
    abTempNodeHead,
    abTempRgn_Begin,
    abTempRgn_Closed,
    abTempRgn_End,
    abTempSelNodeClosed,
    abTempSelNodeEnd,
    abTempSelNodeHead,
    abTempTag,
    abTodoItem,
    abURL,
    abWrapped
};

// Bits of TTextAttribute::FBooleanArray2.
enum TAttributeBit2 : std::uint8_t {
    ab2NodeEndBefore = 0,
    ab2TempNodeEndBefore,
    ab2LinefeedCR,
    ab2LinefeedLF
};

struct TSpellRec {
    std::int32_t nl = 0, nx = 0, x1 = 0, x2 = 0;
    bool operator==(const TSpellRec&) const = default;
};

// The rarely used fields; a row that never sets one has no side block.
struct TAttributeExtra {
    std::int32_t ChangeHistory = 0; // changes to the line; set only on edited lines
    std::int32_t UndoNr = -1;       // undo stamp of the line's last change, -1 none
    std::int32_t LineNr = 0;
    std::int32_t SelNodeTopIdNr = 0;
    std::int8_t FindId = 0;
    std::int8_t FindWrapLen = 0;
    std::int8_t FindWrapPos = 0;
    std::int8_t TextDiffKind = 0;
    bool ExpandingClip = false;
    std::vector<TSpellRec> SpellList;
    // TAttribute's own part (fold, region and code-explorer data).
    TCEListItemType ceListItem = ceNone, ceTempListItem = ceNone;
    std::vector<std::int32_t> NodeTopIdNrList, TempNodeTopIdNrList;
    std::int32_t NodeTopIdNr = 0, TempNodeTopIdNr = 0, TagId = 0;
    std::int8_t NodeLevel = -1, TempNodeLevel = -1, Rgn_Level = -1, TempRgn_Level = -1;
    bool operator==(const TAttributeExtra&) const = default;
};

class TTextAttribute {
public:
    TTextAttribute() = default;
    TTextAttribute(const TTextAttribute& other) { *this = other; }
    TTextAttribute(TTextAttribute&&) noexcept = default;
    TTextAttribute& operator=(const TTextAttribute& other);
    TTextAttribute& operator=(TTextAttribute&&) noexcept = default;
    bool operator==(const TTextAttribute& other) const;

    bool GetValue(int bit) const { return bit >= 0 && bit < 32 && ((FBooleanArray >> bit) & 1u); }
    void SetValue(int bit, bool on);
    bool GetValue2(int bit) const { return bit >= 0 && bit < 4 && ((FBooleanArray2 >> bit) & 1u); }
    void SetValue2(int bit, bool on);
    bool Wrapped() const { return GetValue(abWrapped); }
    void SetWrapped(bool on) { SetValue(abWrapped, on); }
    bool Hidden() const { return GetValue(abHidden); }

    // A filler row of text-compare mode is disabled: it is no line of the text.
    bool Enabled() const { return (FBooleanArray2 & kDisabled) == 0; }
    void SetEnabled(bool on);

    // Kept in FBooleanArray2 while within kInlineHistory, so that editing a million rows
    // makes no side blocks; beyond that in the side block.
    std::int32_t ChangeHistory() const;
    void SetChangeHistory(std::int32_t value);
    std::int32_t UndoNr() const { return Extra().UndoNr; }
    void SetUndoNr(std::int32_t value);

    std::uint32_t FBooleanArray = 0;
    std::int8_t Bookmark = -1;
    std::int8_t ChangeLastSavedAt = -100;

    // Rare fields: readers get defaults when there is no side block; writers make one.
    const TAttributeExtra& Extra() const { return FExtra ? *FExtra : DefaultExtra(); }
    TAttributeExtra& MutableExtra();
    bool HasExtra() const { return FExtra != nullptr; }
    void DropExtra() { FExtra.reset(); }

protected:
    friend class TZvMemoStrings;
    static const TAttributeExtra& DefaultExtra();
    // Bit 15 is the private "disabled" mark; bits 0-3 are the public set; bits 4-14 hold
    // ChangeHistory as an 11-bit two's complement value, kHistoryInExtra meaning "see the
    // side block".
    static constexpr std::uint16_t kDisabled = 0x8000;
    static constexpr int kHistoryShift = 4;
    static constexpr std::uint16_t kHistoryMask = 0x7FF;
    static constexpr std::uint16_t kHistoryInExtra = 0x400;
    static constexpr std::int32_t kInlineHistory = 1023;
    std::uint16_t FBooleanArray2 = 0;
    std::unique_ptr<TAttributeExtra> FExtra;

    friend void SetHiddenBit(TTextAttribute& a, bool on);
};

// Every row of a store carries one TAttribute; its own fields are in TAttributeExtra.
class TAttribute : public TTextAttribute {
public:
    // Clears the line-end and fold marks a new row must not inherit (see CreateAttribute).
    void ResetForStore(bool linefeedCR, bool linefeedLF);
};

// The line end a row's bits name for the line before it: CR alone, LF alone, else (both or
// neither) `otherwise`.
std::u16string_view LineEndBefore(const TTextAttribute& a, std::u16string_view otherwise = u"\r\n");

// Sets or clears `Hidden`; only the store calls it, so that its visible count stays right.
void SetHiddenBit(TTextAttribute& a, bool on);

} // namespace zv
