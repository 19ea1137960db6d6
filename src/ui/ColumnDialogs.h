// The small dialogs of the column commands: a counter's start, step and base, and how
// delimited lines are aligned.
#pragma once

#include <QDialog>

#include <cstdint>
#include <string>

class QCheckBox;
class QLineEdit;
class QSpinBox;

namespace zv {

// Start, step, hex and whether blank rows count. Widgets are named "Start", "Step", "Hex"
// and "EveryLine" so that a test can fill them.
class TNumbersDialog : public QDialog {
public:
    // `everyLine`: the check box's first state.
    TNumbersDialog(QWidget* parent, bool everyLine);
    std::int64_t Start() const;
    std::int64_t Step() const;
    bool Hex() const;
    bool EveryLine() const;

private:
    QSpinBox* FStart;
    QSpinBox* FStep;
    QCheckBox* FHex;
    QCheckBox* FEveryLine;
};

// The separator and the two padding choices; widgets "Separator", "Tabs", "RemoveSeparators".
class TAlignDialog : public QDialog {
public:
    explicit TAlignDialog(QWidget* parent);
    std::u16string Separator() const;
    bool Tabs() const;
    bool RemoveSeparators() const;

private:
    QLineEdit* FSeparator;
    QCheckBox* FTabs;
    QCheckBox* FRemove;
};

} // namespace zv
