// The data folder below the root: its tree, the copy of the shipped user files, and keeping
// the main settings file whole across crashes and damaged writes.
#include "shell/DataFolders.h"

#include "common/AtomicFile.h"
#include "common/Trace.h"
#include "shell/DiskIniFiles.h"
#include "shell/ZvIniFiles.h"

#include <optional>

namespace zv {

namespace fs = std::filesystem;

namespace {

// The files of Data that an install copies only when the root lacks them.
constexpr const char* kDataFilesIfMissing[] = {
    "DockLayout.xml",  "PanelSymbols.txt",     "Symbols.txt",     "TidyXML.txt",
    "TidyXHTML.txt",   "TidyHTML.txt",         "Expressions.XML", "Zevrit.kbd",
    "UnicodeData.ini", "UnicodeIntervals.ini", "StartOptions.ini"};

bool Report(const std::error_code& ec, const char* what, const fs::path& path) {
    if (!ec)
        return true;
    Trace(std::string("DataFolders - ") + what + " " + path.string() + ": " + ec.message());
    return false;
}

bool Exists(const fs::path& path) {
    std::error_code ec;
    return fs::exists(path, ec);
}

bool CopyTree(const fs::path& from, const fs::path& to) {
    if (!Exists(from))
        return true;
    std::error_code ec;
    fs::copy(from, to, fs::copy_options::recursive | fs::copy_options::overwrite_existing, ec);
    return Report(ec, "copying to", to);
}

bool CopyTreeIfMissing(const fs::path& from, const fs::path& to) {
    return Exists(to) || CopyTree(from, to);
}

bool CopyFileIfMissing(const fs::path& from, const fs::path& to) {
    if (!Exists(from) || Exists(to))
        return true;
    std::error_code ec;
    fs::create_directories(to.parent_path(), ec);
    fs::copy_file(from, to, ec);
    return Report(ec, "copying to", to);
}

// Each shipped theme that the root's theme folder lacks.
bool CopyMissingThemes(const fs::path& from, const fs::path& to) {
    if (!Exists(to))
        return CopyTree(from, to);
    bool ok = true;
    std::error_code ec;
    for (fs::directory_iterator it(from, ec), end; !ec && it != end; it.increment(ec))
        ok = CopyFileIfMissing(it->path(), to / it->path().filename()) && ok;
    return Report(ec, "listing", from) && ok;
}

// The file's bytes when they hold at least one section; else nullopt.
std::optional<std::string> SoundSettingsBytes(const fs::path& file) {
    auto bytes = ReadWholeFile(file);
    if (!bytes)
        return std::nullopt;
    TMemIniFileW content;
    content.LoadFromBytes(*bytes);
    if (content.LoadStatus() != TIniLoadStatus::Loaded)
        return std::nullopt;
    return bytes;
}

// Moves a damaged settings file aside so restoring does not destroy what it held.
void KeepDamaged(const fs::path& settingsFile) {
    fs::path aside = settingsFile;
    aside += ".damaged";
    std::error_code ec;
    fs::rename(settingsFile, aside, ec);
    Report(ec, "moving aside the damaged", settingsFile);
    Trace("RestoreSettingsFile() - " + settingsFile.string() + " holds no section; kept as " +
          aside.string());
}

} // namespace

fs::path SettingsFilePath(const fs::path& root) {
    return root / "Zevrit.ini";
}
fs::path SettingsBackupPath(const fs::path& root) {
    return root / "Zevrit.ini.bak";
}
fs::path DefaultSettingsPath(const fs::path& programFolder) {
    return programFolder / "_Zevrit.ini";
}
fs::path StartOptionsPath(const fs::path& root) {
    return root / "Data" / "StartOptions.ini";
}
fs::path VersionFilePath(const fs::path& root) {
    return root / "Version.ini";
}

const std::vector<std::string>& DataTreeFolders() {
    static const std::vector<std::string> folders = {"Data",
                                                     "Data/Clips",
                                                     "Data/Macros",
                                                     "Data/Tools",
                                                     "Data/Tools/Icons",
                                                     "Data/Toolbars",
                                                     "Data/Cert",
                                                     "Data/Remote",
                                                     "Data/RemoteSync",
                                                     "Data/icons",
                                                     "Data/cef",
                                                     "Extensions",
                                                     "Help",
                                                     "ReadMe",
                                                     "ImageLists",
                                                     "Language",
                                                     "Language/User defined",
                                                     "Layouts",
                                                     "Scripts",
                                                     "Spell",
                                                     "Styles",
                                                     "Syntax",
                                                     "Syntax/User defined",
                                                     "Syntax color themes",
                                                     "Templates",
                                                     "Temp"};
    return folders;
}

bool LayOutDataTree(const fs::path& root) {
    bool ok = true;
    std::error_code ec;
    fs::create_directories(root, ec);
    ok = Report(ec, "creating", root);
    for (const auto& folder : DataTreeFolders()) {
        fs::create_directories(root / folder, ec);
        ok = Report(ec, "creating", root / folder) && ok;
    }
    return ok;
}

TSettingsOrigin RestoreSettingsFile(const fs::path& settingsFile, const fs::path& backupFile,
                                    const fs::path& defaultFile) {
    const TIniLoadStatus status = TMemIniFileW(settingsFile).LoadStatus();
    if (status == TIniLoadStatus::Loaded || status == TIniLoadStatus::ReadError)
        return TSettingsOrigin::Present;
    if (status == TIniLoadStatus::Unparsed)
        KeepDamaged(settingsFile);
    if (const auto bytes = SoundSettingsBytes(backupFile))
        if (WriteFileAtomically(settingsFile, *bytes))
            return TSettingsOrigin::FromBackup;
    if (const auto bytes = SoundSettingsBytes(defaultFile))
        if (WriteFileAtomically(settingsFile, *bytes))
            return TSettingsOrigin::FromDefault;
    Trace("RestoreSettingsFile() - no usable backup or default for " + settingsFile.string());
    return TSettingsOrigin::None;
}

bool BackupSettingsFile(const fs::path& settingsFile, const fs::path& backupFile) {
    const auto bytes = SoundSettingsBytes(settingsFile);
    if (!bytes) {
        Trace("BackupSettingsFile() - " + settingsFile.string() +
              " missing or without a section; backup kept");
        return false;
    }
    return WriteFileAtomically(backupFile, *bytes);
}

TSettingsOrigin PrepareDataFolder(const fs::path& root, const fs::path& programFolder) {
    LayOutDataTree(root);
    const TSettingsOrigin origin = RestoreSettingsFile(
        SettingsFilePath(root), SettingsBackupPath(root), DefaultSettingsPath(programFolder));
    if (!Exists(StartOptionsPath(root))) {
        TMemIniFileW options(StartOptionsPath(root), TIniEncoding::Utf8);
        const TStartOptionValues defaults;
        options.WriteBool("Misc", "OnlyOneInstance", defaults.OnlyOneInstance);
        options.WriteBool("Misc", "ChromeEnabled", defaults.ChromeEnabled);
        options.WriteInteger("Misc", "AppIcon", defaults.AppIcon);
        options.UpdateFile();
    }
    return origin;
}

bool InstallUserFiles(const fs::path& installData, const fs::path& root) {
    bool ok = true;
    for (const char* folder : {"Extensions", "Help", "Language", "ReadMe", "Styles", "Syntax"})
        ok = CopyTree(installData / folder, root / folder) && ok;
    ok = CopyTreeIfMissing(installData / "Data", root / "Data") && ok;
    ok = CopyTree(installData / "Data/Clips", root / "Data/Clips") && ok;
    ok = CopyTree(installData / "Data/icons", root / "Data/icons") && ok;
    for (const char* file : kDataFilesIfMissing)
        ok = CopyFileIfMissing(installData / "Data" / file, root / "Data" / file) && ok;
    for (const char* folder : {"Layouts", "Scripts", "Spell"})
        ok = CopyTreeIfMissing(installData / folder, root / folder) && ok;
    ok = CopyMissingThemes(installData / "Syntax color themes", root / "Syntax color themes") && ok;
    for (const char* folder : {"Temp", "Templates"})
        ok = CopyTreeIfMissing(installData / folder, root / folder) && ok;
    ok = CopyFileIfMissing(installData / "Zevrit.ini", SettingsFilePath(root)) && ok;
    if (Exists(installData / "Version.ini")) {
        std::error_code ec;
        fs::copy_file(installData / "Version.ini", VersionFilePath(root),
                      fs::copy_options::overwrite_existing, ec);
        ok = Report(ec, "copying to", VersionFilePath(root)) && ok;
    }
    return ok;
}

int32_t ReadInstalledVersion(const fs::path& root) {
    return TZvIniFile(VersionFilePath(root)).ReadInteger("Update", "Version", 0);
}

bool WriteInstalledVersion(const fs::path& root, int32_t buildNumber) {
    TZvIniFile version(VersionFilePath(root));
    version.WriteInteger("Update", "Version", buildNumber);
    return version.UpdateFile();
}

TStartOptionValues ReadStartOptionValues(const fs::path& root) {
    const TZvIniFile options(StartOptionsPath(root));
    TStartOptionValues values;
    values.OnlyOneInstance = options.ReadBool("Misc", "OnlyOneInstance", values.OnlyOneInstance);
    values.ChromeEnabled = options.ReadBool("Misc", "ChromeEnabled", values.ChromeEnabled);
    values.AppIcon = options.ReadInteger("Misc", "AppIcon", values.AppIcon);
    return values;
}

bool WriteStartOptions(const fs::path& root, const TCustomIniFile& settings) {
    TZvIniFile options(StartOptionsPath(root));
    options.WriteBool("Misc", "OnlyOneInstance", settings.ReadBool("Customize", "LoadInTab", true));
    options.WriteBool("Misc", "ChromeEnabled", options.ReadBool("Misc", "ChromeEnabled", true));
    return options.UpdateFile();
}

} // namespace zv
