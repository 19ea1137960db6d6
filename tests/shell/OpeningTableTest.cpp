// One opening path: files of every kind the classifier tells apart, opened as the window
// opens them, give the document (code page, mode, text) the decision tree says;
// `file --mime-encoding` checks the test files where it can tell.
#include "ZvMemoControl/ZvMemoStrings.h"
#include "common/MemoryBudget.h"
#include "common/Utf.h"
#include "platform/Prompt.h"
#include "shell/MainFormHelper.h"
#include "shell/ZvIniFiles.h"
#include "support/ZvTestSupport.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <random>

namespace fs = std::filesystem;

namespace {

std::string MimeEncoding(const fs::path& file) {
    std::string out = zvtest::RunOutput("file -b --mime-encoding '" + file.string() + "'");
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
        zv::TDocument& doc = *helper.ActiveDocument();
        EXPECT_EQ(doc.FFilePath, file.string());
        EXPECT_EQ(doc.Lines().CodePage(), c.CodePage) << c.Name;
        EXPECT_EQ(doc.Lines().Memo().FBinaryMode, c.Binary) << c.Name;
        if (!c.Binary) {
            EXPECT_EQ(zv::Utf16ToUtf8(doc.Lines().Get(0)), c.FirstRow) << c.Name;
        }
        EXPECT_EQ(doc.Lines().SaveToBytes(), c.Bytes) << c.Name << ": saved as it came";
    }

    // (A file without write bits opens read-only: the closing tests, which save it elsewhere.)
    const size_t open = helper.Documents().size();
    zv::TLoadFileArgs args;
    args.FileName = (temp / "missing.txt").string();
    EXPECT_FALSE(helper.LoadFile(args)) << "the question's default is no";
    args.FileName = temp.Path().string();
    EXPECT_FALSE(helper.LoadFile(args)) << "a folder is no document";
    EXPECT_EQ(helper.Documents().size(), open);
    EXPECT_EQ(prompt.Log().size(), 2u) << "one question, one message";
}

// Bytes of every kind, valid or not: UTF-8 (broken, cut at the end, behind a BOM, broken only
// past the detection sample), UTF-16 with a BOM (even and odd length), and legacy bytes.
std::string RandomFileBytes(std::mt19937& rng, int kind) {
    static const std::vector<std::string> pieces = {"a",
                                                    "\n",
                                                    "\r\n",
                                                    "\r",
                                                    "\t",
                                                    "\xC3\xA9",
                                                    "\xE2\x82\xAC",
                                                    "\xF0\x9F\x98\x80",
                                                    "\x80",
                                                    "\xC3",
                                                    "\xE2\x82",
                                                    "\xFF",
                                                    "\xED\xA0\x80",
                                                    "\xC0\xAF",
                                                    "\xF4\x90\x80\x80",
                                                    "\0"};
    std::string bytes;
    const int n = static_cast<int>(rng() % 40);
    for (int i = 0; i < n; ++i)
        bytes += pieces[rng() % pieces.size()];
    switch (kind) {
    case 0: // as it comes
        return bytes;
    case 1:
        return "\xEF\xBB\xBF" + bytes;
    case 2: // valid UTF-8 for a long stretch, then broken (past any sample), cut at the end
        return std::string(60000 + rng() % 600000, 'x') + "\xC3\xA9" + bytes + "\xE2\x82";
    case 3:
    case 4: { // UTF-16 with its BOM, of any length
        std::string wide = kind == 3 ? "\xFF\xFE" : "\xFE\xFF";
        for (int i = static_cast<int>(rng() % 60); i > 0; --i)
            wide += static_cast<char>(rng() % 3 ? rng() % 128 : rng() % 256);
        return wide;
    }
    default: { // any byte at all
        std::string any;
        for (int i = static_cast<int>(rng() % 80); i > 0; --i)
            any += static_cast<char>(rng() % 256);
        return any;
    }
    }
}

// Whatever the bytes, opening a file as the window does and saving it writes the same bytes
// back; what did not decode is counted as kept, where `iconv` also refuses it as UTF-8.
TEST(OpeningTable, AnyFileSavesBackItsOwnBytes) {
    zvtest::TheApp<QCoreApplication>();
    zvtest::TTempDir temp{"zv-open-bytes"};
    zv::THeadlessPrompt prompt{false};
    zv::TMainFormHelper helper{prompt};
    zv::TMemIniFileW settings;
    settings.WriteInteger("EditorMisc", "DefaultEncoding", 65001);
    helper.SetCustomize(settings);
    std::mt19937 rng(13);
    for (int round = 0; round < 400; ++round) {
        const int kind = round % 6;
        const std::string bytes = RandomFileBytes(rng, kind);
        const fs::path file = temp / ("f" + std::to_string(round) + ".txt");
        zvtest::WriteAll(file, bytes);
        zv::TLoadFileArgs args;
        args.FileName = file.string();
        if ((kind == 3 || kind == 4) && round % 4 < 2) // as "reopen as" UTF-16 asks
            args.CodePage = kind == 3 ? 1200 : 1201;
        ASSERT_TRUE(helper.LoadFile(args)) << "round " << round;
        zv::TDocument& doc = *helper.ActiveDocument();
        ASSERT_TRUE(helper.SaveFile(&doc)) << "round " << round;
        ASSERT_EQ(zvtest::ReadAll(file), bytes) << "round " << round << ", kind " << kind;
        if (doc.Lines().CodePage() == 65001 && !doc.Lines().Memo().FBinaryMode && round % 8 == 0) {
            const std::string body = bytes.substr(doc.Lines().UseBOM() ? 3 : 0);
            zvtest::WriteAll(file, body);
            const bool iconvRefuses =
                std::system(("iconv -f UTF-8 -t UTF-16LE '" + file.string() + "' >/dev/null 2>&1")
                                .c_str()) != 0;
            EXPECT_EQ(doc.Lines().InvalidBytesKept() > 0, iconvRefuses) << "round " << round;
        }
        helper.CloseDocument(static_cast<int>(helper.Documents().size()) - 1);
    }
}

// A file whose rows would need more memory than the machine has is refused at once with a
// message saying how much, and the documents already open stay as they were; the same bytes
// in a few long lines fit and open.
TEST(OpeningTable, AFileBeyondTheMachinesMemoryIsRefusedAndNothingElseIsLost) {
    zvtest::TheApp<QCoreApplication>();
    zvtest::TTempDir temp{"zv-open-memory"};
    zv::THeadlessPrompt prompt{false};
    zv::TMainFormHelper helper{prompt};
    const fs::path kept = temp / "kept.txt", rows = temp / "rows.txt", lines = temp / "lines.txt";
    zvtest::WriteAll(kept, "keep me\n");
    zvtest::WriteAll(rows, std::string(4 << 20, '\n'));                           // 4M rows
    zvtest::WriteAll(lines, std::string(4 << 20, 'x').replace(1 << 20, 1, "\n")); // 2 rows
    zv::TLoadFileArgs args;
    args.FileName = kept.string();
    ASSERT_TRUE(helper.LoadFile(args));
    helper.ActiveDocument()->Lines().SetLineString(0, u"edited");
    helper.ActiveDocument()->SetModified(true);

    zv::SetMemoryBudgetForTests(64 << 20); // 4M rows of 32 bytes need more than this
    args.FileName = rows.string();
    const bool openedRows = helper.LoadFile(args);
    args.FileName = lines.string();
    const bool openedLines = helper.LoadFile(args);
    zv::SetMemoryBudgetForTests(0);

    EXPECT_FALSE(openedRows);
    ASSERT_EQ(prompt.Log().size(), 1u);
    EXPECT_NE(prompt.Log()[0].find("needs about"), std::string::npos) << prompt.Log()[0];
    EXPECT_TRUE(openedLines) << "the same bytes in long lines fit";
    ASSERT_EQ(helper.Documents().size(), 2u);
    EXPECT_EQ(helper.Documents()[0]->Lines().Get(0), u"edited");
    EXPECT_TRUE(helper.Documents()[0]->Modified());
}

} // namespace
