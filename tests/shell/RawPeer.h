// Peers of a window's hand-over socket made from plain system calls, as a careless or
// hostile program would make them: clients that send what they like, and a window that
// listens but never answers.
#pragma once

#include "shell/HandOver.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace zvtest {

inline sockaddr_un UnixAddress(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    return address;
}

// A connected non-blocking client socket; -1 if nothing listens or its backlog is full.
inline int ConnectRaw(const std::string& path) {
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    const sockaddr_un address = UnixAddress(path);
    if (fd >= 0 && ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return fd;
    if (fd >= 0)
        ::close(fd);
    return -1;
}

// What a client has received so far, and whether the other side has closed.
struct TPeerInput {
    std::string bytes;
    bool closed = false;
};

// Reads what is there without waiting.
inline void DrainRaw(int fd, TPeerInput& input) {
    char buffer[512];
    for (;;) {
        const ssize_t n = ::recv(fd, buffer, sizeof buffer, MSG_DONTWAIT);
        if (n > 0) {
            input.bytes.append(buffer, static_cast<size_t>(n));
            continue;
        }
        if (n == 0 || (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR))
            input.closed = true;
        return;
    }
}

// Sends all of data (the socket buffer takes the small amounts of these tests).
inline bool SendRaw(int fd, const void* data, size_t size) {
    return ::send(fd, data, size, MSG_NOSIGNAL) == static_cast<ssize_t>(size);
}

// A window that listens on its socket but never accepts nor answers: connections complete
// in the kernel's queue and frames are taken, but no reply ever comes.
class TSilentWindow {
public:
    TSilentWindow() : FHandle(zv::NewWindowHandle()), FPath(zv::HandOverSocketPath(FHandle)) {
        FFd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const sockaddr_un address = UnixAddress(FPath);
        FListening =
            FFd >= 0 &&
            ::bind(FFd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
            ::listen(FFd, 16) == 0;
    }
    ~TSilentWindow() {
        ::close(FFd);
        ::unlink(FPath.c_str());
    }
    TSilentWindow(const TSilentWindow&) = delete;
    TSilentWindow& operator=(const TSilentWindow&) = delete;
    bool Listening() const { return FListening; }
    uint64_t Handle() const { return FHandle; }

private:
    uint64_t FHandle;
    std::string FPath;
    int FFd = -1;
    bool FListening = false;
};

} // namespace zvtest
