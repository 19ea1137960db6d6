// Colour keys of token kinds, parsed and applied to style sets.
#include "syntax/TypeColors.h"

#include <array>
#include <charconv>

namespace zv {

namespace {

std::optional<TColor> ParseColor(std::u16string_view s) {
    while (!s.empty() && s.front() == u' ')
        s.remove_prefix(1);
    while (!s.empty() && s.back() == u' ')
        s.remove_suffix(1);
    if (s.empty() || s == u"-")
        return kNoColor;
    if (s.size() != 7 || s[0] != u'#')
        return std::nullopt;
    char hex[6];
    for (int i = 0; i < 6; ++i) {
        if (s[i + 1] > 0x7F)
            return std::nullopt;
        hex[i] = static_cast<char>(s[i + 1]);
    }
    std::uint32_t rgb = 0;
    auto [end, ec] = std::from_chars(hex, hex + 6, rgb, 16);
    if (ec != std::errc{} || end != hex + 6)
        return std::nullopt;
    // Stored as 0x00BBGGRR.
    return ((rgb & 0xFF) << 16) | (rgb & 0xFF00) | ((rgb >> 16) & 0xFF);
}

std::optional<TFontStyles> ParseStyle(std::u16string_view s) {
    TFontStyles style = 0;
    for (char16_t c : s) {
        switch (c) {
        case u'B':
        case u'b':
            style |= fsBold;
            break;
        case u'I':
        case u'i':
            style |= fsItalic;
            break;
        case u'U':
        case u'u':
            style |= fsUnderline;
            break;
        case u'S':
        case u's':
            style |= fsStrikeOut;
            break;
        case u' ':
            break;
        default:
            return std::nullopt;
        }
    }
    return style;
}

std::u16string Numbered(std::u16string_view stem, int n) {
    char buf[16];
    auto end = std::to_chars(buf, buf + sizeof buf, n).ptr;
    return std::u16string(stem) + std::u16string(buf, end);
}

// "Keywords12" -> ("Keywords", 12); -1 when the key has no number.
std::pair<std::u16string_view, int> SplitNumber(std::u16string_view key) {
    std::size_t i = key.size();
    while (i > 0 && key[i - 1] >= u'0' && key[i - 1] <= u'9')
        --i;
    if (i == key.size() || key.size() - i > 6)
        return {key, -1};
    int n = 0;
    for (std::size_t j = i; j < key.size(); ++j)
        n = n * 10 + (key[j] - u'0');
    return {key.substr(0, i), n};
}

void ApplyTo(TCharStyle& target, const std::optional<TCharStyle>& value) {
    if (value)
        target = *value;
}

} // namespace

std::optional<TCharStyle> ParseColorValue(std::u16string_view text) {
    std::array<std::u16string_view, 3> parts{};
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t comma = text.find(u',');
        parts[i] = text.substr(0, comma);
        if (comma == text.npos) {
            text = {};
            break;
        }
        text.remove_prefix(comma + 1);
    }
    if (!text.empty())
        return std::nullopt;
    const auto fore = ParseColor(parts[0]), back = ParseColor(parts[1]);
    const auto style = ParseStyle(parts[2]);
    if (!fore || !back || !style)
        return std::nullopt;
    TCharStyle s;
    s.FTextColor = *fore;
    s.FBkColor = *back;
    s.FStyle = *style;
    s.FBoldness = (*style & fsBold) ? 700 : 400;
    return s;
}

std::u16string TTypeColors::ThemeFrom(const TCustomIniFile* settings) {
    return settings ? settings->ReadString("EditorMisc", "ColorTheme", u"Light") : u"Light";
}

TTypeColors::TTypeColors(const std::filesystem::path& colorsFile, const TCustomIniFile* settings,
                         std::u16string theme, TTextOptions text)
    : FDefaults(colorsFile), FSettings(settings), FTheme(std::move(theme)), FText(std::move(text)) {
}

TTypeColors::TTypeColors(const std::filesystem::path& colorsFile, const TCustomIniFile& settings)
    : TTypeColors(colorsFile, &settings, ThemeFrom(&settings), LoadTextOptions(settings)) {}

std::optional<TCharStyle> TTypeColors::LookupExact(std::u16string_view type,
                                                   std::u16string_view key) const {
    const std::u16string themed = FTheme + u"." + std::u16string(key);
    if (FSettings && !type.empty() && FSettings->ValueExists(type, themed))
        return ParseColorValue(FSettings->ReadString(type, themed, u""));
    const std::u16string typeSection = FTheme + u"." + std::u16string(type);
    if (!type.empty() && FDefaults.ValueExists(typeSection, key))
        return ParseColorValue(FDefaults.ReadString(typeSection, key, u""));
    if (FDefaults.ValueExists(FTheme, key))
        return ParseColorValue(FDefaults.ReadString(FTheme, key, u""));
    return std::nullopt;
}

std::optional<TCharStyle> TTypeColors::Lookup(std::u16string_view type,
                                              std::u16string_view key) const {
    if (auto exact = LookupExact(type, key))
        return exact;
    const auto [stem, n] = SplitNumber(key);
    if (n <= 0)
        return std::nullopt;
    int count = 0; // how many numbered keys the theme gives: they are reused in turn
    while (count < 64 && FDefaults.ValueExists(FTheme, Numbered(stem, count)))
        ++count;
    return count > 0 && n >= count ? LookupExact(type, Numbered(stem, n % count)) : std::nullopt;
}

void TTypeColors::ApplyColors(TZvCustomMemoStyles& s, std::u16string_view type) const {
    if (auto text = Lookup(type, u"Text")) {
        s.FTextColor = text->FTextColor;
        s.FBkColor = s.FTextColorBK = text->FBkColor;
        s.FTextStyle = text->FStyle;
    }
    const std::array<std::pair<std::u16string_view, TCharStyle*>, 13> kinds{{
        {u"Comment", &s.FCommentStyle},
        {u"LineComment", &s.FLineCommentStyle},
        {u"String", &s.FStringStyle},
        {u"Char", &s.FCharStyle},
        {u"Number", &s.FNumberStyle},
        {u"HexNumber", &s.FHexNumberStyle},
        {u"Symbol", &s.FSymbolsStyle},
        {u"SymbolWordsA", &s.FSymbolWordsAStyle},
        {u"SymbolWordsB", &s.FSymbolWordsBStyle},
        {u"SymbolWordsC", &s.FSymbolWordsCStyle},
        {u"AttributeName", &s.FAttributeName},
        {u"AttributeValue", &s.FAttributeValue},
        {u"FoldMark", &s.FFoldMarkStyle},
    }};
    for (const auto& [key, target] : kinds)
        ApplyTo(*target, Lookup(type, key));
    if (auto tag = Lookup(type, u"Tag")) {
        s.FTagColor = tag->FTextColor;
        s.FTagColorBk = tag->FBkColor;
        s.FTagStyle = tag->FStyle;
        s.FTagBoldness = tag->FBoldness;
    }
    auto applyGroup = [](auto& group, const std::optional<TCharStyle>& v) {
        if (!v)
            return;
        group.Color = v->FTextColor;
        group.ColorBk = v->FBkColor;
        group.Style = v->FStyle;
        group.Boldness = v->FBoldness;
    };
    for (TKeyWord& g : s.FKeyWords)
        applyGroup(g, Lookup(type, g.Info));
    for (TKeyWord& g : s.FTags)
        applyGroup(g, Lookup(type, g.Info));
    for (std::size_t i = 0; i < s.FBlocks.size(); ++i)
        applyGroup(s.FBlocks[i], Lookup(type, Numbered(u"Block", static_cast<int>(i))));
    ApplyTextOptions(s, FText);
}

void ApplyTextOptions(TZvCustomMemoStyles& s, const TTextOptions& options) {
    auto set = [](TColor& target, int32_t value) {
        if (const TColor c = ThemeColor(value); c != kNoColor)
            target = c;
    };
    const TThemeElement& text = TextElement(options, u"Default");
    set(s.FTextColor, text.Color);
    set(s.FBkColor, text.ColorBk);
    set(s.FTextColorBK, text.ColorBk);
    if (ThemeColor(text.Color) != kNoColor) { // the font goes with a colour that was chosen
        s.FTextStyle = static_cast<TFontStyles>(text.Style & 0xF);
        s.FTextBoldness = text.Boldness;
    }
    // Theme elements that give a text and a background colour, each to its own pair.
    const struct {
        std::u16string_view element;
        TColor TZvCustomMemoStyles::*text;
        TColor TZvCustomMemoStyles::*back;
    } pairs[] = {
        {u"Selection", &TZvCustomMemoStyles::FSelColor, &TZvCustomMemoStyles::FSelBkColor},
        {u"ControlChar", &TZvCustomMemoStyles::FControlCharColor,
         &TZvCustomMemoStyles::FControlCharColorBk},
        {u"SyncEdit", &TZvCustomMemoStyles::FSyncEditColor, &TZvCustomMemoStyles::FSyncEditBkColor},
        {u"BraceHighlight", &TZvCustomMemoStyles::FBraceHighlightTextColor,
         &TZvCustomMemoStyles::FBraceHighlightColor},
        {u"BraceHighlightError", &TZvCustomMemoStyles::FBraceHighlightTextColorE,
         &TZvCustomMemoStyles::FBraceHighlightColorE},
    };
    for (const auto& pair : pairs) {
        const TThemeElement& element = TextElement(options, pair.element);
        set(s.*pair.text, element.Color);
        set(s.*pair.back, element.ColorBk);
    }
    set(s.FLineHighlightColor, TextElement(options, u"LineHighlight").ColorBk);
}

} // namespace zv
