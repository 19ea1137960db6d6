// Byte streams the codec reads and writes: a file (positioned reads, so slices can step
// back) or memory.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zv {

class TZvInStream {
public:
    virtual ~TZvInStream() = default;
    virtual std::int64_t Size() const = 0;
    std::int64_t Position() const { return FPosition; }
    void Seek(std::int64_t position) { FPosition = position < 0 ? 0 : position; }
    // Reads up to `count` bytes at the position and advances; returns the bytes read (0 at
    // the end). Throws std::system_error on a read error.
    virtual std::size_t Read(char* buffer, std::size_t count) = 0;

protected:
    std::int64_t FPosition = 0;
};

class TZvMemoryInStream : public TZvInStream {
public:
    explicit TZvMemoryInStream(std::string_view bytes) : FBytes(bytes) {}
    std::int64_t Size() const override { return static_cast<std::int64_t>(FBytes.size()); }
    std::size_t Read(char* buffer, std::size_t count) override;

private:
    std::string_view FBytes;
};

class TZvFileInStream : public TZvInStream {
public:
    // Opens for reading; Ok() false (and Error()) when it could not.
    explicit TZvFileInStream(const std::string& fileName);
    ~TZvFileInStream() override;
    bool Ok() const { return FFd >= 0; }
    const std::string& Error() const { return FError; }
    std::int64_t Size() const override;
    std::size_t Read(char* buffer, std::size_t count) override;

    // Files that tell no size (those of /proc and /sys say 0) are read whole at opening, up
    // to this many bytes; a larger one is refused with a message.
    static constexpr std::int64_t kUnsizedLimit = 64 << 20;

private:
    int FFd = -1;
    std::string FError;
    bool FUnsized = false; // the content is FContent, read at opening
    std::string FContent;
};

class TZvOutStream {
public:
    virtual ~TZvOutStream() = default;
    virtual void Write(const char* data, std::size_t count) = 0;
    void Write(std::string_view bytes) { Write(bytes.data(), bytes.size()); }
    virtual std::int64_t Size() const = 0;
};

class TZvStringOutStream : public TZvOutStream {
public:
    void Write(const char* data, std::size_t count) override { FBytes.append(data, count); }
    std::int64_t Size() const override { return static_cast<std::int64_t>(FBytes.size()); }
    std::string& Bytes() { return FBytes; }

private:
    std::string FBytes;
};

// Buffered writes to an open descriptor (not owned). Throws std::system_error on failure.
class TZvFdOutStream : public TZvOutStream {
public:
    // With `startWriteback` the system starts writing each few megabytes to the disk while
    // later ones are still being produced, so a closing fsync finds little left to do.
    explicit TZvFdOutStream(int fd, bool startWriteback = false)
        : FFd(fd), FStartWriteback(startWriteback) {
        FBuffer.reserve(kBufferSize);
    }
    ~TZvFdOutStream() override;
    void Write(const char* data, std::size_t count) override;
    std::int64_t Size() const override {
        return FWritten + static_cast<std::int64_t>(FBuffer.size());
    }
    void Flush();

private:
    void WriteAll(const char* data, std::size_t count);
    void StartWriteback();

    static constexpr std::size_t kBufferSize = 1 << 20;
    static constexpr std::size_t kDirectWriteSize = 64 << 10;
    static constexpr std::int64_t kWritebackStep = 8 << 20;
    int FFd;
    bool FStartWriteback;
    std::int64_t FWritebackFrom = 0; // bytes before this offset were handed to writeback
    std::string FBuffer;
    std::int64_t FWritten = 0;
};

} // namespace zv
