// The modal question and messages as Qt message boxes.
#pragma once

#include "platform/Prompt.h"

class QWidget;

namespace zv {

class TQtPrompt : public IPrompt {
public:
    explicit TQtPrompt(QWidget* parent = nullptr) : FParent(parent) {}
    void SetParent(QWidget* parent) { FParent = parent; }
    int Prompt(const std::string& caption, const std::string& text, unsigned flags,
               int defaultAnswer) override;
    void ShowMessage(const std::string& text) override;

private:
    QWidget* FParent;
};

} // namespace zv
