#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

struct sqlite3;

namespace platform {

// Numeric value of the leading number of a text, 0 when there is none ("10/A" gives 10).
double leadingNumber(const QString& text);

// The Hungarian sort key of a text: comparing two keys byte by byte gives the order of the
// collation HU. Lists store it beside the name so that an ordinary index serves the order.
QByteArray huSortKey(QStringView text);

// Compares two UTF-8 texts as the collation HU does (Hungarian order, letter case ignored,
// accents kept): negative, zero or positive.
int compareHu(QByteArrayView a, QByteArrayView b);

// compareHu() for two texts of ASCII characters alone, made from the collator's weights read
// once instead of through ICU. False when either text is empty or holds other characters, or
// the weights could not be read.
bool compareHuAscii(QByteArrayView a, QByteArrayView b, int* result);

// Registers the collation HU and the functions val(), "left"() and hukulcs() (the sort key)
// on a native connection.
bool registerTextRules(sqlite3* handle, QString* error);

} // namespace platform
