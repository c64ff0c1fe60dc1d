#pragma once

#include <QString>

struct sqlite3;

namespace platform {

// Numeric value of the leading number of a text, 0 when there is none ("10/A" gives 10).
double leadingNumber(const QString& text);

// Registers the collation HU and the functions val() and "left"() on a native connection.
bool registerTextRules(sqlite3* handle, QString* error);

} // namespace platform
