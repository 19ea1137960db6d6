// The system clipboard through QClipboard: plain text with LF line ends, and the whole-line
// mark in a private MIME type.
#pragma once

#include "platform/Clipboard.h"

namespace zv {

// The private MIME type that says the text is one whole line.
inline constexpr const char* kWholeLineMime = "application/x-zevrit-whole-line";

class TQtClipboard : public IClipboard {
public:
    bool SetText(std::u16string_view text, bool wholeLine) override;
    bool GetText(std::u16string& text, bool& wholeLine) override;
};

} // namespace zv
