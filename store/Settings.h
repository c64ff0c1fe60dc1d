#pragma once

#include <QString>

namespace store {

// Finds the data folder in the text of jog.ini: everything between the first "path=" and the
// first line end after it, less one trailing double quote. False when there is no such entry.
bool dataFolderFromSettings(const QString& text, QString* folder);

// The line the data-location screen writes: a quoted record and CR LF.
QString settingsLine(const QString& folder);

} // namespace store
