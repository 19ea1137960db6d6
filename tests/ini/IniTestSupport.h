// Helpers of the settings tests: a temporary folder, files, and outside tools.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "shell/ZvIniFiles.h"
#include "support/ZvTestSupport.h"

namespace zv::test {

using zvtest::FolderNames;
using zvtest::ReadAll;
using zvtest::TTempDir;
using zvtest::WriteAll;

// Runs a shell command line (outside tools such as iconv, cmp, diff); returns its exit code.
inline int Shell(const std::string& command) {
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

inline std::string Quote(const std::filesystem::path& path) {
    return "'" + path.string() + "'";
}

// Writers of a shared settings file: each writes its own keys "<writer>_<i>" = i.
inline constexpr int kWritesPerWriter = 40;

inline void WriteKeys(TCustomIniFile& ini, const std::string& writer) {
    for (int i = 0; i < kWritesPerWriter; ++i)
        ini.WriteInteger("Shared", writer + "_" + std::to_string(i), i);
}

// Every key of every writer is in the file with its value: no write was lost.
inline void ExpectAllKeys(const TCustomIniFile& ini, const std::vector<std::string>& writers) {
    EXPECT_EQ(ini.ReadSection("Shared").size(), writers.size() * kWritesPerWriter);
    for (const auto& writer : writers)
        for (int i = 0; i < kWritesPerWriter; ++i)
            ASSERT_EQ(ini.ReadInteger("Shared", writer + "_" + std::to_string(i), -1), i) << writer;
}

} // namespace zv::test
