// The data folder below the root: its tree, the copy of the shipped user files, and keeping
// the main settings file whole across crashes and damaged writes.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace zv {

class TCustomIniFile;

// Paths of the files the start-up needs, under the root or beside the program.
std::filesystem::path SettingsFilePath(const std::filesystem::path& root);   // Zevrit.ini
std::filesystem::path SettingsBackupPath(const std::filesystem::path& root); // Zevrit.ini.bak
std::filesystem::path
DefaultSettingsPath(const std::filesystem::path& programFolder);           // _Zevrit.ini
std::filesystem::path StartOptionsPath(const std::filesystem::path& root); // Data/StartOptions.ini
std::filesystem::path VersionFilePath(const std::filesystem::path& root);  // Version.ini

// The folders of the tree, relative to the root, parents before children.
const std::vector<std::string>& DataTreeFolders();

// Creates the root and every folder of the tree that is missing. False if one could not be
// made (each failure traced); the others are made all the same.
bool LayOutDataTree(const std::filesystem::path& root);

// Where the main settings file came from at this start.
enum class TSettingsOrigin {
    Present,     // it was there and sound (or empty, or unreadable: then left alone)
    FromBackup,  // missing or damaged, copied from Zevrit.ini.bak
    FromDefault, // missing or damaged, copied from the default beside the program
    None,        // missing or damaged, and neither source was usable: defaults in memory
};

// A missing settings file, an empty one, or one that holds text but no section (damaged) is
// brought back from the backup when that holds at least one section, else from the default
// file. A damaged file is first renamed to "<name>.damaged" so nothing is lost. A failed
// copy is traced, never raised. A sound file is never touched.
TSettingsOrigin RestoreSettingsFile(const std::filesystem::path& settingsFile,
                                    const std::filesystem::path& backupFile,
                                    const std::filesystem::path& defaultFile);

// Copies the settings file over the backup (atomically) when it holds at least one
// section; a missing, unreadable, empty or damaged file never displaces the backup.
// Returns whether the backup was written.
bool BackupSettingsFile(const std::filesystem::path& settingsFile,
                        const std::filesystem::path& backupFile);

// Every start, before the settings are opened: lays out the tree under root, restores the
// main settings file (backup, then programFolder's default) and writes StartOptions.ini
// with its defaults when it is missing. Returns where the settings file came from.
TSettingsOrigin PrepareDataFolder(const std::filesystem::path& root,
                                  const std::filesystem::path& programFolder);

// Copies the shipped user files from installData (a tree shaped like the root) to root, in
// this order: Extensions, Help, Language, ReadMe, Styles, Syntax (overwriting); Data whole
// if root has none, then Data/Clips and Data/icons always; the single Data files only if
// missing; Layouts, Scripts, Spell if missing; "Syntax color themes" whole if missing, else
// each shipped theme file that is missing; Temp and Templates if missing; Zevrit.ini if
// missing; Version.ini. Sources that do not exist are skipped. Returns false if any copy
// failed (each traced); the rest is copied all the same.
bool InstallUserFiles(const std::filesystem::path& installData, const std::filesystem::path& root);

// Version.ini, section "Update", key "Version": build number of the installed user files.
int32_t ReadInstalledVersion(const std::filesystem::path& root);
bool WriteInstalledVersion(const std::filesystem::path& root, int32_t buildNumber);

// StartOptions.ini, section "Misc": read before the main settings exist.
struct TStartOptionValues {
    bool OnlyOneInstance = true;
    bool ChromeEnabled = true;
    int32_t AppIcon = -1;
};
TStartOptionValues ReadStartOptionValues(const std::filesystem::path& root);
// After the settings are open: "OnlyOneInstance" from "Customize"/"LoadInTab" (default true)
// and "ChromeEnabled" kept (default true), so the next start can decide before the settings
// are open. Returns whether the file was written.
bool WriteStartOptions(const std::filesystem::path& root, const TCustomIniFile& settings);

} // namespace zv
