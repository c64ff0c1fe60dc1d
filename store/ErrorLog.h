#pragma once

#include <QString>

namespace store {

// Appends one line about a failure to hiba.txt in the program's folder:
// "Dátum: <date> ** Modul: <module> ** Helye: <place> ** Hiba: <error>" and CR LF.
// A log that cannot be written is passed over in silence: logging never adds a failure.
void hibanaplo(const QString& module, const QString& place, const QString& error);

} // namespace store
