// Instance check, hand-over and the headless run.
#include "shell/Startup.h"

#include "common/RegularFile.h"
#include "common/Trace.h"
#include "platform/Prompt.h"
#include "shell/CommandLine.h"
#include "shell/DataFolders.h"
#include "shell/Language.h"
#include "shell/MainForm.h"
#include "shell/MainFormHelper.h"
#include "shell/RootFolder.h"
#include "shell/RunOnce.h"
#include "shell/Settings.h"
#include "shell/Switches.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <thread>
#include <unistd.h>

namespace zv {

namespace {
std::filesystem::path UserFilesSource(const std::filesystem::path& programFolder);
} // namespace

TStartOptions ReadStartOptions(const std::filesystem::path& root) {
    TStartOptions options;
    std::error_code ec;
    // A root never started has none yet: the copy its first start installs decides, so that
    // two first starts at one moment still make one window.
    std::filesystem::path from = root;
    if (!std::filesystem::exists(StartOptionsPath(root), ec))
        from = UserFilesSource(ProgramFolder());
    options.found = std::filesystem::exists(StartOptionsPath(from), ec);
    if (!options.found)
        return options;
    const auto values = ReadStartOptionValues(from);
    options.OnlyOneInstance = values.OnlyOneInstance;
    options.AppIcon = values.AppIcon;
    return options;
}

std::filesystem::path SettingsFileFor(const std::vector<std::string>& argv,
                                      const std::filesystem::path& root) {
    if (argv.size() > 2 && IsSwitch(argv[1], "SETTINGS"))
        return AbsolutePath(argv[2]);
    return SettingsFilePath(root);
}

namespace {

// Raised when the shipped user files change, so that a root made by an older build gets them.
constexpr int32_t kUserFilesVersion = 1;

// Where the shipped user files come from: the InstallData tree of an installed program, or
// the portable tree the program runs from when the root lies elsewhere (ZEVRIT_ROOT).
std::filesystem::path UserFilesSource(const std::filesystem::path& programFolder) {
    std::error_code ec;
    for (const auto& installData :
         {programFolder / "InstallData",
          programFolder.parent_path() / "share" / "zevrit" / "InstallData"})
        if (std::filesystem::is_directory(installData, ec))
            return installData;
    return programFolder.parent_path();
}

// Runs before the tree is laid out: the copies of "Data", "Layouts", "Templates" and the
// like are made only where the root lacks the folder, so empty folders made first would
// keep the shipped files out.
void InstallUserFilesIfNeeded(const std::filesystem::path& root) {
    const auto source = UserFilesSource(ProgramFolder());
    std::error_code ec;
    if (std::filesystem::equivalent(source, root, ec) ||
        ReadInstalledVersion(root) >= kUserFilesVersion)
        return;
    std::filesystem::create_directories(root, ec);
    InstallUserFiles(source, root);
    WriteInstalledVersion(root, kUserFilesVersion);
}

} // namespace

namespace {

// What keeps the settings just opened from working, in words for the user.
std::string SettingsFault(const std::filesystem::path& file) {
    const std::string name = "\"" + file.string() + "\"";
    if (SettingsIni().LoadStatus() == TIniLoadStatus::ReadError) {
        const std::string kind = NotRegularFileKind(file.string());
        return "The settings file " + name + " cannot be read (" +
               (kind.empty() ? std::string(std::strerror(errno)) : "it is " + kind) +
               "). Zevrit starts with the default settings.";
    }
    std::error_code ec;
    const bool exists = std::filesystem::exists(file, ec);
    const std::filesystem::path folder = file.parent_path();
    if (exists ? ::access(file.c_str(), W_OK) != 0 : ::access(folder.c_str(), W_OK) != 0)
        return "The settings cannot be saved in " + name + " (" + std::strerror(errno) +
               "): changes to them are lost at exit.";
    return {};
}

} // namespace

std::string OpenProgramSettings(const std::filesystem::path& root,
                                const std::filesystem::path& file) {
    TraceEnter("OpenProgramSettings");
    InstallUserFilesIfNeeded(root);
    PrepareDataFolder(root, ProgramFolder());
    OpenSettings(file);
    const auto language =
        SettingsIni().ReadString("Customize", "Language", std::string_view("eng.ini"));
    std::error_code ec;
    if (const auto file = root / "Language" / language; std::filesystem::exists(file, ec))
        OpenLanguage(file);
    SetLanguageLookup(
        [](const std::string& section, const std::string& key, const std::string& fallback) {
            return LanguageIni().ReadString(section, key, std::string_view(fallback));
        });
    std::string fault = SettingsFault(file);
    if (!fault.empty())
        Trace("OpenProgramSettings() - " + fault);
    return fault;
}

void SettingsStarted(const std::filesystem::path& root) {
    WriteStartOptions(root, SettingsIni());
    if (SettingsIni().FileName() != SettingsFilePath(root))
        return; // a file named by /SETTINGS has no backup of its own
    if (BackupSettingsFile(SettingsFilePath(root), SettingsBackupPath(root)))
        Trace("SettingsStarted() - backup refreshed");
}

std::string CloseProgramSettings(const std::filesystem::path& root) {
    TraceEnter("CloseProgramSettings");
    SetLanguageLookup({});
    WriteStartOptions(root, SettingsIni());
    std::string error;
    if (SettingsIni().UpdateFile(error))
        return {};
    Trace("CloseProgramSettings() - settings not written: " + error);
    return "The settings could not be saved: " + error;
}

namespace {

// Polls for the first window and hands the arguments over. A window that does not answer
// within the give-up time is as good as none: its role is taken over, unless another start
// took it first, whose window is then waited for in the remaining polls.
TEntryOutcome HandOverOrTakeOver(TRunOnce& block, const TEntryParams& params) {
    const std::vector<std::string> args(params.argv.begin() + 1, params.argv.end());
    uint64_t owner = block.OwnerHandle();
    uint64_t silent = 0;
    for (int poll = 0; poll < params.pollCount; ++poll) {
        const uint64_t window = block.GetWinHandle();
        if (window == 0 || window == silent) {
            std::this_thread::sleep_for(std::chrono::milliseconds(params.pollIntervalMs));
            continue;
        }
        if (block.SendToInstance(args, params.cwd)) {
            Trace("RunInstanceCheck() - handed over");
            return TEntryOutcome::HandedOver;
        }
        Trace("RunInstanceCheck() - first window silent, taking over");
        if (block.TakeOver(params.appHandle, owner))
            return TEntryOutcome::RunAsFirst;
        silent = window;
        owner = block.OwnerHandle();
    }
    Trace("RunInstanceCheck() - no first window, taking over");
    if (block.TakeOver(params.appHandle, owner))
        return TEntryOutcome::RunAsFirst;
    Trace("RunInstanceCheck() - another start took over first, running beside it");
    return TEntryOutcome::RunAsOther;
}

} // namespace

TEntryOutcome RunInstanceCheck(TRunOnce& block, const TEntryParams& params) {
    TraceEnter("RunInstanceCheck");
    const bool first = block.Check(params.appHandle);
    const bool single = !params.controlHeld && !HasMultiSwitch(params.argv) &&
                        params.options.found && params.options.OnlyOneInstance;
    if (first) {
        Trace("RunInstanceCheck() - first instance");
        return TEntryOutcome::RunAsFirst;
    }
    if (!single) {
        Trace("RunInstanceCheck() - further instance");
        return TEntryOutcome::RunAsOther;
    }
    return HandOverOrTakeOver(block, params);
}

bool WantsHeadless(const std::vector<std::string>& argv) {
    return std::any_of(argv.begin() + (argv.empty() ? 0 : 1), argv.end(),
                       [](const std::string& a) { return IsSwitch(a, "HEADLESS"); });
}

int RunHeadless(const std::vector<std::string>& argv) {
    TraceConfigure(ProgramFolder(), GetRootFolder());
    std::vector<std::string> args;
    std::copy_if(argv.begin(), argv.end(), std::back_inserter(args),
                 [](const std::string& a) { return !IsSwitch(a, "HEADLESS"); });
    const std::string fault =
        OpenProgramSettings(GetRootFolder(), SettingsFileFor(args, GetRootFolder()));
    THeadlessPrompt prompt;
    if (!fault.empty()) // told, but not a failure of the run: the files are still saved
        std::fprintf(stderr, "zevrit: %s\n", fault.c_str());
    TMainFormHelper helper(prompt);
    TMainForm form(helper, nullptr);
    form.FormShow(args);
    SettingsStarted(GetRootFolder());
    int failures = static_cast<int>(prompt.Log().size());
    for (const auto& doc : helper.Documents())
        if (!helper.SaveFile(doc.get()))
            ++failures;
    helper.FApplicationClosing = true;
    if (const std::string closing = CloseProgramSettings(GetRootFolder());
        !closing.empty() && fault.empty()) // once per run
        std::fprintf(stderr, "zevrit: %s\n", closing.c_str());
    TraceShutdown();
    return failures == 0 ? 0 : 1;
}

} // namespace zv
