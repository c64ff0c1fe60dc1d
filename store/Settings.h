#pragma once

#include <QString>

namespace store {

// Finds the data folder in the text of jog.ini: everything between the first "path=" and the
// first line end after it, less one trailing double quote. False when there is no such entry.
bool dataFolderFromSettings(const QString& text, QString* folder);

// The line the data-location screen writes: a quoted record and CR LF.
QString settingsLine(const QString& folder);

// The user's own folder for jog.ini, $XDG_CONFIG_HOME/causora (normally ~/.config/causora).
QString userSettingsFolder();

// Where jog.ini is read and written. Beside the program, as always, while the program's folder
// may be written. A program installed for the whole machine sits in a folder its users may not
// write: then each user's own jog.ini in userFolder holds the data folder; a jog.ini that the
// administrator left beside such a program still serves a user until he has his own.
QString settingsPath(const QString& programFolder, const QString& userFolder);

} // namespace store
