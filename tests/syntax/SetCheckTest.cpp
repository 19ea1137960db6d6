// The authoring check of a syntax folder against hand-made files, one fault each: the check
// the build runs on the shipped set has to find every kind of fault it promises.
#include "SyntaxTestFiles.h"

#include "syntax/SyntaxSetCheck.h"

#include <gtest/gtest.h>

namespace zv {
namespace {

using test::TTempDir;
using test::WriteFile;

constexpr std::string_view kCompanion = "[Comment]\n1=A test syntax\n[Sample]\n1=if x\n";

// A definition that passes the check, claiming `extensions`, with `extra` lines before it.
std::string CleanSyx(std::string_view extensions, std::string_view extra = "") {
    return std::string(extra) + "[StandardExtensions]\nExtensions=" + std::string(extensions) +
           "\n\n[FoldOptions]\nDefaultBegin={\nDefaultEnd=}\n\n[Keywords]\nWords=if|else\n";
}

class SetCheck : public ::testing::Test {
protected:
    void Add(const std::string& name, std::string_view syx, bool companion = true) {
        WriteFile(FDir.Path() / (name + ".syx"), syx);
        if (companion)
            WriteFile(FDir.Path() / (name + ".ini"), kCompanion);
    }
    // The problems reported for one file, joined for readable failures.
    std::string ProblemsOf(const TSyntaxSetReport& report, const std::string& file) const {
        std::string found;
        for (const std::string& p : report.Problems)
            if (p.find(file + ":") != std::string::npos)
                found += p + "\n";
        return found;
    }

    TTempDir FDir;
};

TEST_F(SetCheck, CleanFilesPassAndTheirExtensionsAreMapped) {
    Add("one", CleanSyx(".one .uno"));
    Add("two", CleanSyx(".two"));
    WriteFile(FDir.Path() / "notes.ini", "[Comment]\n"); // not a definition file
    const TSyntaxSetReport report = CheckSyntaxFolder(FDir.Path());
    EXPECT_TRUE(report.Problems.empty()) << ProblemsOf(report, "");
    EXPECT_EQ(report.Files, 2);
    EXPECT_EQ(report.Extensions.size(), 3u);
    EXPECT_EQ(report.Extensions.at(".uno"), "one.syx");
}

TEST_F(SetCheck, EachKindOfFaultIsReportedAgainstItsFile) {
    Add("warns", CleanSyx(".w", "[Options]\nNoSuchKey=1\n\n"));
    Add("emptygroup", CleanSyx(".e") + "Nothing=\n");
    Add("badregex", CleanSyx(".r") + "#Broken=(unclosed\n");
    Add("nofold", "[StandardExtensions]\nExtensions=.n\n\n[Keywords]\nWords=a|b\n");
    Add("nokeywords", "[StandardExtensions]\nExtensions=.k\n\n[FoldOptions]\n");
    Add("alone", CleanSyx(".a"), false);
    Add("noext", CleanSyx(""));
    Add("upper", CleanSyx(".Up"));
    const TSyntaxSetReport report = CheckSyntaxFolder(FDir.Path());
    EXPECT_EQ(report.Files, 8);
    for (const char* file : {"warns.syx", "emptygroup.syx", "badregex.syx", "nofold.syx",
                             "nokeywords.syx", "alone.syx", "noext.syx", "upper.syx"})
        EXPECT_FALSE(ProblemsOf(report, file).empty()) << file << " passed the check";
    EXPECT_NE(ProblemsOf(report, "emptygroup.syx").find("Nothing"), std::string::npos);
    EXPECT_NE(ProblemsOf(report, "alone.syx").find("[Comment]"), std::string::npos);
    EXPECT_NE(ProblemsOf(report, "alone.syx").find("[Sample]"), std::string::npos);
    EXPECT_NE(ProblemsOf(report, "nofold.syx").find("folds"), std::string::npos);
}

TEST_F(SetCheck, AnExtensionClaimedTwiceNamesBothFiles) {
    Add("first", CleanSyx(".same .own"));
    Add("second", CleanSyx(".same"));
    const TSyntaxSetReport report = CheckSyntaxFolder(FDir.Path());
    ASSERT_EQ(report.Problems.size(), 1u) << ProblemsOf(report, "");
    EXPECT_NE(report.Problems[0].find("first.syx"), std::string::npos);
    EXPECT_NE(report.Problems[0].find("second.syx"), std::string::npos);
    EXPECT_NE(report.Problems[0].find(".same"), std::string::npos);
}

TEST_F(SetCheck, UserFolderIsCheckedOnItsOwn) {
    Add("one", CleanSyx(".one"));
    // A user's copy may claim the shipped file's extensions: it replaces that file.
    WriteFile(FDir.Path() / "User defined" / "one.syx", CleanSyx(".one"));
    WriteFile(FDir.Path() / "User defined" / "one.ini", kCompanion);
    EXPECT_TRUE(CheckSyntaxFolder(FDir.Path()).Problems.empty());
    EXPECT_TRUE(CheckSyntaxFolder(FDir.Path() / "User defined").Problems.empty());
}

} // namespace
} // namespace zv
