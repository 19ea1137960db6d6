// zvtool info FILE: what opening the file finds: size, rows, code page, BOM, line ends.
#include "zvtool/CommandRegistry.h"

#include "ZvMemoControl/CodePages.h"
#include "ZvMemoControl/OpenTextFile.h"
#include "ZvMemoControl/ZvMemoStrings.h"

#include <cstdio>
#include <filesystem>

namespace zv::tool {
namespace {

int RunInfo(const std::vector<std::string>& args) {
    if (args.size() != 1) {
        std::fprintf(stderr, "usage: zvtool info FILE\n");
        return 2;
    }
    TZvMemoStrings store;
    TFileType type;
    std::string error;
    if (!OpenTextFile(store, args[0], cpAutoDetect, type, error)) {
        std::fprintf(stderr, "zvtool info: %s\n", error.c_str());
        return 1;
    }
    const auto size = store.CurrentStreamPos(); // the bytes read: files of /proc tell none
    int lines = 0;
    for (int row = 0; row < store.Count(); ++row)
        lines += store.IsLineWrapped(row) ? 0 : 1;
    std::printf("file: %s\n", args[0].c_str());
    std::printf("size: %llu\n", static_cast<unsigned long long>(size));
    std::printf("rows: %d\n", store.Count());
    std::printf("lines: %d\n", lines);
    std::printf("invalid-bytes: %lld\n", static_cast<long long>(store.InvalidBytesKept()));
    std::printf("codepage: %u\n", store.CodePage());
    std::printf("encoding: %s\n", CodePageName(store.CodePage()).c_str());
    std::printf("bom: %s\n", store.UseBOM() ? "yes" : "no");
    std::printf("line-ends: %s\n", SysTextTypeName(store.SysTextType()));
    const auto counts = store.LineEndCounts();
    std::printf("crlf: %lld\nlf: %lld\ncr: %lld\n", static_cast<long long>(counts.CrLf),
                static_cast<long long>(counts.Lf), static_cast<long long>(counts.Cr));
    std::printf("binary: %s\n", store.Memo().FBinaryMode ? "yes" : "no");
    std::printf("force-wrap: %s\n", store.Memo().FForceWrap ? "yes" : "no");
    return 0;
}

const Registration kInfo({"info", "info FILE",
                          "size, rows, code page, BOM and line-end kind found when opening",
                          RunInfo});

} // namespace
} // namespace zv::tool
