// The trace and the action list written from several threads at once: no line is torn or
// lost, a function's opening stays in one piece, and a line racing the shutdown goes
// nowhere else. CI runs this program again under ThreadSanitizer.
#include "common/ActionTrace.h"
#include "common/Trace.h"
#include "support/ZvTestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <thread>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

using zvtest::ReadAll;

constexpr int kThreads = 4;
constexpr int kLinesPerThread = 300;

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

TEST(TraceThreads, EveryLineArrivesWholeAndInEachThreadsOrder) {
    zvtest::TTempDir dir("zv-trace-threads");
    fs::create_directories(dir / "bin");
    std::ofstream(dir / "bin" / "DebugOptions.txt") << "DebugOutput=1\n";
    ASSERT_EQ(zv::TraceConfigure(dir / "bin", dir.Path()), zv::TraceTarget::File);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([t] {
            zv::TraceEnter("Worker" + std::to_string(t));
            for (int i = 0; i < kLinesPerThread; ++i)
                zv::Trace("Worker" + std::to_string(t) + "() - " + std::to_string(i));
        });
    for (auto& thread : threads)
        thread.join();
    zv::TraceShutdown();

    const auto lines = Lines(ReadAll(dir / "Data" / "DebugOutput.txt"));
    std::map<int, int> next; // thread -> the number its next line must carry
    int blanks = 0;
    for (size_t i = 0; i < lines.size(); ++i) {
        const std::string& line = lines[i];
        if (line.empty()) {
            ++blanks;
            ASSERT_LT(i + 1, lines.size());
            EXPECT_EQ(lines[i + 1].substr(0, 7), ">Worker") << "an opening split at " << i;
            continue;
        }
        if (line[0] == '>')
            continue;
        const int t = std::stoi(line.substr(6, 1));
        ASSERT_EQ(line, "Worker" + std::to_string(t) + "() - " + std::to_string(next[t]));
        ++next[t];
    }
    EXPECT_EQ(blanks, kThreads);
    for (int t = 0; t < kThreads; ++t)
        EXPECT_EQ(next[t], kLinesPerThread) << "thread " << t;
}

// Lines traced while the trace is switched off must not fall through to standard error.
TEST(TraceThreads, LinesRacingTheShutdownAreDropped) {
    zvtest::TTempDir dir("zv-trace-shutdown");
    fs::create_directories(dir / "bin");
    std::ofstream(dir / "bin" / "DebugOptions.txt") << "DebugOutput=1\n";
    const fs::path errFile = dir / "stderr.txt";
    const int savedErr = ::dup(STDERR_FILENO);
    const int errFd = ::open(errFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ASSERT_GE(errFd, 0);
    ::dup2(errFd, STDERR_FILENO);
    ::close(errFd);
    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&stop] {
            while (!stop)
                zv::Trace("Racer() - line");
        });
    for (int round = 0; round < 50; ++round) {
        zv::TraceConfigure(dir / "bin", dir.Path());
        std::this_thread::yield();
        zv::TraceShutdown();
    }
    stop = true;
    for (auto& thread : threads)
        thread.join();
    ::dup2(savedErr, STDERR_FILENO);
    ::close(savedErr);
    EXPECT_EQ(ReadAll(errFile), "");
}

TEST(ActionTrace, KeepsNewestEntriesFromManyThreads) {
    zv::ActionTraceListClear();
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([t] {
            for (int i = 0; i < kLinesPerThread; ++i)
                zv::ActionTraceListAdd("Worker", std::to_string(t * 1000 + i));
        });
    for (auto& thread : threads)
        thread.join();
    const auto list = zv::ActionTraceList();
    ASSERT_EQ(list.size(), zv::kActionTraceLimit);
    // Each thread's entries keep their order, and the newest of all threads are kept.
    std::map<int, int> last;
    for (const auto& entry : list) {
        ASSERT_EQ(entry.substr(0, 8), "Worker: ") << entry;
        const int value = std::stoi(entry.substr(8));
        const int t = value / 1000;
        EXPECT_GT(value, last.count(t) ? last[t] : -1) << entry;
        last[t] = value;
    }
    for (const auto& [t, value] : last)
        EXPECT_EQ(value, t * 1000 + kLinesPerThread - 1) << "thread " << t << "'s newest kept";
    zv::ActionTraceListAdd("Last", "");
    EXPECT_EQ(zv::ActionTraceList().back(), "Last");
}

} // namespace
