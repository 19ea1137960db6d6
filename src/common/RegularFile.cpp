// Non-blocking checks of a file's kind before it is read.
#include "common/RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace zv {
namespace {

std::string KindOf(mode_t mode) {
    if (S_ISREG(mode))
        return "";
    if (S_ISFIFO(mode))
        return "a named pipe (FIFO)";
    if (S_ISCHR(mode))
        return "a character device";
    if (S_ISBLK(mode))
        return "a block device";
    if (S_ISSOCK(mode))
        return "a socket";
    if (S_ISDIR(mode))
        return "a folder";
    return "not a plain file";
}

} // namespace

std::string NotRegularFileKind(const std::string& path) {
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0)
        return {};
    return KindOf(st.st_mode);
}

std::string NotRegularFileMessage(const std::string& kind) {
    return "It is " + kind + ", not a file: only plain files can be opened.";
}

int OpenRegularFile(const std::string& path, std::string& error) {
    // Without O_NONBLOCK, opening a pipe waits for a writer; O_NOCTTY keeps a terminal from
    // becoming ours.
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0) {
        error = std::strerror(errno);
        return -1;
    }
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        error =
            S_ISREG(st.st_mode) ? std::strerror(errno) : NotRegularFileMessage(KindOf(st.st_mode));
        ::close(fd);
        return -1;
    }
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    return fd;
}

} // namespace zv
