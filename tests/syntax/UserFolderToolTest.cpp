// A user's definition file end to end: zvtool, run as a process on a data root, colours a
// document by "Syntax/User defined/" when a file of the type's name stands there (in any
// letter case), and by the shipped file again once it is gone.
#include "SyntaxTestFiles.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <sstream>

namespace zv {
namespace {

namespace fs = std::filesystem;

class UserFolderTool : public ::testing::Test {
protected:
    void SetUp() override {
        fs::copy(fs::path(ZV_TEST_TREE) / "Syntax", FDir.Path() / "Syntax",
                 fs::copy_options::recursive);
        test::WriteFile(FDir.Path() / "doc.c", "int main(void) { return frobnicate; }\n");
    }

    // The token kind at each column of the document's first line, as zvtool reports it with
    // this data root.
    std::map<int, std::string> Kinds() {
        const std::string command = "ZEVRIT_ROOT='" + FDir.Path().string() + "' '" + ZV_TOOL_PATH +
                                    "' highlight --tokens '" + (FDir.Path() / "doc.c").string() +
                                    "' 2>&1";
        FILE* pipe = popen(command.c_str(), "r");
        std::string out;
        char buffer[4096];
        for (std::size_t n; pipe && (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
            out.append(buffer, n);
        const int status = pipe ? pclose(pipe) : -1;
        EXPECT_EQ(status, 0) << out;
        std::map<int, std::string> kinds;
        std::istringstream lines(out);
        for (int row, column, length; lines >> row >> column >> length;) {
            std::string kind;
            lines >> kind;
            for (int c = column; row == 0 && c < column + length; ++c)
                kinds[c] = kind;
        }
        return kinds;
    }

    test::TTempDir FDir;
};

TEST_F(UserFolderTool, AUsersFileWinsAndTheShippedOneReturnsWhenItIsGone) {
    constexpr int kReturn = 17, kWord = 24; // columns of "return" and "frobnicate"
    auto kinds = Kinds();
    EXPECT_EQ(kinds[kReturn], "keyword");
    EXPECT_EQ(kinds[kWord], "text");

    // The shipped type names "c.syx"; the user's file is found whatever its letter case.
    const fs::path mine = FDir.Path() / "Syntax" / "User defined" / "C.Syx";
    test::WriteFile(mine, "[Options]\nNumbers=0123456789\n\n[Keywords]\nMine=frobnicate\n");
    kinds = Kinds();
    EXPECT_EQ(kinds[kWord], "keyword");
    EXPECT_NE(kinds[kReturn], "keyword");

    fs::remove(mine);
    kinds = Kinds();
    EXPECT_EQ(kinds[kReturn], "keyword");
    EXPECT_EQ(kinds[kWord], "text");
}

} // namespace
} // namespace zv
