// The trace switch file and the action list.
#include "common/Trace.h"
#include "common/ActionTrace.h"
#include "common/CrashReport.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

class TraceTest : public ::testing::Test {
protected:
    void SetUp() override {
        dir = fs::temp_directory_path() /
              ("zv-trace-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
               "-" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir);
        fs::create_directories(dir / "bin");
    }
    void TearDown() override {
        zv::TraceShutdown();
        fs::remove_all(dir);
    }
    void WriteOptions(const std::string& text) {
        std::ofstream(dir / "bin" / "DebugOptions.txt") << text;
    }
    std::string ReadLog() {
        std::ifstream in(dir / "Data" / "DebugOutput.txt");
        std::stringstream s;
        s << in.rdbuf();
        return s.str();
    }
    fs::path dir;
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

} // namespace

namespace {

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
    const auto report = fs::temp_directory_path() / ("zv-crash-" + std::to_string(::getpid()));
    fs::remove(report);
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
    std::ifstream in(report);
    std::stringstream text;
    text << in.rdbuf();
    EXPECT_EQ(text.str(), "Zevrit stopped on signal 11. Recent actions, oldest first:\n"
                          "LoadFile: big.log\n");
    fs::remove(report);
}

} // namespace
