// The instance block: 100 bytes shared by every running instance of one user, telling
// whether a first instance lives and where its windows listen for hand-overs.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zv {

// Wire layout shared between processes; keep it exactly 100 bytes.
#pragma pack(push, 4)
struct TInstanceInfo {
    uint64_t appHandle;   // offset 0: application handle of the first instance
    uint64_t windows[11]; // offset 8: main-window handles, first window first
    uint32_t count;       // offset 96: entries in use
};
#pragma pack(pop)
static_assert(sizeof(TInstanceInfo) == 100, "the instance block is a 100-byte wire format");
using PInstanceInfo = TInstanceInfo*;

inline constexpr int kMaxInstanceWindows = 11;

// The folder of the instance block and the hand-over sockets:
// $XDG_RUNTIME_DIR/zevrit, else /tmp/zevrit-$UID; made with mode 0700 (an existing one of
// ours is set to 0700).
std::string InstanceFolder();
// True if folder is a real folder (no link) of this user that no one else may enter.
bool IsPrivateFolder(const std::string& folder);

// Owns a view of the block. The block is a file in InstanceFolder() mapped with mmap; the
// first instance holds an exclusive flock on it for its life, so a crash frees the role.
// Taking the role and changing the table happen under a short lock of the block, so that of
// simultaneous starts exactly one becomes the first and the others see its cleared table.
class TRunOnce {
public:
    // name: the block's file name, "ZvFileMap" by default (tests use their own). The block
    // is only used in a private folder (IsPrivateFolder); elsewhere Check fails.
    explicit TRunOnce(std::string name = "ZvFileMap", std::string folder = InstanceFolder());
    ~TRunOnce();
    TRunOnce(const TRunOnce&) = delete;
    TRunOnce& operator=(const TRunOnce&) = delete;

    // Creates or opens the block; true if this process is the first instance, and then
    // writes appHandle at offset 0, zero at offset 8 and 1 at offset 96.
    bool Check(uint64_t appHandle);
    uint64_t GetWinHandle() const; // first window handle, 0 without a block
    uint32_t GetWinCount() const;  // entries in use, 0 without a block
    // Stores handle at the next index; a full table ignores it silently.
    void AddHandle(uint64_t handle);
    // First entry zero: stores newHandle there, true. Else replaces oldHandle (non-zero).
    bool UpdateHandle(uint64_t newHandle, uint64_t oldHandle);
    // Removes the entry and closes the gap.
    void RemoveHandle(uint64_t handle);
    // Zeroes all 11 entries, writes appHandle at 0 and 1 at 96.
    void ClearAll(uint64_t appHandle);
    // The application handle at offset 0 (the first instance's), 0 without a block.
    uint64_t OwnerHandle() const;
    // A second instance whose first does not answer takes the role over. True if the first
    // process has died (this one is now first as by Check), if there is no block to share,
    // or if the block still names owner at offset 0: then it is cleared for appHandle.
    // False if another start took the role over in the meantime.
    bool TakeOver(uint64_t appHandle, uint64_t owner);
    // Hands a second instance's arguments (without the program) to the first window as a
    // parameter string (kind 1001), names resolved against cwd; true when it answered.
    // The receiver brings its window to the front.
    bool SendToInstance(const std::vector<std::string>& args, const std::string& cwd) const;
    // Kept as the hook in the shutdown order; nothing to free here.
    void FreeFiles() {}

    bool IsFirstInstance() const { return fFirstInstance; }
    uint64_t AppHandle() const { return FAppHandle; }
    const std::string& FileName() const { return fName; }

private:
    bool MapBlock();
    void ClearTable(uint64_t appHandle);

    uint64_t FAppHandle = 0;
    std::string FFilemapName;
    std::string FFolder; // the folder holding the block
    std::string fName;   // full path of the block file
    bool fFirstInstance = false;
    uint64_t FOtherWindowHandle = 0;
    PInstanceInfo InstanceInfo = nullptr; // mapped view, null when the block could not be made
    int mappingHandle = -1;               // file descriptor holding the map (and the flock)
};

} // namespace zv
