// The program's two settings objects: the main settings and the language strings.
#include "shell/Settings.h"

#include <utility>

namespace zv {

namespace {

// Each holder always holds an object, so the accessors never return null.
std::unique_ptr<TMemIniFileW>& SettingsHolder() {
    static std::unique_ptr<TMemIniFileW> holder = std::make_unique<TMemIniFileW>();
    return holder;
}

std::unique_ptr<TMemIniFileW>& LanguageHolder() {
    static std::unique_ptr<TMemIniFileW> holder =
        std::make_unique<TMemIniFileW>(std::filesystem::path(), TIniEncoding::Utf8);
    return holder;
}

} // namespace

TMemIniFileW& SettingsIni() {
    return *SettingsHolder();
}
TMemIniFileW& LanguageIni() {
    return *LanguageHolder();
}

TMemIniFileW& OpenSettings(const std::filesystem::path& settingsFile) {
    SettingsHolder() = std::make_unique<TMemIniFileW>(settingsFile, TIniEncoding::Utf16LE);
    return SettingsIni();
}

TMemIniFileW& OpenLanguage(const std::filesystem::path& languageFile) {
    LanguageHolder() = std::make_unique<TMemIniFileW>(languageFile, TIniEncoding::Utf8);
    return LanguageIni();
}

std::unique_ptr<TMemIniFileW> CloseSettings() {
    return std::exchange(SettingsHolder(), std::make_unique<TMemIniFileW>());
}

} // namespace zv
