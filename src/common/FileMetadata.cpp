// Copying owner, mode and extended attributes onto a file that replaces another.
#include "common/FileMetadata.h"

#include <sys/xattr.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace zv {
namespace {

void CopyAttributes(int fd, const std::filesystem::path& original) {
    const ssize_t size = ::listxattr(original.c_str(), nullptr, 0);
    if (size <= 0)
        return;
    std::string names(static_cast<std::size_t>(size), '\0');
    const ssize_t got = ::listxattr(original.c_str(), names.data(), names.size());
    if (got <= 0)
        return;
    names.resize(static_cast<std::size_t>(got));
    std::vector<char> value;
    for (std::size_t at = 0; at < names.size(); at = names.find('\0', at) + 1) {
        const char* name = names.c_str() + at;
        const ssize_t length = ::getxattr(original.c_str(), name, nullptr, 0);
        if (length < 0)
            continue;
        value.resize(static_cast<std::size_t>(length));
        const ssize_t read = ::getxattr(original.c_str(), name, value.data(), value.size());
        if (read >= 0)
            (void)::fsetxattr(fd, name, value.data(), static_cast<std::size_t>(read), 0);
    }
}

} // namespace

bool KeepMetadata(int fd, const struct stat& old, const std::filesystem::path& original) {
    struct stat now {};
    if (::fstat(fd, &now) == 0 && (now.st_uid != old.st_uid || now.st_gid != old.st_gid))
        if (::fchown(fd, old.st_uid, old.st_gid) != 0)
            (void)::fchown(fd, static_cast<uid_t>(-1), old.st_gid);
    if (::fchmod(fd, old.st_mode & 07777) != 0)
        return false;
    CopyAttributes(fd, original);
    return true;
}

} // namespace zv
