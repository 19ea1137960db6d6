// On a fatal signal, writes a crash report (the signal and the recent actions) before the
// process dies, so that a user's report tells what was being done.
#pragma once

#include <filesystem>

namespace zv {

// Installs handlers for SIGSEGV, SIGBUS, SIGFPE, SIGILL and SIGABRT that write
// reportFile (and the same to standard error), then let the signal take its course.
void InstallCrashReport(const std::filesystem::path& reportFile);

} // namespace zv
