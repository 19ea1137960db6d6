// The keywords that colour the lines of a followed log: "Data/TailKeywords.ini" under the
// root holds one section per keyword (the section's name), with "ColorText", "ColorBk"
// (0x00BBGGRR), "Bold", "Italic", "Underline", "Transparent" (no back colour),
// "IgnoreCase" and "RegEx" (the name is a regular expression).
#pragma once

#include "ZvMemoControl/StyleRegex.h"
#include "ZvMemoControl/StyleTypes.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

class TCustomIniFile;

struct TTailKeyword {
    std::u16string Text; // as written; case-folded when IgnoreCase (and not RegEx)
    TCharStyle Style;    // kNoColor back colour when Transparent
    bool IgnoreCase = false;
    std::shared_ptr<const TStyleRegex> Regex; // set for a valid "RegEx" keyword
};

class TTailKeywords {
public:
    TTailKeywords() = default;
    // Reads every section of `ini`, in file order; a keyword with an invalid regular
    // expression, or an empty one, is left out.
    explicit TTailKeywords(const TCustomIniFile& ini);

    // The style of the first keyword (in file order) that `line` holds, or null.
    const TCharStyle* Match(std::u16string_view line) const;
    bool Empty() const { return FKeywords.empty(); }
    const std::vector<TTailKeyword>& Keywords() const { return FKeywords; }

private:
    bool Holds(const TTailKeyword& keyword, std::u16string_view line,
               std::u16string_view folded) const;

    std::vector<TTailKeyword> FKeywords;
    mutable TRegexMatch FScratch; // main thread only: painting asks
};

// The keywords of "Data/TailKeywords.ini" under `root` (none when there is no such file).
std::shared_ptr<const TTailKeywords> MemoGetFollowTailOptions(const std::filesystem::path& root);

} // namespace zv
