// Settings files read and written at every call: encoding on creation, and no key lost
// when threads or processes write the same file at once.
#include "IniTestSupport.h"

#include "shell/DiskIniFiles.h"

#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace zv {
namespace {

using test::Quote;
using test::Shell;

TEST(IniFileUTF16, CreatesAMissingFileWithItsBom) {
    test::TTempDir dir;
    const TIniFileUTF16 ini(dir / "Sessions.ini");
    EXPECT_EQ(test::ReadBytes(dir / "Sessions.ini"), "\xFF\xFE");
    EXPECT_EQ(ini.ReadString("Any", "Key", "default"), "default");
}

TEST(IniFileUTF16, RewritesAnotherEncodingKeepingTheText) {
    test::TTempDir dir;
    const auto file = dir / "Sites.ini";
    const std::string text = "leading line\n[Site]\nHost=ex\xC3\xA4mple.org\n";
    test::WriteBytes(file, text);
    TIniFileUTF16 ini(file);
    test::WriteBytes(dir / "expected.txt", "\xEF\xBB\xBF" + text);
    EXPECT_EQ(Shell("iconv -f UTF-16LE -t UTF-8 " + Quote(file) + " | cmp -s - " +
                    Quote(dir / "expected.txt")),
              0);
    EXPECT_EQ(ini.ReadString("site", "host", ""), "exämple.org");
    ini.WriteInteger("Site", "Port", 21);
    EXPECT_EQ(Shell("iconv -f UTF-16LE -t UTF-8 " + Quote(file) + " | grep -q '^Port=21'"), 0);
}

TEST(ZvIniFile, WritesPlainUtf8AndSeesOtherWritersAtOnce) {
    test::TTempDir dir;
    const auto file = dir / "StartOptions.ini";
    TZvIniFile first(file);
    const TZvIniFile second(file);
    first.WriteBool("Misc", "OnlyOneInstance", false);
    EXPECT_FALSE(second.ReadBool("Misc", "OnlyOneInstance", true));
    EXPECT_EQ(test::ReadBytes(file), "[Misc]\r\nOnlyOneInstance=0\r\n\r\n");
    first.DeleteKey("Misc", "OnlyOneInstance");
    EXPECT_TRUE(second.ReadBool("Misc", "OnlyOneInstance", true));
    EXPECT_TRUE(second.SectionExists("Misc"));
    first.EraseSection("Misc");
    EXPECT_TRUE(second.ReadSections().empty());
    EXPECT_TRUE(first.UpdateFile());
}

constexpr int kWritesPerWriter = 40;

void WriteKeys(TCustomIniFile& ini, const std::string& writer) {
    for (int i = 0; i < kWritesPerWriter; ++i)
        ini.WriteInteger("Shared", writer + "_" + std::to_string(i), i);
}

void ExpectAllKeys(const TCustomIniFile& ini, const std::vector<std::string>& writers) {
    EXPECT_EQ(ini.ReadSection("Shared").size(), writers.size() * kWritesPerWriter);
    for (const auto& writer : writers)
        for (int i = 0; i < kWritesPerWriter; ++i)
            ASSERT_EQ(ini.ReadInteger("Shared", writer + "_" + std::to_string(i), -1), i) << writer;
}

TEST(IniFileUTF16, TwoProcessesWritingAtOnceLoseNoKey) {
    test::TTempDir dir;
    const auto file = dir / "Shared.ini";
    std::vector<pid_t> children;
    for (const char* writer : {"first", "second"}) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            TIniFileUTF16 ini(file);
            WriteKeys(ini, writer);
            ::_exit(ini.UpdateFile() ? 0 : 1);
        }
        children.push_back(child);
    }
    for (pid_t child : children) {
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    ExpectAllKeys(TIniFileUTF16(file), {"first", "second"});
    EXPECT_EQ(test::FolderNames(dir.Path()), std::vector<std::string>{"Shared.ini"});
}

// Threads sharing one object and threads with objects of their own, on the same file.
TEST(IniFileUTF16, ThreadsWritingAtOnceLoseNoKey) {
    test::TTempDir dir;
    const auto file = dir / "Shared.ini";
    TIniFileUTF16 shared(file);
    std::vector<std::thread> threads;
    for (const char* writer : {"a", "b"})
        threads.emplace_back([&shared, writer] { WriteKeys(shared, writer); });
    for (const char* writer : {"c", "d"})
        threads.emplace_back([&file, writer] {
            TIniFileUTF16 own(file);
            WriteKeys(own, writer);
        });
    threads.emplace_back([&shared] { // keys are only added: a reader never sees fewer
        size_t seen = 0;
        for (int i = 0; i < 20; ++i) {
            const size_t now = shared.ReadSection("Shared").size();
            EXPECT_GE(now, seen);
            seen = now;
        }
    });
    for (auto& thread : threads)
        thread.join();
    ExpectAllKeys(shared, {"a", "b", "c", "d"});
}

} // namespace
} // namespace zv
