// The argument pass and the hand-over pass.
#include "shell/CommandLine.h"

#include "common/Trace.h"
#include "shell/Switches.h"

#include <algorithm>
#include <filesystem>
#include <regex>

namespace zv {
namespace fs = std::filesystem;

namespace {

// One pass: flags so far and the files collected for opening after the loop.
struct TPass {
    ICommandLineHost& host;
    TCommandLineState& state;
    TParamFlags flags;
    std::vector<std::string> files;

    // Switches known to both passes; true if arg was one of them.
    bool ApplyCommonSwitch(const std::string& arg) {
        if (IsSwitch(arg, "HEX")) {
            flags.hex = true;
            flags.binary = false;
        } else if (auto line = SwitchValue(arg, "L:")) {
            state.FLine = StrToInt(*line); // an empty value is no number either
        } else if (IsSwitch(arg, "L") || IsSwitch(arg, "CP")) {
            // without ":" or "=" the switch changes nothing
        } else if (IsSwitch(arg, "RL")) {
            flags.reload = true;
        } else if (IsSwitch(arg, "R")) {
            flags.readOnly = true;
        } else if (IsSwitch(arg, "MONITOR")) {
            flags.monitor = true;
        } else if (auto cp = SwitchValue(arg, "CP=")) {
            flags.codePage = StrToInt(*cp);
        } else if (IsSwitch(arg, "C")) {
            flags.close = true;
        } else {
            return false;
        }
        return true;
    }

    void TakeFileName(const std::string& arg) {
        const fs::path path(arg);
        if (path.filename().string().find('*') != std::string::npos) {
            TParamFlags maskFlags = flags;
            maskFlags.binary = false;
            for (const auto& match : ExpandFileMask(arg))
                host.ProcessParam(match, maskFlags);
        } else if (flags.close) {
            host.CloseDocument(arg);
        } else {
            files.push_back(arg);
        }
    }

    void OpenCollected() {
        std::sort(files.begin(), files.end());
        for (const auto& file : files)
            host.ProcessParam(file, flags);
    }
};

bool At(const std::vector<std::string>& argv, size_t i, std::string_view name) {
    return i < argv.size() && IsSwitch(argv[i], name);
}

} // namespace

void RunArgumentPass(const std::vector<std::string>& argv, ICommandLineHost& host,
                     TCommandLineState& state) {
    TraceEnter("RunArgumentPass");
    size_t i = 1;
    if (At(argv, i, "MULTI"))
        ++i;
    if (host.CrashFilesExist() && !At(argv, i, "RESTART"))
        host.CrashOpen(true);
    state.FDoNotReOpen = ScanNoReopen(argv);
    if (argv.size() > 3 && At(argv, i, "COMPARE")) {
        state.FCompareRequested = true;
        state.FCompareFile1 = i + 1 < argv.size() ? argv[i + 1] : std::string();
        state.FCompareFile2 = i + 2 < argv.size() ? argv[i + 2] : std::string();
        return;
    }
    TPass pass{host, state, {}, {}};
    state.FLine = 0;
    state.FLoadParams = true;
    host.LoadStoredParamStrings(false);
    host.BeginBatch();
    if (At(argv, i, "MULTI"))
        ++i;
    if (At(argv, i, "SILENT")) {
        state.FSilent = true;
        ++i;
    }
    for (; i < argv.size(); ++i) {
        const std::string& arg = argv[i];
        if (IsSwitch(arg, "RESTART")) {
            host.CrashOpen(false);
        } else if (IsSwitch(arg, "SETTINGS")) {
            ++i; // its value names the settings file, read at start
        } else if (IsSwitch(arg, "NOREOPEN")) {
            // taken by the separate scan
        } else if (IsSwitch(arg, "DIR")) {
            if (++i < argv.size() && fs::is_directory(argv[i]))
                state.FDefaultSavePath = argv[i];
        } else if (IsSwitch(arg, "BIN")) {
            pass.flags.hex = pass.flags.binary = true;
        } else if (!pass.ApplyCommonSwitch(arg)) {
            pass.TakeFileName(arg);
        }
    }
    pass.OpenCollected();
    host.EndBatch();
    state.FLoadParams = false;
}

void RunHandOverPass(const std::string& paramStrings, ICommandLineHost& host,
                     TCommandLineState& state) {
    TraceEnter("LoadStoredParamStrings");
    TPass pass{host, state, {}, {}};
    host.BeginBatch();
    size_t start = 0;
    while (start < paramStrings.size()) {
        const size_t bar = paramStrings.find('|', start);
        const std::string token =
            paramStrings.substr(start, bar == std::string::npos ? std::string::npos : bar - start);
        if (token.empty())
            break;
        if (!IsSwitch(token, "MULTI") && !pass.ApplyCommonSwitch(token))
            pass.TakeFileName(token);
        if (bar == std::string::npos)
            break;
        start = bar + 1;
    }
    pass.OpenCollected();
    host.EndBatch();
}

std::string BuildParamString(const std::vector<std::string>& args, const std::string& cwd) {
    if (args.size() > 2 && args[0].find("--") != std::string::npos)
        return {};
    std::string result;
    for (const auto& arg : args) {
        if (arg.empty() || IsKnownSwitch(arg) || arg[0] == '/')
            result += arg;
        else
            result += (fs::path(cwd) / arg).lexically_normal().string();
        result += '|';
    }
    return result;
}

bool ScanNoReopen(const std::vector<std::string>& argv) {
    for (size_t i = 0; i + 1 < argv.size(); ++i)
        if (ContainsNoCase(argv[i], "/NOREOPEN") || ContainsNoCase(argv[i], "-NOREOPEN"))
            return true;
    return false;
}

bool HasMultiSwitch(const std::vector<std::string>& argv) {
    return std::any_of(argv.begin() + (argv.empty() ? 0 : 1), argv.end(),
                       [](const std::string& a) { return IsSwitch(a, "MULTI"); });
}

std::vector<std::string> ExpandFileMask(const std::string& mask) {
    const fs::path path(mask);
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    std::string pattern;
    for (char c : path.filename().string()) {
        if (c == '*')
            pattern += ".*";
        else if (c == '?')
            pattern += '.';
        else if (std::string_view(".^$|()[]{}+\\").find(c) != std::string_view::npos)
            pattern += std::string("\\") + c;
        else
            pattern += c;
    }
    const std::regex re(pattern);
    std::vector<std::string> matches;
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(folder, ec))
        if (entry.is_regular_file(ec) && std::regex_match(entry.path().filename().string(), re))
            matches.push_back((folder / entry.path().filename()).string());
    std::sort(matches.begin(), matches.end());
    return matches;
}

} // namespace zv
