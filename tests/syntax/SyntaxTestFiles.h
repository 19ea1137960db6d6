// Helpers of the syntax tests: a temporary data root and files written into it.
#pragma once

#include "common/Utf.h"
#include "support/ZvTestSupport.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace zv::test {

// The temporary folder of one test (one at a time per test program).
class TTempDir : public zvtest::TTempDir {
public:
    TTempDir() : zvtest::TTempDir("zvsyntax") {}
};

inline std::filesystem::path WriteFile(const std::filesystem::path& file, std::string_view bytes) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));
    return file;
}

inline std::u16string U16(const std::filesystem::path& p) {
    return Utf8ToUtf16(p.string());
}

// The source tree's shipped definition files.
inline std::filesystem::path ShippedSyntaxFolder() {
    return std::filesystem::path(ZV_SOURCE_DIR) / "data" / "Syntax";
}

} // namespace zv::test
