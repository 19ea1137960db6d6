// The instance block: first-instance role by flock, window table operations, and the
// 100-byte layout seen by a second mapping of the same file.
#include "shell/RunOnce.h"
#include "support/ZvTestSupport.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <optional>
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

// What one start saw of the block right after its check.
struct TSeen {
    uint64_t appHandle;
    uint32_t first;
    uint64_t owner;
    uint32_t count;
    uint64_t window;
};

// One start in a child process: waits for the go (the end of `go`), checks, reports what it
// saw on `report`, and holds its view until `hold` ends.
[[noreturn]] void StartChild(const std::string& name, const std::string& folder, int go, int report,
                             int hold) {
    char byte;
    while (::read(go, &byte, 1) > 0) {
    }
    zv::TRunOnce block(name, folder);
    TSeen seen{static_cast<uint64_t>(::getpid()), 0, 0, 0, 0};
    seen.first = block.Check(seen.appHandle);
    seen.owner = block.OwnerHandle();
    seen.count = block.GetWinCount();
    seen.window = block.GetWinHandle();
    const bool told = ::write(report, &seen, sizeof seen) == sizeof seen;
    while (::read(hold, &byte, 1) > 0) {
    }
    _exit(told ? 0 : 1);
}

// Starts at the same moment, on a new block and on one a killed run left full of windows:
// exactly one becomes first, and every other one finds the table already cleared by it
// (never the stale windows, which would send it to a window that is gone).
TEST(RunOnce, OfSimultaneousStartsExactlyOneIsFirstAndTheOthersSeeItsTable) {
    const std::string folder = TestFolder();
    constexpr int kStarts = 6, kRounds = 12;
    for (int round = 0; round < kRounds; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const std::string name = "block-race-" + std::to_string(round);
        if (round % 2 == 1) { // what a killed run leaves: its owner, windows and count
            zv::TInstanceInfo stale{0xDEAD, {0xBAD1, 0xBAD2, 0xBAD3}, 3};
            zvtest::WriteAll(folder + "/" + name,
                             std::string(reinterpret_cast<const char*>(&stale), sizeof stale));
        }
        int go[2], report[2], hold[2];
        ASSERT_EQ(::pipe(go), 0);
        ASSERT_EQ(::pipe(report), 0);
        ASSERT_EQ(::pipe(hold), 0);
        std::vector<pid_t> children;
        for (int i = 0; i < kStarts; ++i) {
            const pid_t child = ::fork();
            if (child == 0) {
                ::close(go[1]);
                ::close(report[0]);
                ::close(hold[1]);
                StartChild(name, folder, go[0], report[1], hold[0]);
            }
            children.push_back(child);
        }
        ::close(go[0]);
        ::close(report[1]);
        ::close(hold[0]);
        ::close(go[1]); // go
        std::vector<TSeen> seen(kStarts);
        for (auto& one : seen)
            ASSERT_EQ(::read(report[0], &one, sizeof one), static_cast<ssize_t>(sizeof one));
        ::close(hold[1]); // the first may end now
        ::close(report[0]);
        for (pid_t child : children) {
            int status = 0;
            ::waitpid(child, &status, 0);
            EXPECT_EQ(WEXITSTATUS(status), 0);
        }
        const auto first = std::find_if(seen.begin(), seen.end(), [](auto& s) { return s.first; });
        ASSERT_NE(first, seen.end());
        EXPECT_EQ(std::count_if(seen.begin(), seen.end(), [](auto& s) { return s.first; }), 1);
        for (const auto& one : seen) {
            EXPECT_EQ(one.owner, first->appHandle);
            EXPECT_EQ(one.count, 1u);
            EXPECT_EQ(one.window, 0u);
        }
    }
}

// Several starts find the first window silent and take its role over: only the first of
// them does; the others see it did. A first instance that died meanwhile frees the role.
TEST(RunOnce, OnlyOneStartTakesASilentFirstOver) {
    std::optional<zv::TRunOnce> first(std::in_place, "block-e", TestFolder());
    ASSERT_TRUE(first->Check(1));
    ASSERT_TRUE(first->UpdateHandle(100, 0));
    zv::TRunOnce b("block-e", TestFolder()), c("block-e", TestFolder());
    ASSERT_FALSE(b.Check(2));
    ASSERT_FALSE(c.Check(3));
    const uint64_t owner = b.OwnerHandle();
    EXPECT_EQ(owner, 1u);
    EXPECT_TRUE(b.TakeOver(2, owner));
    EXPECT_FALSE(b.IsFirstInstance()) << "the silent first still holds the lock";
    EXPECT_FALSE(c.TakeOver(3, owner)) << "b took it first";
    EXPECT_EQ(c.OwnerHandle(), 2u);
    EXPECT_EQ(c.GetWinHandle(), 0u) << "the table waits for b's window";
    EXPECT_TRUE(b.UpdateHandle(200, 0));

    first.reset(); // the old first ends: its lock goes
    zv::TRunOnce d("block-e", TestFolder());
    EXPECT_TRUE(d.TakeOver(4, 2));
    EXPECT_TRUE(d.IsFirstInstance());
    EXPECT_EQ(d.OwnerHandle(), 4u);
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
