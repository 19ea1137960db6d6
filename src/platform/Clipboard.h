// The system clipboard as the editor control uses it: Unicode text with LF line ends, and a
// mark that says the text is one whole line (pasted above the caret's row, not at it).
#pragma once

#include <string>
#include <string_view>

namespace zv {

class IClipboard {
public:
    virtual ~IClipboard() = default;
    // Puts `text` (LF line ends) on the clipboard; false when the clipboard can't be opened.
    virtual bool SetText(std::u16string_view text, bool wholeLine) = 0;
    // Reads the clipboard's text; false when it holds none or can't be opened.
    // `wholeLine` tells whether the whole-line mark came with it.
    virtual bool GetText(std::u16string& text, bool& wholeLine) = 0;
};

// A clipboard in memory: for tests and runs without a display.
class TMemoryClipboard : public IClipboard {
public:
    bool SetText(std::u16string_view text, bool wholeLine) override {
        FText.assign(text);
        FWholeLine = wholeLine;
        FHasText = true;
        return true;
    }
    bool GetText(std::u16string& text, bool& wholeLine) override {
        text = FText;
        wholeLine = FWholeLine;
        return FHasText;
    }

private:
    std::u16string FText;
    bool FWholeLine = false;
    bool FHasText = false;
};

} // namespace zv
