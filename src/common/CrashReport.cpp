// Fatal-signal handler: only async-signal-safe calls after installation.
#include "common/CrashReport.h"

#include "common/ActionTrace.h"

#include <array>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace zv {
namespace {

std::array<char, 4096> reportPath{}; // set once before the handlers are installed

void WriteText(int fd, const char* text) {
    if (::write(fd, text, std::strlen(text)) < 0)
        return;
}

void WriteReport(int fd, int signal) {
    char number[16];
    int n = 0;
    for (int v = signal; v > 0 && n < 15; v /= 10)
        number[n++] = static_cast<char>('0' + v % 10);
    char digits[16];
    for (int i = 0; i < n; ++i)
        digits[i] = number[n - 1 - i];
    digits[n] = '\0';
    WriteText(fd, "Zevrit stopped on signal ");
    WriteText(fd, digits);
    WriteText(fd, ". Recent actions, oldest first:\n");
    ActionTraceListWriteUnlocked(fd);
}

void OnFatalSignal(int signal) {
    const int fd = ::open(reportPath.data(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (fd >= 0) {
        WriteReport(fd, signal);
        ::close(fd);
    }
    WriteReport(STDERR_FILENO, signal);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

} // namespace

void InstallCrashReport(const std::filesystem::path& reportFile) {
    const std::string path = reportFile.string();
    std::strncpy(reportPath.data(), path.c_str(), reportPath.size() - 1);
    for (int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT})
        std::signal(signal, OnFatalSignal);
}

} // namespace zv
