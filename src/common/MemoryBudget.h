// How much memory a large allocation may count on: what the system says is available
// (without swapping much), within the process's address-space limit. Loads check their
// projected need against it before they run out, instead of dying of std::bad_alloc.
#pragma once

#include <cstdint>

namespace zv {

// Bytes available now: MemAvailable plus free swap, capped by RLIMIT_AS. A test limit set
// with SetMemoryBudgetForTests wins while set.
std::int64_t AvailableMemoryBytes();

// Makes AvailableMemoryBytes answer `bytes` (0: back to the system's answer). Process-wide.
void SetMemoryBudgetForTests(std::int64_t bytes);

// "3.4 GB", "512 MB": a size for a message.
const char* FormatMemory(std::int64_t bytes, char (&buffer)[32]);

} // namespace zv
