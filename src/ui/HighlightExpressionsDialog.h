// The dialog that adds and removes a view's highlight expressions: texts or regular
// expressions painted in colours of their own.
#pragma once

#include "ZvMemoControl/HighlightLists.h"

#include <QDialog>

#include <functional>

class QCheckBox;
class QLineEdit;
class QListWidget;

namespace zv {

class THighlightExpressionsDialog : public QDialog {
public:
    // Edits the expressions of `lists`, which must outlive the dialog; `changed` runs after
    // each change (the view repaints).
    THighlightExpressionsDialog(QWidget* parent, THighlightLists& lists,
                                std::function<void()> changed);

private:
    void Fill();
    void AddClick();
    void RemoveClick();

    THighlightLists& FLists;
    std::function<void()> FChanged;
    QListWidget* FList;
    QLineEdit* FText;
    QCheckBox *FCase, *FWord, *FRegEx;
    QLineEdit *FBack, *FFore; // colours as "#rrggbb"
};

} // namespace zv
