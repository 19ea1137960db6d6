// Hand-over frames on the wire: kind (u64 LE), byte length (u32 LE), UTF-16LE text, and a
// reader that cuts a byte stream into frames however the bytes arrive.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zv {

inline constexpr uint32_t kMaxHandOverBytes = 64u << 20;
inline constexpr size_t kHandOverHeaderBytes = 12;

// Frame: kind (u64 LE), byte length (u32 LE), UTF-16LE text without terminator.
std::vector<uint8_t> EncodeHandOverFrame(uint64_t kind, const std::u16string& text);
// The reply to each frame: the u32 LE value.
std::vector<uint8_t> EncodeHandOverReply(uint32_t value);
uint32_t DecodeHandOverReply(const uint8_t* data);

// Parses one whole frame at the start of data; returns the bytes consumed, 0 if incomplete.
// A length that is odd or above kMaxHandOverBytes makes the frame invalid (returns -1).
long DecodeHandOverFrame(const uint8_t* data, size_t size, uint64_t& kind, std::u16string& text);

// The frames of one connection, in order: bytes are appended as they come (several frames
// in one piece, one frame over many pieces), whole frames are taken out one by one.
class THandOverStream {
public:
    void Append(const char* data, size_t size);
    // 1: a frame was taken out; 0: the next one is not complete yet; -1: the stream is
    // invalid (it stays so).
    int Next(uint64_t& kind, std::u16string& text);
    // True while part of a frame is waiting for the rest.
    bool HasPartialFrame() const { return FRead < FBytes.size(); }

private:
    std::vector<uint8_t> FBytes;
    size_t FRead = 0; // bytes of FBytes already taken out as frames
    bool FInvalid = false;
};

} // namespace zv
