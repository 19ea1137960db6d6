// Helpers shared by the line-store and codec tests: temporary folders and whole files (from
// the common support), running an outside program, random text from a code page's repertoire.
#pragma once

#include "ZvMemoControl/Converter.h"
#include "support/ZvTestSupport.h"

#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace zv::test {

using zvtest::ReadAll;
using zvtest::TTempDir;
using zvtest::WriteAll;

using zvtest::RunOutput;

inline bool HaveProgram(const std::string& name) {
    int status = 0;
    RunOutput("command -v " + name + " >/dev/null 2>&1", status);
    return status == 0;
}

// Characters that survive a trip through the code page (encode, decode) unchanged, drawn
// from ASCII, Latin, Greek, Cyrillic, Hebrew, Arabic, Thai, CJK and a few astral ones. Line
// ends, U+2028/2029 and U+FEFF are left out: they are not row text.
inline std::vector<std::u16string> Repertoire(std::uint32_t codePage) {
    std::vector<char32_t> candidates;
    for (char32_t c = 0x20; c < 0x7F; ++c)
        candidates.push_back(c);
    candidates.push_back(0x09);
    for (char32_t c = 0xA0; c < 0x250; c += 3)
        candidates.push_back(c);
    for (char32_t c = 0x391; c < 0x3CA; c += 2)
        candidates.push_back(c);
    for (char32_t c = 0x410; c < 0x450; c += 2)
        candidates.push_back(c);
    for (char32_t c :
         {0x5D0,  0x5D1,  0x5E9,  0x627,  0x628,  0x645,  0xE01,   0xE02,  0xE2A,  0x2013,
          0x20AC, 0x2122, 0x3001, 0x3042, 0x304B, 0x30A2, 0x30AB,  0x4E00, 0x4E2D, 0x56FD,
          0x65E5, 0x672C, 0x8A9E, 0xAC00, 0xD55C, 0xFF01, 0x1F600, 0x20000})
        candidates.push_back(c);
    std::vector<std::u16string> out;
    for (char32_t c : candidates) {
        std::u16string s;
        if (c > 0xFFFF) {
            s.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
            s.push_back(static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF)));
        } else {
            s.push_back(static_cast<char16_t>(c));
        }
        try {
            TZvEncoder encoder(codePage);
            std::string bytes;
            encoder.Encode(s, true, bytes);
            if (!encoder.Lossy() && BytesToUnicode(codePage, bytes) == s)
                out.push_back(s);
        } catch (const TCodePageError&) {
            return {};
        }
    }
    return out;
}

// Random rows from a repertoire.
inline std::vector<std::u16string> RandomRows(const std::vector<std::u16string>& repertoire,
                                              std::mt19937& rng, int rows, int maxLength) {
    std::vector<std::u16string> out(static_cast<std::size_t>(rows));
    for (auto& row : out) {
        const int length = static_cast<int>(rng() % static_cast<unsigned>(maxLength + 1));
        for (int i = 0; i < length; ++i)
            row += repertoire[rng() % repertoire.size()];
    }
    return out;
}

} // namespace zv::test
