// Crash safety of settings writes: a write that fails at any step, or on a full disk,
// leaves the previous file whole and readable and leaves no temporary file behind.
#include "IniTestSupport.h"

#include "common/AtomicFile.h"
#include "shell/ZvIniFiles.h"

#include <csignal>
#include <cstring>
#include <random>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace zv {
namespace {

// Switches an injected failure off again whatever the test's outcome.
struct TInjection {
    explicit TInjection(TAtomicStep step) { InjectAtomicWriteFailure(step); }
    ~TInjection() { InjectAtomicWriteFailure(TAtomicStep::None); }
};

TMemIniFileW SettingsWith(const std::filesystem::path& file, const char* value, int keys) {
    TMemIniFileW ini(file);
    for (int i = 0; i < keys; ++i)
        ini.WriteString("Section", "Key" + std::to_string(i), value);
    return ini;
}

// Also for a file with a second hard link, which is rewritten in place: a failure there
// writes the old content back, and both names keep it.
TEST(AtomicWrite, FailureAtAnyStepKeepsTheOldFile) {
    for (const bool linked : {false, true}) {
        test::TTempDir dir;
        const auto file = dir / "Zevrit.ini";
        ASSERT_TRUE(SettingsWith(file, "old", 50).UpdateFile());
        const std::string before = test::ReadAll(file);
        std::vector<std::string> names{"Zevrit.ini"};
        if (linked) {
            std::filesystem::create_hard_link(file, dir / "linked.ini");
            names.push_back("linked.ini"); // sorted: upper case first
        }
        for (TAtomicStep step :
             {TAtomicStep::Create, TAtomicStep::Write, TAtomicStep::Sync, TAtomicStep::Rename}) {
            SCOPED_TRACE(std::to_string(static_cast<int>(step)) + (linked ? " linked" : ""));
            if (linked && step == TAtomicStep::Rename)
                continue; // nothing is renamed in place
            auto ini = SettingsWith(file, "new", 80);
            std::string error;
            {
                const TInjection inject(step);
                EXPECT_FALSE(WriteFileAtomically(file, ini.SaveToBytes(), &error));
                EXPECT_FALSE(ini.UpdateFile());
            }
            EXPECT_NE(error.find("Zevrit.ini"), std::string::npos) << error;
            if (step == TAtomicStep::Create) {
                EXPECT_NE(error.find(std::strerror(EACCES)), std::string::npos) << error;
            }
            EXPECT_EQ(test::ReadAll(file), before);
            EXPECT_EQ(TMemIniFileW(file).ReadString("Section", "Key49", ""), "old");
            EXPECT_EQ(test::FolderNames(dir.Path()), names);
        }
        EXPECT_TRUE(SettingsWith(file, "new", 80).UpdateFile());
        EXPECT_EQ(TMemIniFileW(file).ReadString("Section", "Key79", ""), "new");
        if (linked) {
            EXPECT_EQ(test::ReadAll(dir / "linked.ini"), test::ReadAll(file));
        }
    }
}

// A real full disk: the child may write only 4 KiB per file, so the new, longer settings
// cannot be written (EFBIG); the parent then finds the old file intact.
TEST(AtomicWrite, FullDiskInAChildProcessKeepsTheOldFile) {
    test::TTempDir dir;
    const auto file = dir / "Zevrit.ini";
    ASSERT_TRUE(SettingsWith(file, "old", 20).UpdateFile());
    const std::string before = test::ReadAll(file);
    ASSERT_LT(before.size(), 4096u);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{4096, 4096};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        ::_exit(SettingsWith(file, "a much longer value than before", 500).UpdateFile() ? 0 : 3);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 3) << "the write should have failed";
    EXPECT_EQ(test::ReadAll(file), before);
    EXPECT_EQ(test::FolderNames(dir.Path()), std::vector<std::string>{"Zevrit.ini"});
}

TEST(AtomicWrite, FollowsLinksAndKeepsMode) {
    test::TTempDir dir;
    std::filesystem::create_directory(dir / "real");
    const auto real = dir / "real/Zevrit.ini";
    const auto link = dir / "Zevrit.ini";
    test::WriteAll(real, "[A]\r\n");
    ASSERT_EQ(::chmod(real.c_str(), 0640), 0);
    std::filesystem::create_symlink("real/Zevrit.ini", link);
    ASSERT_TRUE(WriteFileAtomically(link, "[B]\r\n"));
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(test::ReadAll(real), "[B]\r\n");
    struct stat info {};
    ASSERT_EQ(::stat(real.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0640u);
    EXPECT_EQ(test::FolderNames(dir / "real"), std::vector<std::string>{"Zevrit.ini"});
}

TEST(AtomicWrite, MissingFolderOrATargetThatIsNoFileFailsCleanly) {
    test::TTempDir dir;
    std::string error;
    EXPECT_FALSE(WriteFileAtomically(dir / "no/such/folder/x.ini", "x", &error));
    EXPECT_NE(error.find("No such file"), std::string::npos) << error;
    // A named pipe (or a device) in the file's place stays what it is.
    const auto pipe = dir / "pipe.ini";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_FALSE(WriteFileAtomically(pipe, "x", &error));
    EXPECT_NE(error.find("named pipe"), std::string::npos) << error;
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    EXPECT_EQ(test::FolderNames(dir.Path()), std::vector<std::string>{"pipe.ini"})
        << "no stray file";
}

// A save killed at a random moment leaves the old content or the new, whole; the stray
// temporary file it leaves is removed by the next save in that folder, also under a name that
// fills a file name's whole length.
TEST(AtomicWrite, KilledSavesLeaveOldOrNewContentAndNoStrayFileAfterTheNextSave) {
    std::mt19937 rng(7);
    const std::string longName = std::string(250, 'n') + ".txt";
    for (int round = 0; round < 12; ++round) {
        test::TTempDir dir;
        const auto file = dir / (round % 2 ? longName : std::string("doc.txt"));
        const std::string before(300000, 'o'), after(600000, 'N');
        test::WriteAll(file, before);
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) { // writes in small steps, so that the kill lands inside the save
            const bool ok = WriteFileAtomically(file, [&](int fd) {
                for (std::size_t at = 0; at < after.size(); at += 20000) {
                    if (::write(fd, after.data() + at, 20000) != 20000)
                        return false;
                    ::usleep(1000);
                }
                return true;
            });
            ::_exit(ok ? 0 : 3);
        }
        std::this_thread::sleep_for(std::chrono::microseconds(rng() % 40000));
        ::kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        const std::string now = test::ReadAll(file);
        EXPECT_TRUE(now == before || now == after) << "round " << round << ": " << now.size();
        ASSERT_TRUE(WriteFileAtomically(file, std::string_view("next\n"))) << "round " << round;
        EXPECT_EQ(test::FolderNames(dir.Path()), std::vector<std::string>{file.filename().string()})
            << "round " << round;
    }
}

} // namespace
} // namespace zv
