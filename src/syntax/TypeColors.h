// The colour scheme of syntax types: the default colours of each token kind for a light and a
// dark theme ("Syntax/Colors.ini"), overridden per type there and in the settings; and the text
// elements of the settings' colour theme that style sets carry.
#pragma once

#include "shell/SettingsOptions.h"
#include "shell/ZvIniFiles.h"
#include "syntax/ZvSyntax.h"

#include <optional>

namespace zv {

// "#RRGGBB" or "-"/empty (no colour), "," back colour, "," style letters (B, I, U, S).
// Returns nullopt when the text is none of these.
std::optional<TCharStyle> ParseColorValue(std::u16string_view text);

// Sets the text elements of a colour theme (LoadTextOptions) that a style set carries: default
// text ("Default"), selection, control characters, sync edit, line and brace highlight. An
// element colour that is not set leaves the set's own value.
void ApplyTextOptions(TZvCustomMemoStyles& styles, const TTextOptions& options);

class TTypeColors : public IStyleColorSource {
public:
    // `settings` may be null; `theme` names the sections of Colors.ini ("Light", "Dark");
    // `text` is applied over the token colours of every set.
    TTypeColors(const std::filesystem::path& colorsFile, const TCustomIniFile* settings,
                std::u16string theme, TTextOptions text = {});
    // The scheme the settings choose: theme by ThemeFrom, text elements by LoadTextOptions.
    // `settings` must outlive the scheme.
    TTypeColors(const std::filesystem::path& colorsFile, const TCustomIniFile& settings);

    // The theme the settings choose: key "ColorTheme" of section "EditorMisc", "Light" when
    // missing or without settings.
    static std::u16string ThemeFrom(const TCustomIniFile* settings);

    // Sets the token styles, keyword, tag and block colours of a loaded set, then the text
    // elements. Keys without a value anywhere keep the set's built-in defaults; malformed
    // values are skipped.
    void ApplyColors(TZvCustomMemoStyles& styles, std::u16string_view type) const override;

    // The style of one colour key for a type, looked up settings first, then the type's
    // section of Colors.ini, then the theme's; numbered keys reuse the last numbers given.
    std::optional<TCharStyle> Lookup(std::u16string_view type, std::u16string_view key) const;

private:
    std::optional<TCharStyle> LookupExact(std::u16string_view type, std::u16string_view key) const;

    TMemIniFileW FDefaults;
    const TCustomIniFile* FSettings; // may be null
    std::u16string FTheme;
    TTextOptions FText;
};

} // namespace zv
