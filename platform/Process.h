#pragma once

#include <QString>
#include <QStringList>

namespace platform {

// Starts a program without waiting for it; the program is looked up on PATH when its name has
// no folder. Each argument reaches the program as one argument, blanks and quotes included.
// Returns false with the reason when the program cannot be started.
bool startDetached(const QString& program, const QStringList& arguments, QString* error);

} // namespace platform
