// What one editor control needs from the platform, handed to it in one piece. Any member may
// be null: the control then uses its built-in stand-in (fixed-width measuring, a clipboard in
// memory, no timers, no messages) so that it works headless and in tests.
#pragma once

#include "platform/Clipboard.h"
#include "platform/Prompt.h"
#include "platform/TextBreaks.h"
#include "platform/TextMeasure.h"
#include "platform/Timer.h"

#include <functional>
#include <string>

namespace zv {

// The text of a language-file entry, by section, key and English fallback.
using TTextLookup = std::function<std::string(const std::string& section, const std::string& key,
                                              const std::string& fallback)>;

struct TEditorServices {
    ITextMeasure* Measure = nullptr;
    IClipboard* Clipboard = nullptr;
    ITimerFactory* Timers = nullptr;
    IPrompt* Prompt = nullptr; // messages; null: messages go nowhere
    TTextLookup Text;          // null: the English fallback
};

} // namespace zv
