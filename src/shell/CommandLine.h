// The argument pass at start-up and its twin for hand-overs: turns a command line into
// ProcessParam calls on the host (the main object), without any window.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zv {

// Per-pass state of the switches (the flags act on all files collected in one pass).
struct TParamFlags {
    int32_t codePage = 50001; // detect
    bool readOnly = false;
    bool reload = false;
    bool hex = false;
    bool binary = false;
    bool monitor = false;
    bool close = false;
    bool operator==(const TParamFlags&) const = default;
};

// What the passes need from the main object. Paths are UTF-8 file names.
class ICommandLineHost {
public:
    virtual ~ICommandLineHost() = default;
    // Opens one named file with the pass's final flags.
    virtual void ProcessParam(const std::string& path, const TParamFlags& flags) = 0;
    // Closes the open document of that path as the tab's close button does; false if none.
    virtual bool CloseDocument(const std::string& path) = 0;
    virtual bool CrashFilesExist() { return false; }
    virtual void CrashOpen(bool /*ask*/) {}
    // Batch mode around the opening of many files.
    virtual void BeginBatch() {}
    virtual void EndBatch() {}
    // Takes a hand-over that arrived before the window was shown.
    virtual void LoadStoredParamStrings(bool /*fromTimer*/) {}
};

// Fields of the main object that the passes set.
struct TCommandLineState {
    int32_t FLine = 0;              // caret line (1-based) after opening, 0 for none
    std::string FDefaultSavePath;   // set by /DIR
    bool FDoNotReOpen = false;      // set by the /NOREOPEN scan
    bool FLoadParams = false;       // true while arguments are being processed
    bool FSilent = false;           // /SILENT in first place
    bool FCompareRequested = false; // /COMPARE in first place with two files
    std::string FCompareFile1;      // the two files after /COMPARE, as written
    std::string FCompareFile2;
};

// The argument pass over argv (argv[0] the program). Throws EConvertError for a
// non-numeric /L: or /CP= value, which ends the pass before any collected file opens.
void RunArgumentPass(const std::vector<std::string>& argv, ICommandLineHost& host,
                     TCommandLineState& state);

// The hand-over pass over a parameter string ("arg|arg|..."); FLine is not reset.
// Switches it does not know count as file names.
void RunHandOverPass(const std::string& paramStrings, ICommandLineHost& host,
                     TCommandLineState& state);

// The parameter string a second instance sends: every argument (without argv[0]) with a
// "|" after it; non-switch arguments made absolute against cwd. Empty when there are more
// than two arguments and the first contains "--".
std::string BuildParamString(const std::vector<std::string>& args, const std::string& cwd);

// The /NOREOPEN scan: substring, any case, over argv[0] .. argv[n-2] (the last argument is
// not looked at, the program path is).
bool ScanNoReopen(const std::vector<std::string>& argv);

// True if a "multi" switch stands anywhere on the command line.
bool HasMultiSwitch(const std::vector<std::string>& argv);

// The files matching a mask with "*" in its file-name part, sorted; non-recursive.
std::vector<std::string> ExpandFileMask(const std::string& mask);

} // namespace zv
