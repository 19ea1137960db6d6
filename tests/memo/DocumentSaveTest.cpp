// Document saves: trims, skipping an unchanged document, numbered backups and their pruning,
// and a failed write that leaves the file as it was.
#include "MemoTestUtil.h"

#include "ZvMemoControl/DocumentSave.h"
#include "ZvMemoControl/Streams.h"
#include "ZvMemoControl/ZvMemo.h"
#include "ZvMemoControl/ZvMemoStrings.h"
#include "common/AtomicFile.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zv {
namespace {

using test::ReadAll;
using test::WriteAll;

TEST(DocumentSave, TrimsWhenNotKeptAsIs) {
    test::TTempDir dir;
    const auto file = dir / "a.txt";
    WriteAll(file, "a\tb  \nkeep\xC2\xA0x\n  \n\t\n\n");
    const std::string original = "a\tb  \nkeep\xC2\xA0x\n  \n\t\n\n";
    auto doc = std::make_shared<TZvTextDocument>();
    TZvMemoStrings& store = doc->Lines();
    store.SetCodePage(65001);
    ASSERT_TRUE(store.LoadFromFile(file.string()));
    TZvMemo view; // a view with its caret behind the trimmed blanks of the first line
    view.SetDocument(doc);
    view.SetTextCursor(5, 0);
    TZvSaveOptions options;
    options.SaveTabsAsSpaces = true;
    options.SaveWithoutTrailingSpaces = true;
    options.SaveWithoutTrailingBlankLines = true;
    options.SaveAndRemoveCharacters = true;
    options.RemoveCharsString = u"\u00A0";
    std::string error;
    ASSERT_EQ(SaveDocument(*doc, file.string(), options, error), TZvSaveResult::Written) << error;
    EXPECT_EQ(ReadAll(file), "a   b\nkeepx\n");
    // The trims went through the edit path: the view's caret followed, and one undo step
    // gives back the text as it was.
    EXPECT_EQ(view.Caret(), (TZvPos{5, 0}));
    ASSERT_TRUE(view.Undo());
    EXPECT_EQ(store.SaveToBytes(), original);
    EXPECT_FALSE(view.CanUndo());
    // Kept as is: no trims, and an unchanged document is not written at all.
    WriteAll(file, "x  \n");
    ASSERT_TRUE(store.LoadFromFile(file.string()));
    options.KeepAsIs = true;
    options.SkipIfUnchanged = true;
    options.Unchanged = true;
    EXPECT_EQ(SaveDocument(*doc, file.string(), options, error), TZvSaveResult::Skipped);
    options.Unchanged = false;
    EXPECT_EQ(SaveDocument(*doc, file.string(), options, error), TZvSaveResult::Written);
    EXPECT_EQ(ReadAll(file), "x  \n");
}

TEST(DocumentSave, BackupsAreNamedAndPrunedOldestFirst) {
    test::TTempDir dir;
    const auto file = dir / "notes.txt";
    WriteAll(file, "v0\n");
    WriteAll(dir / "notes_(zv-zevrit_unrelated.txt", "not a backup\n"); // no ")" before .txt
    TZvTextDocument doc;
    TZvMemoStrings& store = doc.Lines();
    ASSERT_TRUE(store.LoadFromFile(file.string()));
    TZvSaveOptions options;
    options.MakeBackup = true;
    options.AddBakExtension = true;
    options.MaxBackupFiles = 2;
    auto clock = std::chrono::system_clock::from_time_t(1'700'000'000);
    options.Now = [&] { return clock; };
    std::string error;
    for (int i = 1; i <= 3; ++i) {
        store.SetLineString(0, u"v" + std::u16string(1, static_cast<char16_t>(u'0' + i)));
        clock += std::chrono::milliseconds(1500);
        ASSERT_EQ(SaveDocument(doc, file.string(), options, error), TZvSaveResult::Written)
            << error;
    }
    const auto names = zvtest::FolderNames(dir.Path());
    int backups = 0;
    for (const auto& n : names)
        backups += n.ends_with(").txt.bak") ? 1 : 0;
    EXPECT_EQ(backups, 2); // the oldest (v0) went
    EXPECT_EQ(std::count(names.begin(), names.end(), "notes_(zv-zevrit_unrelated.txt"), 1);
    const std::string newest = BackupFileName(dir.Path().string(), file.string(), clock, true);
    EXPECT_EQ(ReadAll(newest), "v2\n");
    EXPECT_EQ(ReadAll(file), "v3\n");
    EXPECT_NE(newest.find("_(zv-zevrit_20"), std::string::npos);
    EXPECT_NE(newest.find(".500).txt.bak"), std::string::npos); // milliseconds
}

TEST(DocumentSave, BackupSubfolderIsMadeOnDemand) {
    test::TTempDir dir;
    const auto file = dir / "a.c";
    WriteAll(file, "int x;\n");
    TZvTextDocument doc;
    TZvMemoStrings& store = doc.Lines();
    ASSERT_TRUE(store.LoadFromFile(file.string()));
    TZvSaveOptions options;
    options.MakeBackup = true;
    options.BackupFolder = "backups";
    std::string error;
    ASSERT_EQ(SaveDocument(doc, file.string(), options, error), TZvSaveResult::Written);
    ASSERT_TRUE(std::filesystem::is_directory(dir / "backups"));
    EXPECT_EQ(zvtest::FolderNames(dir / "backups").size(), 1u);
    // An absolute folder that does not exist is reported.
    std::string reported;
    options.BackupFolder = (dir / "missing" / "deep").string();
    options.OnBackupError = [&](const std::string& folder) { reported = folder; };
    ASSERT_EQ(SaveDocument(doc, file.string(), options, error), TZvSaveResult::Written);
    EXPECT_EQ(reported, options.BackupFolder);
}

TEST(DocumentSave, AFailedWriteLeavesTheOriginal) {
    test::TTempDir dir;
    const auto file = dir / "a.txt";
    WriteAll(file, "original\n");
    std::string error;
    const bool ok = WriteFileAtomically(
        file,
        [](int fd) {
            TZvFdOutStream out(fd);
            out.Write("partial", 7);
            out.Flush();
            throw std::runtime_error("disk full");
            return true;
        },
        &error);
    EXPECT_FALSE(ok);
    EXPECT_NE(error.find("disk full"), std::string::npos);
    EXPECT_EQ(ReadAll(file), "original\n");
    EXPECT_EQ(zvtest::FolderNames(dir.Path()).size(), 1u); // the temporary file is gone
}

} // namespace
} // namespace zv
