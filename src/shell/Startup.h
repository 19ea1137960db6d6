// Process entry up to the main window: the instance check, the hand-over to a running
// first instance, and the headless run.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace zv {

class TRunOnce;

// "Data/StartOptions.ini", read before anything else exists.
struct TStartOptions {
    bool found = false;
    bool OnlyOneInstance = true;
    int32_t AppIcon = -1;
};
TStartOptions ReadStartOptions(const std::filesystem::path& root);

// The settings file of this run: the file after a leading /SETTINGS switch, else
// root/Zevrit.ini (the data folder stays below the root either way).
std::filesystem::path SettingsFileFor(const std::vector<std::string>& argv,
                                      const std::filesystem::path& root);
// Lays out the data folder (restoring the settings file if need be), opens the settings
// file and the language file they name, and routes the program's texts through it. Returns
// what keeps the settings from working (a file that cannot be read, a folder where they
// cannot be written), for the user; empty when nothing does. The program goes on with the
// defaults either way.
std::string OpenProgramSettings(const std::filesystem::path& root,
                                const std::filesystem::path& file);
// Once the start has succeeded (the arguments are processed, the window shows): writes
// StartOptions.ini from the settings, and copies the main settings file over
// "Zevrit.ini.bak", so that settings which break the start never displace the good copy
// (no backup for a file named by /SETTINGS).
void SettingsStarted(const std::filesystem::path& root);
// Writes StartOptions.ini, then the settings (last, as the shutdown order wants). Returns
// why the settings could not be written, for the user; empty when they were.
std::string CloseProgramSettings(const std::filesystem::path& root);

enum class TEntryOutcome {
    RunAsFirst, // this process owns the block (or took it over from a silent first)
    RunAsOther, // several instances allowed; this one runs beside the first
    HandedOver, // the arguments went to the first instance: exit now
};

struct TEntryParams {
    std::vector<std::string> argv; // argv[0] the program
    TStartOptions options;
    bool controlHeld = false; // Control down at start: another instance is wanted
    uint64_t appHandle = 0;
    int pollCount = 100; // x pollIntervalMs: how long to wait for a first window
    int pollIntervalMs = 50;
    std::string cwd; // for the parameter string
};

// Checks the block; a second instance in single mode polls for the first window, hands
// over its arguments and answers HandedOver. If no window comes, or the one that came does
// not answer within kHandOverGiveUpMs, it takes the block over (RunAsFirst: its own window
// then opens the files); if another start took it over first, it runs beside (RunAsOther).
TEntryOutcome RunInstanceCheck(TRunOnce& block, const TEntryParams& params);

// The headless run: root, settings, arguments, load and save each document, shut down.
// Returns the process exit code (0 when every file was loaded and saved).
int RunHeadless(const std::vector<std::string>& argv);

// True if argv asks for the headless run ("-headless" or "/headless" anywhere).
bool WantsHeadless(const std::vector<std::string>& argv);

} // namespace zv
