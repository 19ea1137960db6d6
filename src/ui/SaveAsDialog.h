// The save dialog: a file name, and the form the file takes (encoding, byte order mark and
// line ends), preset to the document's own.
#pragma once

#include "shell/MainFormHelper.h"

#include <QFileDialog>

class QCheckBox;
class QComboBox;

namespace zv {

class TSaveAsDialog : public QFileDialog {
    Q_OBJECT
public:
    TSaveAsDialog(QWidget* parent, const TDocument& doc, const QString& caption);
    // What was chosen; an empty name when the dialog was cancelled or not yet accepted.
    TSaveAsChoice Choice() const;

    QComboBox* EncodingBox() const { return FEncoding; }
    QCheckBox* BomBox() const { return FBom; }
    QComboBox* LineEndsBox() const { return FLineEnds; }

private:
    void AddRow(const QString& label, QWidget* field);

    QComboBox* FEncoding;
    QCheckBox* FBom;
    QComboBox* FLineEnds;
};

} // namespace zv
