// The trace switch file and the action list.
#include "common/Trace.h"
#include "common/ActionTrace.h"
#include "common/CrashReport.h"
#include "support/ZvTestSupport.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

class TraceTest : public ::testing::Test {
protected:
    void SetUp() override { fs::create_directories(dir / "bin"); }
    void TearDown() override { zv::TraceShutdown(); }
    void WriteOptions(const std::string& text) {
        zvtest::WriteAll(dir / "bin" / "DebugOptions.txt", text);
    }
    std::string ReadLog() { return zvtest::ReadAll(dir / "Data" / "DebugOutput.txt"); }
    zvtest::TTempDir temp{"zv-trace"};
    const fs::path dir = temp.Path();
};

TEST_F(TraceTest, OffWithoutOptionsFileOrWithOtherValue) {
    EXPECT_EQ(zv::TraceConfigure(dir / "bin", dir), zv::TraceTarget::Off);
    WriteOptions("DebugOutput=3\n");
    EXPECT_EQ(zv::TraceConfigure(dir / "bin", dir), zv::TraceTarget::Off);
    zv::Trace("x() - y");
    EXPECT_FALSE(zv::TraceEnabled());
    EXPECT_FALSE(fs::exists(dir / "Data" / "DebugOutput.txt"));
}

TEST_F(TraceTest, FileTraceStartsAnewOrAppends) {
    WriteOptions("DebugOutput=1\r\n");
    ASSERT_EQ(zv::TraceConfigure(dir / "bin", dir), zv::TraceTarget::File);
    zv::TraceEnter("FormCreate");
    zv::Trace("FormCreate() - Set language!");
    zv::TraceShutdown();
    EXPECT_EQ(ReadLog(), "\n>FormCreate\nFormCreate() - Set language!\n");

    ASSERT_EQ(zv::TraceConfigure(dir / "bin", dir), zv::TraceTarget::File);
    zv::Trace("second");
    zv::TraceShutdown();
    EXPECT_EQ(ReadLog(), "second\n");

    WriteOptions("DebugOutput=1\nLogFileAppend=1\n");
    ASSERT_EQ(zv::TraceConfigure(dir / "bin", dir), zv::TraceTarget::File);
    zv::Trace("third");
    zv::TraceShutdown();
    EXPECT_EQ(ReadLog(), "second\nthird\n");
}

TEST(ActionTrace, LongEntriesAreCutAndOrderIsKept) {
    zv::ActionTraceListClear();
    zv::ActionTraceListAdd("LoadFile", std::string(1000, 'x'));
    zv::ActionTraceListAdd("SaveFile", "/tmp/a.txt");
    const auto list = zv::ActionTraceList();
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0].substr(0, 12), "LoadFile: xx");
    EXPECT_LT(list[0].size(), 200u);
    EXPECT_EQ(list[1], "SaveFile: /tmp/a.txt");
}

TEST(CrashReport, FatalSignalWritesTheRecentActions) {
    zvtest::TTempDir temp("zv-crash");
    const auto report = temp / "crash.txt";
    const pid_t child = ::fork();
    if (child == 0) {
        zv::ActionTraceListClear();
        zv::ActionTraceListAdd("LoadFile", "big.log");
        zv::InstallCrashReport(report);
        ::close(STDERR_FILENO);
        std::raise(SIGSEGV);
        _exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGSEGV) << "the signal still ends it";
    EXPECT_EQ(zvtest::ReadAll(report),
              "Zevrit stopped on signal 11. Recent actions, oldest first:\n"
              "LoadFile: big.log\n");
}

} // namespace
