// Texts the user sees come from the language object by section and numbered key.
#pragma once

#include <functional>
#include <string>

namespace zv {

using TLanguageLookup = std::function<std::string(
    const std::string& section, const std::string& key, const std::string& fallback)>;

// Installs the lookup used by LangText (the start-up sets it to the language file);
// an empty function restores the English defaults.
void SetLanguageLookup(TLanguageLookup lookup);

// The text of section/key, or fallback when the language file lacks it.
std::string LangText(const std::string& section, const std::string& key,
                     const std::string& fallback = "");

} // namespace zv
