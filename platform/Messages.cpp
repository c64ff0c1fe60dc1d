#include "platform/Messages.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

namespace platform {

namespace {
MessageHandler& handlerSlot()
{
    static MessageHandler handler;
    return handler;
}
} // namespace

void setMessageHandler(MessageHandler handler)
{
    handlerSlot() = std::move(handler);
}

int messageBox(const QString& text, int style, const QString& title, QWidget* parent)
{
    const ShownMessage shown{text, style, title};
    if (handlerSlot())
        return handlerSlot()(shown);

    const int buttons = style & 0x0F; // 0 OK, 4 Yes/No
    const int icon = style & 0x70; // 16 stop, 32 question, 48 exclamation, 64 information
    const bool secondDefault = (style & 0x300) == 0x100;

    QMessageBox box(parent ? parent : QApplication::activeWindow());
    box.setText(text);
    // Confirmations and error notices carry an empty title unless one is given; the others
    // show the application's name.
    const bool emptyTitle = style == Confirmation || style == ErrorNotice;
    box.setWindowTitle(!title.isEmpty() ? title
                       : emptyTitle     ? QStringLiteral(" ")
                                        : QApplication::applicationName());
    switch (icon) {
    case 16:
        box.setIcon(QMessageBox::Critical);
        break;
    case 32:
        box.setIcon(QMessageBox::Question);
        break;
    case 48:
        box.setIcon(QMessageBox::Warning);
        break;
    case 64:
        box.setIcon(QMessageBox::Information);
        break;
    default:
        box.setIcon(QMessageBox::NoIcon);
    }
    if (buttons == 4) {
        QPushButton* yes = box.addButton(QMessageBox::Yes);
        QPushButton* no = box.addButton(QMessageBox::No);
        box.setDefaultButton(secondDefault ? no : yes);
        box.setEscapeButton(no);
        box.exec();
        return box.clickedButton() == yes ? AnswerYes : AnswerNo;
    }
    box.addButton(QMessageBox::Ok);
    box.exec();
    return AnswerOk;
}

} // namespace platform
