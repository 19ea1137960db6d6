// File and memory streams for the codec.
#include "ZvMemoControl/Streams.h"

#include "common/AtomicFile.h"
#include "common/RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

namespace zv {

namespace {

// Reads from bytes held in memory at `position`, and advances it.
std::size_t ReadHeld(std::string_view bytes, std::int64_t& position, char* buffer,
                     std::size_t count) {
    if (position >= static_cast<std::int64_t>(bytes.size()))
        return 0;
    const std::size_t n = std::min(count, bytes.size() - static_cast<std::size_t>(position));
    std::memcpy(buffer, bytes.data() + position, n);
    position += static_cast<std::int64_t>(n);
    return n;
}

} // namespace

std::size_t TZvMemoryInStream::Read(char* buffer, std::size_t count) {
    return ReadHeld(FBytes, FPosition, buffer, count);
}

TZvFileInStream::TZvFileInStream(const std::string& fileName) {
    FFd = OpenRegularFile(fileName, FError);
    if (FFd < 0 || Size() > 0)
        return;
    // A size of 0 may be a file that cannot know its size: what it gives is its content.
    auto content = ReadWholeDescriptor(FFd, kUnsizedLimit);
    if (!content) {
        FError = errno == EFBIG
                     ? "\"" + fileName + "\" does not tell its size and gives more than " +
                           std::to_string(kUnsizedLimit >> 20) + " MB: it cannot be opened."
                     : std::string(std::strerror(errno));
        ::close(FFd);
        FFd = -1;
        return;
    }
    FUnsized = true;
    FContent = std::move(*content);
}

TZvFileInStream::~TZvFileInStream() {
    if (FFd >= 0)
        ::close(FFd);
}

std::int64_t TZvFileInStream::Size() const {
    if (FUnsized)
        return static_cast<std::int64_t>(FContent.size());
    struct stat st {};
    if (FFd < 0 || ::fstat(FFd, &st) != 0)
        return 0;
    return static_cast<std::int64_t>(st.st_size);
}

std::size_t TZvFileInStream::Read(char* buffer, std::size_t count) {
    if (FUnsized)
        return ReadHeld(FContent, FPosition, buffer, count);
    std::size_t done = 0;
    while (done < count) {
        const ssize_t n = ::pread(FFd, buffer + done, count - done, FPosition);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            throw std::system_error(errno, std::generic_category(), "read");
        }
        if (n == 0)
            break;
        done += static_cast<std::size_t>(n);
        FPosition += n;
    }
    return done;
}

TZvFdOutStream::~TZvFdOutStream() {
    try {
        Flush();
    } catch (...) {
        // The owner flushes explicitly to see errors; a destructor must not throw.
    }
}

void TZvFdOutStream::Write(const char* data, std::size_t count) {
    // A large piece goes straight to the file: copying it through the buffer gains nothing.
    const bool direct = count >= kDirectWriteSize;
    if (direct || FBuffer.size() + count > kBufferSize)
        Flush();
    if (direct)
        WriteAll(data, count);
    else
        FBuffer.append(data, count);
}

void TZvFdOutStream::Flush() {
    WriteAll(FBuffer.data(), FBuffer.size());
    FBuffer.clear();
}

void TZvFdOutStream::WriteAll(const char* data, std::size_t count) {
    std::size_t done = 0;
    while (done < count) {
        const ssize_t n = ::write(FFd, data + done, count - done);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            throw std::system_error(errno, std::generic_category(), "write");
        }
        done += static_cast<std::size_t>(n);
    }
    FWritten += static_cast<std::int64_t>(done);
    if (FStartWriteback && FWritten - FWritebackFrom >= kWritebackStep)
        StartWriteback();
}

void TZvFdOutStream::StartWriteback() {
    // Only a hint: a descriptor that can't take it (a pipe, /dev/null) just skips it.
    (void)::sync_file_range(FFd, FWritebackFrom, FWritten - FWritebackFrom, SYNC_FILE_RANGE_WRITE);
    FWritebackFrom = FWritten;
}

} // namespace zv
