// Instance block over an mmap'ed file with flock telling whether the first instance lives.
#include "shell/RunOnce.h"

#include "common/Trace.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zv {
namespace {

// The short lock of the block: an open-file-description record lock, apart from the flock
// that marks the first instance's life, and freed by the kernel if its holder dies.
class TBlockGuard {
public:
    explicit TBlockGuard(int fd) : FFd(fd) { Set(F_WRLCK); }
    ~TBlockGuard() { Set(F_UNLCK); }
    TBlockGuard(const TBlockGuard&) = delete;
    TBlockGuard& operator=(const TBlockGuard&) = delete;

private:
    void Set(short type) const {
        struct flock lock {};
        lock.l_type = type;
        lock.l_whence = SEEK_SET;
        while (::fcntl(FFd, F_OFD_SETLKW, &lock) != 0 && errno == EINTR) {
        }
    }
    int FFd;
};

} // namespace

std::string InstanceFolder() {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    std::string folder = runtime && *runtime ? std::string(runtime) + "/zevrit"
                                             : "/tmp/zevrit-" + std::to_string(getuid());
    if (::mkdir(folder.c_str(), 0700) != 0 && errno == EEXIST) {
        struct stat st {};
        if (::lstat(folder.c_str(), &st) == 0 && S_ISDIR(st.st_mode) && st.st_uid == ::getuid())
            ::chmod(folder.c_str(), 0700); // ours, but made looser by hand
    }
    return folder;
}

bool IsPrivateFolder(const std::string& folder) {
    struct stat st {};
    return ::lstat(folder.c_str(), &st) == 0 && S_ISDIR(st.st_mode) && st.st_uid == ::getuid() &&
           (st.st_mode & 077) == 0;
}

TRunOnce::TRunOnce(std::string name, std::string folder)
    : FFilemapName(std::move(name)), FFolder(std::move(folder)),
      fName(FFolder + "/" + FFilemapName) {}

TRunOnce::~TRunOnce() {
    if (InstanceInfo)
        ::munmap(InstanceInfo, sizeof(TInstanceInfo));
    if (mappingHandle >= 0)
        ::close(mappingHandle); // releases the flock too
}

bool TRunOnce::MapBlock() {
    if (InstanceInfo)
        return true;
    if (!IsPrivateFolder(FFolder)) {
        // Another user could read or plant the block and the sockets beside it.
        Trace("TRunOnce::MapBlock() - " + FFolder + " is not a folder of mode 0700 of ours");
        return false;
    }
    mappingHandle = ::open(fName.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (mappingHandle < 0)
        return false;
    struct stat st {};
    if (::fstat(mappingHandle, &st) != 0 ||
        (st.st_size < static_cast<off_t>(sizeof(TInstanceInfo)) &&
         ::ftruncate(mappingHandle, sizeof(TInstanceInfo)) != 0))
        return false;
    void* view = ::mmap(nullptr, sizeof(TInstanceInfo), PROT_READ | PROT_WRITE, MAP_SHARED,
                        mappingHandle, 0);
    if (view == MAP_FAILED)
        return false;
    InstanceInfo = static_cast<PInstanceInfo>(view);
    return true;
}

bool TRunOnce::Check(uint64_t appHandle) {
    FAppHandle = appHandle;
    fFirstInstance = false;
    if (!MapBlock())
        return false;
    // Under the guard: whoever fails the flock next finds this table already cleared.
    const TBlockGuard guard(mappingHandle);
    if (::flock(mappingHandle, LOCK_EX | LOCK_NB) != 0)
        return false;
    fFirstInstance = true;
    ClearTable(appHandle);
    return true;
}

uint64_t TRunOnce::OwnerHandle() const {
    return InstanceInfo ? InstanceInfo->appHandle : 0;
}

bool TRunOnce::TakeOver(uint64_t appHandle, uint64_t owner) {
    if (Check(appHandle) || !InstanceInfo)
        return true;
    const TBlockGuard guard(mappingHandle);
    if (InstanceInfo->appHandle != owner)
        return false;
    ClearTable(appHandle);
    return true;
}

uint64_t TRunOnce::GetWinHandle() const {
    return InstanceInfo && InstanceInfo->count > 0 ? InstanceInfo->windows[0] : 0;
}

uint32_t TRunOnce::GetWinCount() const {
    return InstanceInfo ? std::min<uint32_t>(InstanceInfo->count, kMaxInstanceWindows) : 0;
}

void TRunOnce::AddHandle(uint64_t handle) {
    if (!InstanceInfo)
        return;
    const TBlockGuard guard(mappingHandle);
    if (InstanceInfo->count >= kMaxInstanceWindows)
        return;
    InstanceInfo->windows[InstanceInfo->count] = handle;
    ++InstanceInfo->count;
}

bool TRunOnce::UpdateHandle(uint64_t newHandle, uint64_t oldHandle) {
    if (!InstanceInfo)
        return false;
    const TBlockGuard guard(mappingHandle);
    if (InstanceInfo->windows[0] == 0) {
        InstanceInfo->windows[0] = newHandle;
        return true;
    }
    if (oldHandle == 0)
        return false;
    const uint32_t n = GetWinCount();
    for (uint32_t i = 0; i < n; ++i)
        if (InstanceInfo->windows[i] == oldHandle)
            InstanceInfo->windows[i] = newHandle;
    return false;
}

void TRunOnce::RemoveHandle(uint64_t handle) {
    if (!InstanceInfo)
        return;
    const TBlockGuard guard(mappingHandle);
    const uint32_t n = GetWinCount();
    auto* begin = InstanceInfo->windows;
    auto* end = begin + n;
    auto* found = std::find(begin, end, handle);
    if (found == end)
        return;
    std::copy(found + 1, end, found);
    *(end - 1) = 0;
    --InstanceInfo->count;
}

void TRunOnce::ClearAll(uint64_t appHandle) {
    if (!InstanceInfo)
        return;
    const TBlockGuard guard(mappingHandle);
    ClearTable(appHandle);
}

void TRunOnce::ClearTable(uint64_t appHandle) {
    InstanceInfo->appHandle = appHandle;
    std::fill(std::begin(InstanceInfo->windows), std::end(InstanceInfo->windows), 0);
    InstanceInfo->count = 1;
}

} // namespace zv
