#include "platform/Clipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace platform {

QString clipboardText()
{
    const QClipboard* clipboard = QGuiApplication::clipboard();
    return clipboard ? clipboard->text() : QString();
}

void setClipboardText(const QString& text)
{
    QClipboard* clipboard = QGuiApplication::clipboard();
    if (!clipboard)
        return;
    clipboard->clear();
    clipboard->setText(text);
}

} // namespace platform
