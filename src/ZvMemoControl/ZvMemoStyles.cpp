// Construction, regular-expression compilation and keyword lookups of a style set.
#include "ZvMemoControl/ZvMemoStyles.h"

#include "ZvMemoControl/CaseFold.h"
#include "common/Utf.h"

namespace zv {

namespace {

constexpr TColor kWhite = 0xFFFFFF;

TCharStyle MakeStyle(TColor text, TColor back, TFontStyles style) {
    TCharStyle s;
    s.FTextColor = text;
    s.FBkColor = back;
    s.FStyle = style;
    return s;
}

std::shared_ptr<const TStyleRegex> Compile(std::u16string_view pattern, bool caseless,
                                           std::u16string_view what,
                                           std::vector<std::string>& errors) {
    auto re = std::make_shared<const TStyleRegex>(pattern, caseless);
    if (!re->Valid())
        errors.push_back("bad regular expression in " + Utf16ToUtf8(what) + ": " + re->Error());
    return re;
}

} // namespace

TZvCustomMemoStyles::TZvCustomMemoStyles(std::u16string syntaxFile)
    : FSyntaxPathName(std::move(syntaxFile)) {
    SetDefaultColors();
}

TZvCustomMemoStyles::~TZvCustomMemoStyles() = default;

void TZvCustomMemoStyles::SetDefaultColors() {
    FCommentStyle = MakeStyle(0xC0C0C0, kWhite, 0);
    FNumberStyle = MakeStyle(0xFF00FF, kWhite, fsBold);
    FHexNumberStyle = MakeStyle(0x800000, kWhite, 0);
    FCharStyle = MakeStyle(0x800000, kWhite, 0);
    FStringStyle = MakeStyle(0x800000, kWhite, 0);
    FSymbolsStyle = FSymbolWordsAStyle = FSymbolWordsBStyle = FSymbolWordsCStyle =
        MakeStyle(0, kWhite, 0);
    FAttributeName = MakeStyle(255, kWhite, 0);
    FAttributeValue = MakeStyle(0xFF0000, kWhite, 0);
    FFoldMarkStyle = MakeStyle(0x00FFFF, 255, fsBold);
}

std::vector<std::string> TZvCustomMemoStyles::CompileRegExes() {
    std::vector<std::string> errors;
    for (TKeyWord& group : FKeyWords)
        if (group.RegEx)
            group.CompiledRegEx = Compile(group.sRegEx, !FKeywordCase, group.Name, errors);
    for (TBlock& block : FBlocks) {
        if (!block.IsRegEx())
            continue;
        // Block expressions match without regard to case.
        if (!block.Start.empty())
            block.StartRegEx = Compile(block.Start, true, block.Name + u" Start", errors);
        if (!block.Stop.empty())
            block.StopRegEx = Compile(block.Stop, true, block.Name + u" End", errors);
    }
    return errors;
}

int TZvCustomMemoStyles::FindKeyword(std::u16string_view word, bool caseSensitive) const noexcept {
    for (std::size_t i = 0; i < FKeyWords.size(); ++i)
        if (!FKeyWords[i].RegEx && FKeyWords[i].KeyWords.Contains(word, caseSensitive))
            return static_cast<int>(i);
    return -1;
}

int TZvCustomMemoStyles::FindTag(std::u16string_view name, bool caseSensitive) const noexcept {
    for (std::size_t i = 0; i < FTags.size(); ++i)
        if (FTags[i].KeyWords.Contains(name, caseSensitive))
            return static_cast<int>(i);
    return -1;
}

bool TZvCustomMemoStyles::IsCssFamily() const {
    return EqualsAsciiNoCase(FSyntaxName, u"css") || EqualsAsciiNoCase(FSyntaxName, u"sass") ||
           EqualsAsciiNoCase(FSyntaxName, u"scss") || EqualsAsciiNoCase(FSyntaxName, u"less");
}

} // namespace zv
