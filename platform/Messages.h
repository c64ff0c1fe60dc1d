#pragma once

#include <functional>
#include <QString>

class QWidget;

namespace platform {

// The four kinds of message box the program shows, by their style values.
enum MessageStyle : int {
    Notice = 0, // OK
    ErrorNotice = 16, // OK, stop sign
    Confirmation = 276, // Yes/No, stop sign, No the default
    RestoreQuestion = 52, // Yes/No, exclamation sign, Yes the default
};

// Answers, with the values the office's program has always used.
enum MessageAnswer : int { AnswerOk = 1, AnswerYes = 6, AnswerNo = 7 };

struct ShownMessage
{
    QString text;
    int style = Notice;
    QString title;
};

// Shows a modal message box of the given style (buttons + icon + default button) and returns
// the answer. An empty title gives the application's own title for the kinds that use it.
int messageBox(const QString& text, int style = Notice, const QString& title = QString(),
               QWidget* parent = nullptr);

// Tests replace the box: the handler sees each message and returns the scripted answer.
using MessageHandler = std::function<int(const ShownMessage&)>;
void setMessageHandler(MessageHandler handler);

} // namespace platform
