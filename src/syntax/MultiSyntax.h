// The multi-syntax files "HtmlMulti.ini" and "ASPXMulti.ini": which ".syx" file colours each
// embedded language of an HTML or ASPX document.
#pragma once

#include "ZvMemoControl/StyleTypes.h"

#include <filesystem>
#include <string>
#include <vector>

namespace zv {

struct TEmbeddedSyntax {
    TScriptType Type;
    std::u16string File; // file name of the ".syx", as written
};

// Entries of "HtmlMulti.ini" keys "1".."8" in key order, without empty values; key "1" is
// `aspHighlighter` when that is not empty. A missing file gives only that one entry.
std::vector<TEmbeddedSyntax> ReadHtmlMulti(const std::filesystem::path& iniFile,
                                           std::u16string_view aspHighlighter);

// Entries of "ASPXMulti.ini": "CodeLang1" for both the ASP and the JS slot, "CodeLang2" for
// VB, "1" for CSS.
std::vector<TEmbeddedSyntax> ReadAspxMulti(const std::filesystem::path& iniFile);

} // namespace zv
