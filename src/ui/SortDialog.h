// The advanced sort dialog: up to four keys, each a column range with its own order and
// duplicate filters, and whole-line duplicate removal.
#pragma once

#include "ZvMemoControl/SuperSort.h"
#include "ui/SortKeySets.h"

#include <QDialog>

#include <array>
#include <vector>

class QCheckBox;
class QComboBox;
class QRadioButton;
class QSpinBox;

namespace zv {

class TSortDialog : public QDialog {
public:
    // `selectionStart`, `selectionEnd`: the 1-based columns the "..." buttons take (the
    // selection's start and end columns on their rows); 0 when there is no selection.
    TSortDialog(QWidget* parent, int selectionStart, int selectionEnd);

    // The enabled keys in key order (none when none is enabled).
    std::vector<TSortKey> Keys() const;
    bool RemoveDuplicates() const;

private:
    // The dialog's state as a key set, and back. Named sets live in the settings store: a
    // name picked in "KeySetName" loads its set, "SaveKeySet" stores the state under the
    // name typed there, "DeleteKeySet" forgets it.
    TSortKeySet State() const;
    void Apply(const TSortKeySet& set);
    void FillSetNames();
    QComboBox* FSetName = nullptr;

    // One key's widgets; object names "Key<n><part>" (n from 1) let a test fill them.
    struct TKeyRow {
        QCheckBox* Enabled;
        QSpinBox* Start;
        QSpinBox* End; // 0: to the line's end
        QCheckBox* Numeric;
        QCheckBox* IgnoreCase;
        QCheckBox* RemoveKeyDuplicates;
        QCheckBox* OnlyKeyDuplicates;
        QRadioButton* Ascending;
        QRadioButton* Descending;
    };
    std::array<TKeyRow, 4> FKeys{};
    QCheckBox* FRemoveDuplicates = nullptr;
};

} // namespace zv
