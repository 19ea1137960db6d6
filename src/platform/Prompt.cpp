// Headless answers for the modal question.
#include "platform/Prompt.h"

#include <cstdio>

namespace zv {

int THeadlessPrompt::Prompt(const std::string& caption, const std::string& text, unsigned,
                            int defaultAnswer) {
    FLog.push_back(caption + ": " + text);
    if (FEcho)
        std::fprintf(stderr, "zevrit: %s: %s [answered %d]\n", caption.c_str(), text.c_str(),
                     defaultAnswer);
    return defaultAnswer;
}

void THeadlessPrompt::ShowMessage(const std::string& text) {
    FLog.push_back(text);
    if (FEcho)
        std::fprintf(stderr, "zevrit: %s\n", text.c_str());
}

} // namespace zv
