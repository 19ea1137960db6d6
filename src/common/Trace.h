// Diagnostic trace: off unless "DebugOptions.txt" beside the program switches it on.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace zv {

enum class TraceTarget { Off, File, DebugChannel };

// Reads programDir/"DebugOptions.txt" (lines name=value). "DebugOutput"=1 writes to
// rootDir/"Data/DebugOutput.txt", 2 to standard error (the debug channel here); any other
// value leaves the trace off. "LogFileAppend"=1 appends to the file instead of starting anew.
// Safe to call again (tests do); returns the target chosen.
TraceTarget TraceConfigure(const std::filesystem::path& programDir,
                           const std::filesystem::path& rootDir);

bool TraceEnabled();

// One line of the form "Function() - step". Cheap when the trace is off.
void Trace(std::string_view line);

// Opens a function's block in the trace: a blank line, then ">" and the name.
void TraceEnter(std::string_view function);

// Closes the trace file; later calls are ignored until TraceConfigure.
void TraceShutdown();

} // namespace zv
