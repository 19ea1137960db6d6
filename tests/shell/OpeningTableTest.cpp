// One opening path: files of every kind the classifier tells apart, opened as the window
// opens them, give the document (code page, mode, text, read-only) the decision tree says;
// `file --mime-encoding` checks the test files where it can tell.
#include "ZvMemoControl/ZvMemoStrings.h"
#include "common/Utf.h"
#include "platform/Prompt.h"
#include "shell/MainFormHelper.h"
#include "shell/ZvIniFiles.h"
#include "support/ZvTestSupport.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

std::string MimeEncoding(const fs::path& file) {
    const std::string command = "file -b --mime-encoding '" + file.string() + "'";
    std::string out;
    if (FILE* pipe = ::popen(command.c_str(), "r")) {
        char buffer[128];
        while (std::fgets(buffer, sizeof buffer, pipe))
            out += buffer;
        ::pclose(pipe);
    }
    while (!out.empty() && out.back() == '\n')
        out.pop_back();
    return out;
}

struct TOpenCase {
    const char* Name;
    std::string Bytes;
    std::uint32_t CodePage; // 0: not opened
    const char* FirstRow;
    bool Binary = false;
    const char* Mime = nullptr; // what `file` says of it, where it tells
};

TEST(OpeningTable, EachKindOfFileOpensAsTheDecisionTreeSays) {
    zvtest::TheApp<QCoreApplication>();
    zvtest::TTempDir temp{"zv-open-table"};
    zv::THeadlessPrompt prompt{false}; // answers the default: a missing file is not made
    zv::TMainFormHelper helper{prompt};
    zv::TMemIniFileW settings;
    settings.WriteInteger("EditorMisc", "DefaultEncoding", 65001);
    helper.SetCustomize(settings);
    const std::string png = "\x89PNG\r\n\x1A\n\0\0\0\rIHDR";
    const std::vector<TOpenCase> cases = {
        {"image.png", png, 50001, "", true}, // bytes as units; the code page stays undecided
        {"le.txt", std::string("h\0e\0l\0l\0o\0\n\0", 12), 1200, "hello"},
        {"be.txt", std::string("\0h\0e\0l\0l\0o\0\n", 12), 1201, "hello"},
        {"a.xml", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<a>caf\xE9</a>\n", 28591,
         "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>", false, "iso-8859-1"},
        {"b.html",
         "<html><head><meta charset=\"windows-1251\"></head><body>\xCF\xF0\xE8</body></html>\n",
         1251,
         "<html><head><meta charset=\"windows-1251\"></head><body>\xD0\x9F\xD1\x80\xD0\xB8"
         "</body></html>"},
        {"art.nfo", "\xC9\xCD\xBB\n", 437, "\xE2\x95\x94\xE2\x95\x90\xE2\x95\x97"},
        {"plain & simple.txt", "ascii only\n", 65001, "ascii only", false, "us-ascii"},
        {"latin.txt", "caf\xE9\n", 1252, "caf\xC3\xA9", false, "iso-8859-1"},
        {"utf8.txt", "caf\xC3\xA9\n", 65001, "caf\xC3\xA9", false, "utf-8"},
    };
    for (const TOpenCase& c : cases) {
        const fs::path file = temp / c.Name;
        zvtest::WriteAll(file, c.Bytes);
        if (c.Mime) {
            EXPECT_EQ(MimeEncoding(file), c.Mime) << c.Name;
        }
        zv::TLoadFileArgs args;
        args.FileName = file.string();
        ASSERT_TRUE(helper.LoadFile(args)) << c.Name;
        const zv::TDocument& doc = *helper.ActiveDocument();
        EXPECT_EQ(doc.FFilePath, file.string());
        EXPECT_EQ(doc.Lines->CodePage(), c.CodePage) << c.Name;
        EXPECT_EQ(doc.Lines->Memo().FBinaryMode, c.Binary) << c.Name;
        if (!c.Binary) {
            EXPECT_EQ(zv::Utf16ToUtf8(doc.Lines->Get(0)), c.FirstRow) << c.Name;
        }
        EXPECT_EQ(doc.Lines->SaveToBytes(), c.Bytes) << c.Name << ": saved as it came";
    }

    const fs::path locked = temp / "locked.txt";
    zvtest::WriteAll(locked, "x\n");
    fs::permissions(locked, fs::perms::owner_read);
    zv::TLoadFileArgs args;
    args.FileName = locked.string();
    ASSERT_TRUE(helper.LoadFile(args));
    EXPECT_TRUE(helper.ActiveDocument()->FReadOnly);

    const size_t open = helper.Documents().size();
    args.FileName = (temp / "missing.txt").string();
    EXPECT_FALSE(helper.LoadFile(args)) << "the question's default is no";
    args.FileName = temp.Path().string();
    EXPECT_FALSE(helper.LoadFile(args)) << "a folder is no document";
    EXPECT_EQ(helper.Documents().size(), open);
    EXPECT_EQ(prompt.Log().size(), 2u) << "one question, one message";
}

} // namespace
