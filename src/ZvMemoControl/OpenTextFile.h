// Opening a file as a document does: classify its head, choose the code page (detect when
// asked), read the encoding its own XML/HTML tag declares, then load.
#pragma once

#include "ZvMemoControl/FileType.h"

#include <cstdint>
#include <string>

namespace zv {

class TZvMemoStrings;

// Loads `fileName` into `store`. `codePage` 50001 means: decide as when opening a document.
// Returns false with `error` set for a missing, encrypted or unreadable file, or a code page
// this system lacks. `type` receives the classification.
bool OpenTextFile(TZvMemoStrings& store, const std::string& fileName, std::uint32_t codePage,
                  TFileType& type, std::string& error, const TFileTypeOptions& options = {});

// "windows", "unix", "mac", "mixed-windows", "mixed-unix", "mixed-mac".
const char* SysTextTypeName(int kind);

} // namespace zv
