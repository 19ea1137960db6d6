// Bounded, thread-safe list of recent actions, kept in fixed slots so that the crash
// handler can print it without allocating.
#include "common/ActionTrace.h"

#include <array>
#include <cstring>
#include <mutex>
#include <unistd.h>

namespace zv {
namespace {

constexpr size_t kEntryBytes = 200; // longer entries are cut

std::mutex listMutex;
// Guarded by listMutex: a ring of NUL-terminated entries; next is the slot written next,
// used the number of slots holding an entry.
std::array<std::array<char, kEntryBytes>, kActionTraceLimit> slots;
size_t next = 0;
size_t used = 0;

size_t Oldest() { return (next + kActionTraceLimit - used) % kActionTraceLimit; }

} // namespace

void ActionTraceListAdd(std::string_view function, std::string_view detail) {
    std::lock_guard lock(listMutex);
    auto& slot = slots[next];
    size_t n = std::min(function.size(), kEntryBytes - 1);
    std::memcpy(slot.data(), function.data(), n);
    if (!detail.empty() && n + 2 < kEntryBytes - 1) {
        std::memcpy(slot.data() + n, ": ", 2);
        n += 2;
        const size_t more = std::min(detail.size(), kEntryBytes - 1 - n);
        std::memcpy(slot.data() + n, detail.data(), more);
        n += more;
    }
    slot[n] = '\0';
    next = (next + 1) % kActionTraceLimit;
    used = std::min(used + 1, kActionTraceLimit);
}

std::vector<std::string> ActionTraceList() {
    std::lock_guard lock(listMutex);
    std::vector<std::string> list;
    list.reserve(used);
    for (size_t i = 0, slot = Oldest(); i < used; ++i, slot = (slot + 1) % kActionTraceLimit)
        list.emplace_back(slots[slot].data());
    return list;
}

void ActionTraceListClear() {
    std::lock_guard lock(listMutex);
    next = used = 0;
}

void ActionTraceListWriteUnlocked(int fd) {
    // Best effort from a signal handler: no lock (the crashing thread may hold it).
    for (size_t i = 0, slot = Oldest(); i < used; ++i, slot = (slot + 1) % kActionTraceLimit) {
        const char* entry = slots[slot].data();
        if (::write(fd, entry, ::strnlen(entry, kEntryBytes)) < 0 || ::write(fd, "\n", 1) < 0)
            return;
    }
}

} // namespace zv
