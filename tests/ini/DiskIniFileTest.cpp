// Settings files read and written at every call: encoding on creation, and no key lost
// when processes write the same file at once (threads: IniThreadTest.cpp).
#include "IniTestSupport.h"

#include "shell/DiskIniFiles.h"

#include <sys/wait.h>
#include <unistd.h>

namespace zv {
namespace {

using test::Quote;
using test::Shell;

TEST(IniFileUTF16, CreatesAMissingFileWithItsBom) {
    test::TTempDir dir;
    const TIniFileUTF16 ini(dir / "Sessions.ini");
    EXPECT_EQ(test::ReadAll(dir / "Sessions.ini"), "\xFF\xFE");
    EXPECT_EQ(ini.ReadString("Any", "Key", "default"), "default");
}

TEST(IniFileUTF16, RewritesAnotherEncodingKeepingTheText) {
    test::TTempDir dir;
    const auto file = dir / "Sites.ini";
    const std::string text = "leading line\n[Site]\nHost=ex\xC3\xA4mple.org\n";
    test::WriteAll(file, text);
    TIniFileUTF16 ini(file);
    test::WriteAll(dir / "expected.txt", "\xEF\xBB\xBF" + text);
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
    EXPECT_EQ(test::ReadAll(file), "[Misc]\r\nOnlyOneInstance=0\r\n\r\n");
    first.DeleteKey("Misc", "OnlyOneInstance");
    EXPECT_TRUE(second.ReadBool("Misc", "OnlyOneInstance", true));
    EXPECT_TRUE(second.SectionExists("Misc"));
    first.EraseSection("Misc");
    EXPECT_TRUE(second.ReadSections().empty());
    EXPECT_TRUE(first.UpdateFile());
}

TEST(IniFileUTF16, TwoProcessesWritingAtOnceLoseNoKey) {
    test::TTempDir dir;
    const auto file = dir / "Shared.ini";
    // Both children wait for the start pipe to close, so their writes overlap.
    int start[2];
    ASSERT_EQ(::pipe(start), 0);
    std::vector<pid_t> children;
    for (const char* writer : {"first", "second"}) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            ::close(start[1]);
            char go;
            while (::read(start[0], &go, 1) > 0) {
            }
            TIniFileUTF16 ini(file);
            test::WriteKeys(ini, writer);
            ::_exit(ini.UpdateFile() ? 0 : 1);
        }
        children.push_back(child);
    }
    ::close(start[0]);
    ::close(start[1]);
    for (pid_t child : children) {
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    test::ExpectAllKeys(TIniFileUTF16(file), {"first", "second"});
    EXPECT_EQ(test::FolderNames(dir.Path()), std::vector<std::string>{"Shared.ini"});
}

} // namespace
} // namespace zv
