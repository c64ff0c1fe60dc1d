#pragma once

#include "platform/Messages.h"

#include <QString>

class QWidget;

// The text of a message code in the session's language: uzen1, uzen2 or uzen3 of its row in
// uzenetek, the code matched without regard to letter case. Any other language gives an empty
// text; a code with no row gives the code itself, so the user still sees what was meant.
QString uzenetszoveg(const QString& code);

// Shows the message of a code in a box of the given kind and returns the answer. The exit
// question "kilep" carries the title "EXIT".
int uzenet(const QString& code, int style = platform::Notice, QWidget* parent = nullptr);
