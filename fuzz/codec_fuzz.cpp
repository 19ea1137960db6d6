// Fuzz target of the text codec. The first byte picks how the rest is read (detected, a
// fixed code page, binary); loading must never crash, and in every code page that has one
// form per character (UTF-8, UTF-16, single-byte pages, binary) any bytes at all, valid or
// not, must save back unchanged.
#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr std::uint32_t kPages[] = {50001, 65001, 1200,  1201,  1252, 932,   936,   949,
                                    950,   50220, 52936, 65000, 437,  20866, 54936, 0};

[[noreturn]] void Fail(const char* what) {
    std::fprintf(stderr, "codec_fuzz: %s\n", what);
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const std::uint8_t selector = data[0];
    const std::string bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    zv::TZvMemoStrings store;
    store.Memo().FForcewrapLength = 16 + selector % 64; // small rows: many cuts
    const std::uint32_t cp = kPages[selector % (sizeof kPages / sizeof kPages[0])];
    store.Memo().FBinaryMode = cp == 0;
    store.Memo().FDetectAll = selector & 0x80;
    store.SetCodePage(cp == 0 ? 1252 : cp);
    store.FSaveCodePage = cp != 50001;
    if (!store.LoadFromBytes(bytes))
        return 0;
    const std::string saved = store.SaveToBytes();
    // Every row view must lie within its text; touching them all catches a bad one.
    std::size_t units = 0;
    for (int row = 0; row < store.Count(); ++row)
        units += store.Get(row).size();
    if (units > bytes.size() * 2 + 8 && cp != 0)
        Fail("more text than bytes");
    const std::uint32_t used = store.CodePage();
    const bool exact = cp == 0 || used == 65001 || used == 1200 || used == 1201 || used == 1252 ||
                       used == 437 || used == 20866;
    if (exact && saved != bytes)
        Fail("load then save changed the bytes");
    return 0;
}
