// Fuzz target of the settings files: arbitrary bytes read as a settings file must never
// crash, and what is written from them must read back to the same file (written twice, the
// bytes are equal) with every key giving the same value and every value parsing safely.
#include "shell/ZvIniFiles.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

void Check(bool condition) {
    if (!condition)
        std::abort();
}

void ExpectSameContent(const zv::TMemIniFileW& a, const zv::TMemIniFileW& b) {
    for (const auto& section : a.ReadSections())
        for (const auto& key : a.ReadSection(section)) {
            const std::u16string value = a.ReadString(section, key, u"\x1F<none>");
            Check(b.ReadString(section, key, u"\x1F<none>") == value);
            zv::ParseIniInteger(value);
            zv::ParseIniBool(value);
            zv::ParseIniDateTime(value);
        }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (zv::TIniEncoding encoding : {zv::TIniEncoding::Utf16LE, zv::TIniEncoding::Utf8}) {
        zv::TMemIniFileW first({}, encoding);
        first.LoadFromBytes(bytes);
        const std::string saved = first.SaveToBytes();
        zv::TMemIniFileW second({}, encoding);
        second.LoadFromBytes(saved);
        Check(second.SaveToBytes() == saved);
        if (encoding == zv::TIniEncoding::Utf16LE) // UTF-8 output replaces lone surrogates
            ExpectSameContent(first, second);
    }
    return 0;
}
