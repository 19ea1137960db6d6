// Naming, creating and cleaning up the temporary files of saves.
#include "common/TempFiles.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <mutex>
#include <set>
#include <string>

namespace zv {
namespace fs = std::filesystem;

namespace {

constexpr std::string_view kNewPrefix = ".zvtmp-", kOldPrefix = ".zvold-";
std::atomic<unsigned> gCounter{0};

// The process id in a name "<prefix><pid>-<n>", or 0 when the name is not one of ours.
pid_t OwnerOf(std::string_view name, std::string_view prefix) {
    if (name.substr(0, prefix.size()) != prefix)
        return 0;
    name.remove_prefix(prefix.size());
    long pid = 0;
    const auto [end, ec] = std::from_chars(name.data(), name.data() + name.size(), pid);
    if (ec != std::errc() || end == name.data() || *end != '-' || pid <= 0)
        return 0;
    return static_cast<pid_t>(pid);
}

bool Running(pid_t pid) {
    return ::kill(pid, 0) == 0 || errno == EPERM;
}

} // namespace

int CreateTempIn(const fs::path& folder, TTempKind kind, fs::path& temp) {
    const std::string_view prefix = kind == TTempKind::NewContent ? kNewPrefix : kOldPrefix;
    for (int attempt = 0; attempt < 100; ++attempt) {
        const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
        const unsigned n = gCounter.fetch_add(1) ^ static_cast<unsigned>(stamp & 0xFFFFF);
        temp =
            folder / (std::string(prefix) + std::to_string(::getpid()) + "-" + std::to_string(n));
        const int fd = ::open(temp.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd >= 0 || errno != EEXIST)
            return fd;
    }
    return -1;
}

void RemoveStaleTemps(const fs::path& folder) {
    static std::mutex lock;
    static std::set<fs::path> scanned;
    {
        const std::lock_guard guard(lock);
        if (!scanned.insert(folder).second)
            return;
    }
    std::error_code ec;
    for (fs::directory_iterator it(folder.empty() ? "." : folder, ec), end; !ec && it != end;
         it.increment(ec)) {
        const std::string name = it->path().filename().string();
        const pid_t pid = OwnerOf(name, kNewPrefix);
        struct stat st {};
        if (pid == 0 || pid == ::getpid() || Running(pid) ||
            ::lstat(it->path().c_str(), &st) != 0 || !S_ISREG(st.st_mode) ||
            st.st_uid != ::geteuid())
            continue;
        ::unlink(it->path().c_str());
    }
}

} // namespace zv
