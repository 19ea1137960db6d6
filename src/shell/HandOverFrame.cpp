// Encoding and stream decoding of hand-over frames.
#include "shell/HandOverFrame.h"

namespace zv {
namespace {

template <typename T> void PutLE(std::vector<uint8_t>& out, T value) {
    for (size_t i = 0; i < sizeof(T); ++i)
        out.push_back(static_cast<uint8_t>(value >> (8 * i)));
}

template <typename T> T GetLE(const uint8_t* p) {
    T value = 0;
    for (size_t i = 0; i < sizeof(T); ++i)
        value |= static_cast<T>(p[i]) << (8 * i);
    return value;
}

} // namespace

std::vector<uint8_t> EncodeHandOverFrame(uint64_t kind, const std::u16string& text) {
    std::vector<uint8_t> out;
    out.reserve(kHandOverHeaderBytes + text.size() * 2);
    PutLE<uint64_t>(out, kind);
    PutLE<uint32_t>(out, static_cast<uint32_t>(text.size() * 2));
    for (char16_t c : text)
        PutLE<uint16_t>(out, c);
    return out;
}

std::vector<uint8_t> EncodeHandOverReply(uint32_t value) {
    std::vector<uint8_t> out;
    PutLE<uint32_t>(out, value);
    return out;
}

uint32_t DecodeHandOverReply(const uint8_t* data) {
    return GetLE<uint32_t>(data);
}

long DecodeHandOverFrame(const uint8_t* data, size_t size, uint64_t& kind, std::u16string& text) {
    if (size < kHandOverHeaderBytes)
        return 0;
    const uint32_t bytes = GetLE<uint32_t>(data + 8);
    if (bytes % 2 != 0 || bytes > kMaxHandOverBytes)
        return -1;
    if (size < kHandOverHeaderBytes + bytes)
        return 0;
    kind = GetLE<uint64_t>(data);
    text.resize(bytes / 2);
    for (size_t i = 0; i < text.size(); ++i)
        text[i] = static_cast<char16_t>(GetLE<uint16_t>(data + kHandOverHeaderBytes + 2 * i));
    return static_cast<long>(kHandOverHeaderBytes + bytes);
}

void THandOverStream::Append(const char* data, size_t size) {
    if (FInvalid)
        return;
    if (FRead > 0 && FRead == FBytes.size()) {
        FBytes.clear(); // everything taken out: start afresh rather than grow
        FRead = 0;
    }
    FBytes.insert(FBytes.end(), reinterpret_cast<const uint8_t*>(data),
                  reinterpret_cast<const uint8_t*>(data) + size);
}

int THandOverStream::Next(uint64_t& kind, std::u16string& text) {
    if (FInvalid)
        return -1;
    const long used = DecodeHandOverFrame(FBytes.data() + FRead, FBytes.size() - FRead, kind, text);
    if (used < 0) {
        FInvalid = true;
        FBytes.clear();
        FRead = 0;
        return -1;
    }
    if (used == 0) {
        if (FRead > 0) { // keep only the unfinished frame
            FBytes.erase(FBytes.begin(), FBytes.begin() + static_cast<long>(FRead));
            FRead = 0;
        }
        return 0;
    }
    FRead += static_cast<size_t>(used);
    return 1;
}

} // namespace zv
