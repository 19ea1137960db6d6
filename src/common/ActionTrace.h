// A running list of what the program did, printed by the crash report.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zv {

// Adds "function: detail" to the list; the list keeps the newest kActionTraceLimit entries.
// Safe from any thread.
void ActionTraceListAdd(std::string_view function, std::string_view detail);

// The entries, oldest first.
std::vector<std::string> ActionTraceList();

void ActionTraceListClear();

// Writes the entries, oldest first, one a line, to a file descriptor without locking or
// allocating: for the crash handler only.
void ActionTraceListWriteUnlocked(int fd);

inline constexpr size_t kActionTraceLimit = 500;

} // namespace zv
