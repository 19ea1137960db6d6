// Clipboard reads and writes through the application's QClipboard.
#include "ui/QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace zv {

bool TQtClipboard::SetText(std::u16string_view text, bool wholeLine) {
    QClipboard* clipboard = QGuiApplication::clipboard();
    if (!clipboard)
        return false;
    auto* data = new QMimeData;
    data->setText(QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size())));
    if (wholeLine)
        data->setData(kWholeLineMime, QByteArray("1"));
    clipboard->setMimeData(data);
    return true;
}

bool TQtClipboard::GetText(std::u16string& text, bool& wholeLine) {
    QClipboard* clipboard = QGuiApplication::clipboard();
    const QMimeData* data = clipboard ? clipboard->mimeData() : nullptr;
    if (!data || !data->hasText())
        return false;
    const QString s = data->text();
    text.assign(reinterpret_cast<const char16_t*>(s.utf16()), static_cast<std::size_t>(s.size()));
    wholeLine = data->hasFormat(kWholeLineMime);
    return true;
}

} // namespace zv
