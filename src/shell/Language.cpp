// The process-wide language lookup.
#include "shell/Language.h"

namespace zv {
namespace {
TLanguageLookup& Lookup() {
    static TLanguageLookup lookup; // set on the main thread at start, read there
    return lookup;
}
} // namespace

void SetLanguageLookup(TLanguageLookup lookup) {
    Lookup() = std::move(lookup);
}

std::string LangText(const std::string& section, const std::string& key,
                     const std::string& fallback) {
    const auto& lookup = Lookup();
    return lookup ? lookup(section, key, fallback) : fallback;
}

} // namespace zv
