// What a save keeps besides the bytes, through the window's own opening and saving path:
// hard links stay shared, setuid and setgid bits and extended attributes stay (read back with
// getfattr), and a symbolic link put in a document's place after it was opened is replaced,
// never followed to the file it points to.
#include "ZvMemoControl/ZvMemoStrings.h"
#include "platform/Prompt.h"
#include "shell/MainFormHelper.h"
#include "support/ZvTestSupport.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

// Says yes to every question (replace the file that changed on disk, and so on).
class TYesPrompt : public zv::IPrompt {
public:
    int Prompt(const std::string&, const std::string& text, unsigned, int) override {
        Asked.push_back(text);
        return zv::prYes;
    }
    void ShowMessage(const std::string& text) override { Told.push_back(text); }
    std::vector<std::string> Asked, Told;
};

class SaveSafety : public ::testing::Test {
protected:
    void SetUp() override { zvtest::TheApp<QCoreApplication>(); }

    // Opens `file` as the window does, replaces its first row and saves it.
    zv::TDocument& EditAndSave(const fs::path& file, std::u16string_view row) {
        zv::TLoadFileArgs args;
        args.FileName = file.string();
        EXPECT_TRUE(helper.LoadFile(args));
        zv::TDocument& doc = *helper.ActiveDocument();
        doc.Lines().SetLineString(0, row);
        doc.SetModified(true);
        EXPECT_TRUE(helper.SaveFile(&doc)) << (prompt.Told.empty() ? "" : prompt.Told.back());
        return doc;
    }
    static struct stat Stat(const fs::path& file) {
        struct stat st {};
        ::stat(file.c_str(), &st);
        return st;
    }

    zvtest::TTempDir temp{"zv-save-safety"};
    const fs::path dir = temp.Path();
    TYesPrompt prompt;
    zv::TMainFormHelper helper{prompt};
};

TEST_F(SaveSafety, HardLinksStaySharedAndTheDocumentSaysSo) {
    const fs::path file = dir / "a.txt", other = dir / "b.txt";
    zvtest::WriteAll(file, "old\n");
    fs::create_hard_link(file, other);
    const ino_t inode = Stat(file).st_ino;
    const zv::TDocument& doc = EditAndSave(file, u"new");
    EXPECT_TRUE(doc.FHardLinked);
    EXPECT_EQ(zvtest::ReadAll(other), "new\n") << "the other name sees the new text";
    EXPECT_EQ(Stat(file).st_ino, inode);
    EXPECT_EQ(Stat(file).st_nlink, 2u);
    EXPECT_EQ(zvtest::FolderNames(dir), (std::vector<std::string>{"a.txt", "b.txt"}))
        << "the copy of the old content is gone";
    // Shorter text: the file is cut where the new text ends.
    EditAndSave(file, u"n");
    EXPECT_EQ(zvtest::ReadAll(other), "n\n");
}

TEST_F(SaveSafety, ModeBitsOwnerAndExtendedAttributesStay) {
    const fs::path file = dir / "tool.sh";
    zvtest::WriteAll(file, "#!/bin/sh\necho old\n");
    const bool root = ::geteuid() == 0;
    if (root) { // owned by another user: giving the file back clears setuid unless done first
        ASSERT_EQ(::chown(file.c_str(), 1234, 1234), 0);
    }
    ASSERT_EQ(::chmod(file.c_str(), 06755), 0);
    const bool attributes =
        std::system(
            ("setfattr -n user.origin -v kept '" + file.string() + "' 2>/dev/null").c_str()) == 0;
    EditAndSave(file, u"#!/bin/sh -e");
    const struct stat st = Stat(file);
    EXPECT_EQ(st.st_mode & 07777, 06755u);
    if (root) {
        EXPECT_EQ(st.st_uid, 1234u);
        EXPECT_EQ(st.st_gid, 1234u);
    }
    if (attributes) {
        EXPECT_EQ(
            zvtest::RunOutput("getfattr --only-values -n user.origin '" + file.string() + "'"),
            "kept");
    } else {
        ADD_FAILURE() << "setfattr could not set an attribute here (package attr missing?)";
    }
    EXPECT_EQ(zvtest::ReadAll(file), "#!/bin/sh -e\necho old\n");
}

TEST_F(SaveSafety, ALinkPutInTheDocumentsPlaceIsReplacedNotFollowed) {
    const fs::path file = dir / "doc.txt", secret = dir / "secret.txt";
    zvtest::WriteAll(file, "mine\n");
    zvtest::WriteAll(secret, "not yours\n");
    zv::TLoadFileArgs args;
    args.FileName = file.string();
    ASSERT_TRUE(helper.LoadFile(args));
    zv::TDocument& doc = *helper.ActiveDocument();
    fs::remove(file);
    fs::create_symlink(secret, file); // swapped in after the document was opened
    doc.Lines().SetLineString(0, u"edited");
    doc.SetModified(true);
    ASSERT_TRUE(helper.SaveFile(&doc));
    EXPECT_EQ(zvtest::ReadAll(secret), "not yours\n");
    EXPECT_FALSE(fs::is_symlink(file));
    EXPECT_EQ(zvtest::ReadAll(file), "edited\n");

    // Opened through a link, a document is saved through it.
    const fs::path link = dir / "link.txt";
    fs::create_symlink(secret, link);
    EditAndSave(link, u"through the link");
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(zvtest::ReadAll(secret), "through the link\n");
}

} // namespace
