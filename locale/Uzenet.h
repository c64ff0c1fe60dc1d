#pragma once

#include "platform/Database.h"
#include "platform/Messages.h"
#include "store/Written.h"

#include <QString>

class QWidget;

// The text of a message code in the session's language: uzen1, uzen2 or uzen3 of its row in
// uzenetek, the code matched without regard to letter case. Any other language gives an empty
// text; a code with no row gives the code itself, so the user still sees what was meant.
QString uzenetszoveg(const QString& code);

// Shows the message of a code in a box of the given kind and returns the answer. The exit
// question "kilep" carries the title "EXIT".
int uzenet(const QString& code, int style = platform::Notice, QWidget* parent = nullptr);

// Tells the user in the session's language what an engine failure means for him (another
// workstation holds the file, the file is read-only or damaged, the change was refused) and
// writes the engine's own text to hiba.txt with the module and place. Returns the code shown.
QString engineFailure(platform::Failure failure, const QString& engineText, const QString& module,
                      const QString& place, QWidget* parent = nullptr);

// Tells the user why a write did not store its row (nothing when it did). Returns true when
// the row was stored.
bool reportWrite(const store::Written& written, const QString& module, const QString& place,
                 QWidget* parent = nullptr);
