// The one modal question and the plain message, as the engine and services ask them;
// the UI implements them with dialogs, headless runs with THeadlessPrompt.
#pragma once

#include <string>
#include <vector>

namespace zv {

// Answers of Prompt.
enum TPromptResult : int {
    prOk = 1,
    prCancel = 2,
    prYes = 6,
    prNo = 7,
    prYesNotAgain = 14, // yes, with the box for not asking again ticked
    prYesToAll = 20,    // yes, and the same for the rest of this round of questions
    prNoToAll = 21,     // no, and the same for the rest of this round of questions
    prAlways = 22,      // yes, and from now on without asking
};

// Buttons and look of a question.
enum TPromptFlags : unsigned {
    pfOk = 0,
    pfOkCancel = 1,
    pfYesNoCancel = 3,
    pfYesNo = 4,
    pfYesNoToAll = 5, // yes, no, yes to all, no to all
    pfButtonsMask = 0xF,
    pfWarning = 0x30,
    pfInformation = 0x40,
    pfNotAgainBox = 0x1000,  // offers "do not ask again"
    pfAlwaysButton = 0x2000, // adds "Always" (prAlways)
};

class IPrompt {
public:
    virtual ~IPrompt() = default;
    // Asks and returns one TPromptResult; defaultAnswer is what a headless run answers.
    virtual int Prompt(const std::string& caption, const std::string& text, unsigned flags,
                       int defaultAnswer) = 0;
    // Tells something that needs no answer.
    virtual void ShowMessage(const std::string& text) = 0;
};

// Headless: answers the default and writes each question and message to standard error,
// so scripted runs still see why something did not happen.
class THeadlessPrompt : public IPrompt {
public:
    explicit THeadlessPrompt(bool echo = true) : FEcho(echo) {}
    int Prompt(const std::string& caption, const std::string& text, unsigned flags,
               int defaultAnswer) override;
    void ShowMessage(const std::string& text) override;
    // What was asked or told, newest last (tests read it).
    const std::vector<std::string>& Log() const { return FLog; }

private:
    bool FEcho;
    std::vector<std::string> FLog;
};

} // namespace zv
