// The program's two settings objects: the main settings and the language strings. Every
// feature reads its options through them by section, key and default, when it needs them.
#pragma once

#include "shell/ZvIniFiles.h"

#include <filesystem>
#include <memory>

namespace zv {

// The main settings. Before OpenSettings (and after CloseSettings) this is an empty file
// in memory, so readers get their defaults and nothing fails. Main thread only.
TMemIniFileW& SettingsIni();
// The language strings (UTF-8 on disk); empty in memory until OpenLanguage.
TMemIniFileW& LanguageIni();

// Reads the main settings file (written back as UTF-16LE with BOM) and makes it the
// settings object; the previous one is dropped without writing. Returns the new object.
TMemIniFileW& OpenSettings(const std::filesystem::path& settingsFile);
// Reads a language file (UTF-8) and makes it the language object.
TMemIniFileW& OpenLanguage(const std::filesystem::path& languageFile);

// Drops the settings object without writing it (the install step replaces the file under
// it), leaving the empty in-memory one. Returns the dropped object.
std::unique_ptr<TMemIniFileW> CloseSettings();

} // namespace zv
