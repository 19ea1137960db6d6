// The colour scheme of syntax types: the default colours of each token kind for a light and a
// dark theme ("Syntax/Colors.ini"), overridden per type there and in the settings.
#pragma once

#include "shell/ZvIniFiles.h"
#include "syntax/ZvSyntax.h"

#include <optional>

namespace zv {

// "#RRGGBB" or "-"/empty (no colour), "," back colour, "," style letters (B, I, U, S).
// Returns nullopt when the text is none of these.
std::optional<TCharStyle> ParseColorValue(std::u16string_view text);

class TTypeColors : public IStyleColorSource {
public:
    // `settings` may be null; `theme` names the sections of Colors.ini ("Light", "Dark").
    TTypeColors(const std::filesystem::path& colorsFile, const TCustomIniFile* settings,
                std::u16string theme);

    // The theme the settings choose: key "ColorTheme" of section "EditorMisc", "Light" when
    // missing or without settings.
    static std::u16string ThemeFrom(const TCustomIniFile* settings);

    // Sets the token styles, keyword, tag and block colours of a loaded set. Keys without a
    // value anywhere keep the set's built-in defaults; malformed values are skipped.
    void ApplyColors(TZvCustomMemoStyles& styles, std::u16string_view type) const override;

    // The style of one colour key for a type, looked up settings first, then the type's
    // section of Colors.ini, then the theme's; numbered keys reuse the last numbers given.
    std::optional<TCharStyle> Lookup(std::u16string_view type, std::u16string_view key) const;

private:
    std::optional<TCharStyle> LookupExact(std::u16string_view type, std::u16string_view key) const;

    TMemIniFileW FDefaults;
    const TCustomIniFile* FSettings;
    std::u16string FTheme;
};

} // namespace zv
