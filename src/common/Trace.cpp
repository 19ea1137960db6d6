// Diagnostic trace behind "DebugOptions.txt".
#include "common/Trace.h"

#include <atomic>
#include <cstdio>
#include <fstream>
#include <map>
#include <mutex>

namespace zv {
namespace {

std::mutex traceMutex;
std::atomic<bool> traceOn{false}; // a cheap early test; the target below decides
// Guarded by traceMutex: where lines go now, and the open file when that is File.
TraceTarget traceTarget = TraceTarget::Off;
FILE* traceFile = nullptr;

std::map<std::string, std::string> ReadNameValues(const std::filesystem::path& file) {
    std::map<std::string, std::string> values;
    std::ifstream in(file);
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        const auto eq = line.find('=');
        if (eq != std::string::npos)
            values.emplace(line.substr(0, eq), line.substr(eq + 1));
    }
    return values;
}

// A line that races with TraceShutdown is dropped, never sent to another target.
void WriteLine(std::string_view text) {
    std::lock_guard lock(traceMutex);
    if (traceTarget == TraceTarget::Off)
        return;
    FILE* out = traceTarget == TraceTarget::File ? traceFile : stderr;
    std::fwrite(text.data(), 1, text.size(), out);
    std::fputc('\n', out);
    std::fflush(out);
}

} // namespace

TraceTarget TraceConfigure(const std::filesystem::path& programDir,
                           const std::filesystem::path& rootDir) {
    TraceShutdown();
    const auto options = ReadNameValues(programDir / "DebugOptions.txt");
    const auto output = options.find("DebugOutput");
    if (output == options.end() || (output->second != "1" && output->second != "2"))
        return TraceTarget::Off;
    if (output->second == "2") {
        std::lock_guard lock(traceMutex);
        traceTarget = TraceTarget::DebugChannel;
        traceOn = true;
        return traceTarget;
    }
    const auto append = options.find("LogFileAppend");
    const bool appendMode = append != options.end() && append->second == "1";
    std::error_code ec;
    std::filesystem::create_directories(rootDir / "Data", ec);
    const auto path = rootDir / "Data" / "DebugOutput.txt";
    std::lock_guard lock(traceMutex);
    traceFile = std::fopen(path.c_str(), appendMode ? "ab" : "wb");
    if (!traceFile)
        return TraceTarget::Off;
    traceTarget = TraceTarget::File;
    traceOn = true;
    return traceTarget;
}

bool TraceEnabled() {
    return traceOn.load(std::memory_order_relaxed);
}

void Trace(std::string_view line) {
    if (TraceEnabled())
        WriteLine(line);
}

void TraceEnter(std::string_view function) {
    if (!TraceEnabled())
        return;
    WriteLine(std::string("\n>") + std::string(function)); // one write: no line between
}

void TraceShutdown() {
    std::lock_guard lock(traceMutex);
    traceOn = false;
    traceTarget = TraceTarget::Off;
    if (traceFile)
        std::fclose(traceFile);
    traceFile = nullptr;
}

} // namespace zv
