// What the first line of a file says about its language when its name says nothing: the
// interpreter of a "#!" line, the mode of an editor's mode line, or the line's opening text.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace zv {

// The first line of a file (at most its first 512 bytes, UTF-8 or Latin-1, byte order mark
// removed); empty when the file cannot be read.
std::u16string ReadFirstLine(const std::filesystem::path& file);

// The language a first line names, lower case, without version digits: the interpreter of
// "#!/usr/bin/env python3.11" ("python"), or the mode of "-*- mode: ruby -*-" or
// "vim: set ft=sh:" ("ruby", "sh"). Empty when it names none.
std::u16string FirstLineLanguage(std::u16string_view line);

} // namespace zv
