// Copying, comparing and resetting row attributes.
#include "ZvMemoControl/TextAttribute.h"

namespace zv {

TTextAttribute& TTextAttribute::operator=(const TTextAttribute& other) {
    if (this == &other)
        return *this;
    FBooleanArray = other.FBooleanArray;
    FBooleanArray2 = other.FBooleanArray2;
    Bookmark = other.Bookmark;
    ChangeLastSavedAt = other.ChangeLastSavedAt;
    if (other.FExtra)
        FExtra = std::make_unique<TAttributeExtra>(*other.FExtra);
    else
        FExtra.reset();
    return *this;
}

bool TTextAttribute::operator==(const TTextAttribute& o) const {
    return FBooleanArray == o.FBooleanArray && FBooleanArray2 == o.FBooleanArray2 &&
           Bookmark == o.Bookmark && ChangeLastSavedAt == o.ChangeLastSavedAt &&
           Extra() == o.Extra();
}

void TTextAttribute::SetValue(int bit, bool on) {
    if (bit < 0 || bit >= 32 || bit == abHidden)
        return;
    const std::uint32_t mask = 1u << bit;
    FBooleanArray = on ? (FBooleanArray | mask) : (FBooleanArray & ~mask);
}

void TTextAttribute::SetValue2(int bit, bool on) {
    if (bit < 0 || bit >= 4)
        return;
    const auto mask = static_cast<std::uint16_t>(1u << bit);
    FBooleanArray2 = on ? (FBooleanArray2 | mask) : (FBooleanArray2 & ~mask);
}

void TTextAttribute::SetEnabled(bool on) {
    FBooleanArray2 = on ? (FBooleanArray2 & ~kDisabled) : (FBooleanArray2 | kDisabled);
}

std::int32_t TTextAttribute::ChangeHistory() const {
    const int field = (FBooleanArray2 >> kHistoryShift) & kHistoryMask;
    if (field == kHistoryInExtra)
        return Extra().ChangeHistory;
    return (field ^ kHistoryInExtra) - kHistoryInExtra; // sign-extends the 11 bits
}

void TTextAttribute::SetChangeHistory(std::int32_t value) {
    // One form per value, so that equal attributes compare equal.
    const bool inline_ = value >= -kInlineHistory && value <= kInlineHistory;
    const auto field = static_cast<std::uint16_t>(inline_ ? value & kHistoryMask : kHistoryInExtra);
    FBooleanArray2 = static_cast<std::uint16_t>(
        (FBooleanArray2 & ~(kHistoryMask << kHistoryShift)) | (field << kHistoryShift));
    if (!inline_)
        MutableExtra().ChangeHistory = value;
    else if (FExtra)
        FExtra->ChangeHistory = 0;
}

void TTextAttribute::SetUndoNr(std::int32_t value) {
    if (value != UndoNr())
        MutableExtra().UndoNr = value;
}

const TAttributeExtra& TTextAttribute::DefaultExtra() {
    static const TAttributeExtra empty{};
    return empty;
}

TAttributeExtra& TTextAttribute::MutableExtra() {
    if (!FExtra)
        FExtra = std::make_unique<TAttributeExtra>();
    return *FExtra;
}

std::u16string_view LineEndBefore(const TTextAttribute& a, std::u16string_view otherwise) {
    const bool cr = a.GetValue2(ab2LinefeedCR), lf = a.GetValue2(ab2LinefeedLF);
    if (cr && !lf)
        return u"\r";
    if (lf && !cr)
        return u"\n";
    return otherwise;
}

void SetHiddenBit(TTextAttribute& a, bool on) {
    const std::uint32_t mask = 1u << abHidden;
    a.FBooleanArray = on ? (a.FBooleanArray | mask) : (a.FBooleanArray & ~mask);
}

void TAttribute::ResetForStore(bool linefeedCR, bool linefeedLF) {
    FBooleanArray &= ~0xFFu;
    FBooleanArray2 &= kDisabled; // public bits and change history cleared
    ChangeLastSavedAt = -100;
    Bookmark = -1;
    FExtra.reset();
    SetValue2(ab2LinefeedCR, linefeedCR);
    SetValue2(ab2LinefeedLF, linefeedLF);
}

} // namespace zv
