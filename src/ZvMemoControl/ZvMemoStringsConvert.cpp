// Whole-store operations of the list and the encoding commands: copying, comparing and
// sorting the list, re-reading rows in another code page, and the painted form of a row.
#include "ZvMemoControl/ZvMemoStrings.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/Converter.h"
#include "ZvMemoControl/ZvUniUtils.h"

#include <algorithm>

namespace zv {
namespace {

bool IsUnicodePage(std::uint32_t cp) {
    return cp == cpUTF16LE || cp == cpUTF16BE || cp == cpUTF7 || cp == cpUTF8;
}

std::u16string LowBytesToUnits(std::string_view bytes) {
    std::u16string out(bytes.size(), u'\0');
    for (std::size_t i = 0; i < bytes.size(); ++i)
        out[i] = static_cast<unsigned char>(bytes[i]);
    return out;
}

std::string UnitsToLowBytes(std::u16string_view text) {
    std::string out(text.size(), '\0');
    for (std::size_t i = 0; i < text.size(); ++i)
        out[i] = static_cast<char>(text[i] & 0xFF);
    return out;
}

// Decoding that never gives nothing for something: an empty result keeps the low bytes.
std::u16string DecodeOrKeep(std::uint32_t cp, std::string_view bytes) {
    std::u16string text = BytesToUnicode(cp, bytes);
    return text.empty() && !bytes.empty() ? LowBytesToUnits(bytes) : text;
}

} // namespace

// ---- The list as a whole ----------------------------------------------------------------

void TZvMemoStrings::AssignSilent(const TZvMemoStrings& source) {
    if (&source == this)
        return;
    ClearQuick();
    SetCapacity(source.FCount);
    for (std::size_t i = 0; i < source.FCount; ++i) {
        TRowItem& item = AppendItem();
        item.FString = source.Item(i)->FString; // shared until one side changes
        item.FObject = source.Item(i)->FObject;
    }
    FVisibleCount = Count();
    FCodePage = source.FCodePage;
    FUseBOM = source.FUseBOM;
    FSysTextType = source.FSysTextType;
    FTrailingByte = source.FTrailingByte;
    FInvalidBytes = source.FInvalidBytes;
}

void TZvMemoStrings::Assign(const TZvMemoStrings& source) {
    Changing();
    {
        std::lock_guard lock(FLock);
        AssignSilent(source);
    }
    Changed();
}

void TZvMemoStrings::CustomSort(
    const std::function<int(std::u16string_view, std::u16string_view)>& compare) {
    if (FCount < 2)
        return;
    Changing();
    {
        std::lock_guard lock(FLock);
        QuickSortA(0, Count() - 1, compare);
    }
    Changed();
}

// ---- Re-reading rows in a code page ------------------------------------------------------

void TZvMemoStrings::ConvertRows(const std::function<std::u16string(std::u16string_view)>& f) {
    for (int row = 0; row < Count(); ++row) {
        const std::u16string text = f(Get(row));
        if (text != Get(row))
            Item(row)->FString.Assign(text);
        if (OnLineChanged)
            OnLineChanged(row);
    }
}

void TZvMemoStrings::LineConvertAnsiToAnsi(int row, std::uint32_t codePage) {
    if (!InRange(row))
        return;
    Item(row)->FString.Assign(
        DecodeOrKeep(codePage, UnicodeToBytes(FCodePage, Item(row)->FString.View())));
    if (OnLineChanged)
        OnLineChanged(row);
}

void TZvMemoStrings::ConvertAnsiLinesToAnsi(std::uint32_t codePage) {
    if (IsUnicodePage(FCodePage)) {
        ConvertStringLinesToAnsi(codePage);
        return;
    }
    const std::uint32_t from = FCodePage;
    ConvertRows(
        [&](std::u16string_view s) { return DecodeOrKeep(codePage, UnicodeToBytes(from, s)); });
    FCodePage = codePage;
}

void TZvMemoStrings::ConvertStringLinesToAnsi(std::uint32_t codePage) {
    ConvertRows(
        [&](std::u16string_view s) { return DecodeOrKeep(codePage, UnicodeToBytes(codePage, s)); });
    FCodePage = codePage;
}

void TZvMemoStrings::ConvertStringLinesToAscii(std::uint32_t codePage) {
    ConvertRows(
        [&](std::u16string_view s) { return LowBytesToUnits(UnicodeToBytes(codePage, s)); });
    FCodePage = codePage;
}

void TZvMemoStrings::ConvertAsciiLinesToString() {
    const std::uint32_t cp = FCodePage;
    ConvertRows([&](std::u16string_view s) { return DecodeOrKeep(cp, UnitsToLowBytes(s)); });
}

// ---- The painted form of a row -----------------------------------------------------------

std::u16string TZvMemoStrings::GetVisual(int row, bool showEnd, bool showSpaces, bool expandTabs,
                                         bool showControls, bool fontShowsControls) const {
    std::u16string s(Get(row));
    if (showSpaces)
        std::replace(s.begin(), s.end(), u' ', u'\u00B7');
    if (expandTabs)
        WConvertTabToSpace(s, Memo().FTabSize, u' ');
    if (showControls && !(Memo().FIsASCII && fontShowsControls))
        for (auto& c : s)
            if (c < 32 && c != u'\t')
                c = static_cast<char16_t>(0x2400 + c); // the Control Pictures block
    const bool endsLine = row + 1 < Count() && (!IsDisplayWrapped() || !IsLineWrapped(row + 1));
    if (showEnd && endsLine)
        s += u'\u00B6';
    return s;
}

} // namespace zv
