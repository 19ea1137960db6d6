// Reading the memory the system can give, from /proc/meminfo and the resource limits.
#include "common/MemoryBudget.h"

#include <sys/resource.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <limits>

namespace zv {
namespace {

std::atomic<std::int64_t> gTestBudget{0};

// The value of a "Name:  123 kB" line of /proc/meminfo in bytes, or -1.
std::int64_t MemInfoBytes(const char* name) {
    std::int64_t result = -1;
    if (FILE* file = std::fopen("/proc/meminfo", "r")) {
        char line[128];
        const std::size_t length = std::strlen(name);
        while (std::fgets(line, sizeof line, file))
            if (std::strncmp(line, name, length) == 0 && line[length] == ':') {
                long long kb = 0;
                if (std::sscanf(line + length + 1, "%lld", &kb) == 1)
                    result = kb * 1024;
                break;
            }
        std::fclose(file);
    }
    return result;
}

} // namespace

std::int64_t AvailableMemoryBytes() {
    if (const std::int64_t budget = gTestBudget.load(); budget > 0)
        return budget;
    std::int64_t available = MemInfoBytes("MemAvailable");
    if (available < 0)
        return std::numeric_limits<std::int64_t>::max(); // no way to know: do not refuse
    available += std::max<std::int64_t>(MemInfoBytes("SwapFree"), 0);
    rlimit limit{};
    if (::getrlimit(RLIMIT_AS, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY)
        available = std::min(available, static_cast<std::int64_t>(limit.rlim_cur));
    return available;
}

void SetMemoryBudgetForTests(std::int64_t bytes) {
    gTestBudget.store(bytes);
}

const char* FormatMemory(std::int64_t bytes, char (&buffer)[32]) {
    const double gb = static_cast<double>(bytes) / (1 << 30);
    if (gb >= 1)
        std::snprintf(buffer, sizeof buffer, "%.1f GB", gb);
    else
        std::snprintf(buffer, sizeof buffer, "%lld MB", static_cast<long long>(bytes >> 20));
    return buffer;
}

} // namespace zv
