// The instance block: first-instance role by flock, window table operations, and the
// 100-byte layout seen by a second mapping of the same file.
#include "shell/RunOnce.h"
#include "support/ZvTestSupport.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// The blocks of this test program, in a private folder as the block needs; the folder
// goes when the program ends.
std::string TestFolder() {
    static const zvtest::TTempDir folder("zv-runonce");
    static const bool private_ = ::chmod(folder.Path().c_str(), 0700) == 0;
    EXPECT_TRUE(private_);
    return folder.Path().string();
}

std::string RawBlock(const std::string& name) {
    return zvtest::ReadAll(TestFolder() + "/" + name);
}

uint64_t U64At(const std::string& raw, size_t offset) {
    uint64_t v;
    std::memcpy(&v, raw.data() + offset, 8);
    return v;
}

TEST(RunOnce, FirstInstanceWritesHeaderAndSecondIsRefused) {
    zv::TRunOnce first("block-a", TestFolder());
    ASSERT_TRUE(first.Check(0x1111));
    const auto raw = RawBlock("block-a");
    ASSERT_EQ(raw.size(), 100u);
    EXPECT_EQ(U64At(raw, 0), 0x1111u);
    EXPECT_EQ(U64At(raw, 8), 0u);
    uint32_t count;
    std::memcpy(&count, raw.data() + 96, 4);
    EXPECT_EQ(count, 1u);

    zv::TRunOnce second("block-a", TestFolder());
    EXPECT_FALSE(second.Check(0x2222));
    EXPECT_EQ(second.GetWinHandle(), 0u) << "no window registered yet";
    EXPECT_TRUE(first.UpdateHandle(0xAAAA, 0));
    EXPECT_EQ(second.GetWinHandle(), 0xAAAAu) << "the second mapping sees the first's writes";
}

TEST(RunOnce, ReleasedWhenTheFirstProcessDies) {
    const std::string folder = TestFolder(); // made before the fork: one folder for both
    const pid_t child = ::fork();
    if (child == 0) {
        zv::TRunOnce first("block-b", folder);
        _exit(first.Check(1) ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_EQ(WEXITSTATUS(status), 0);
    zv::TRunOnce next("block-b", folder);
    EXPECT_TRUE(next.Check(2)) << "a dead first instance frees the role";
}

TEST(RunOnce, WindowTableAddUpdateRemove) {
    zv::TRunOnce block("block-c", TestFolder());
    ASSERT_TRUE(block.Check(7));
    EXPECT_TRUE(block.UpdateHandle(100, 0));
    EXPECT_FALSE(block.UpdateHandle(555, 0)) << "zero old handle changes nothing";
    EXPECT_EQ(block.GetWinHandle(), 100u);
    for (uint64_t h = 101; h < 120; ++h)
        block.AddHandle(h);
    EXPECT_EQ(block.GetWinCount(), 11u) << "a full table ignores further handles";
    EXPECT_FALSE(block.UpdateHandle(200, 101));
    block.RemoveHandle(100);
    EXPECT_EQ(block.GetWinHandle(), 200u) << "removal closes the gap";
    EXPECT_EQ(block.GetWinCount(), 10u);
    block.RemoveHandle(999);
    EXPECT_EQ(block.GetWinCount(), 10u);
    block.ClearAll(9);
    EXPECT_EQ(block.GetWinCount(), 1u);
    EXPECT_EQ(block.GetWinHandle(), 0u);
    EXPECT_EQ(U64At(RawBlock("block-c"), 0), 9u);
}

// A folder others may enter, or a link to one, could let them read or plant the block.
TEST(RunOnce, BlockOnlyInAPrivateFolder) {
    const std::string loose = TestFolder() + "/loose";
    ASSERT_EQ(::mkdir(loose.c_str(), 0755), 0);
    ASSERT_EQ(::chmod(loose.c_str(), 0755), 0); // whatever the umask
    zv::TRunOnce open("block-d", loose);
    EXPECT_FALSE(open.Check(1));
    EXPECT_FALSE(std::ifstream(loose + "/block-d").good()) << "no block made there";
    const std::string link = TestFolder() + "/link";
    ASSERT_EQ(::chmod(loose.c_str(), 0700), 0);
    ASSERT_EQ(::symlink(loose.c_str(), link.c_str()), 0);
    EXPECT_FALSE(zv::IsPrivateFolder(link));
    EXPECT_TRUE(zv::IsPrivateFolder(loose));
    zv::TRunOnce now("block-d", loose);
    EXPECT_TRUE(now.Check(1));
}

TEST(RunOnce, NoBlockAnswersZero) {
    zv::TRunOnce block("x", "/nonexistent-folder-for-zevrit");
    EXPECT_FALSE(block.Check(1));
    EXPECT_EQ(block.GetWinHandle(), 0u);
    EXPECT_EQ(block.GetWinCount(), 0u);
    block.AddHandle(5);
    EXPECT_FALSE(block.UpdateHandle(1, 0));
}

} // namespace
