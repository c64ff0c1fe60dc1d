#pragma once

#include "platform/Database.h"

#include <QString>

namespace store {

// The layout of causora.mdb, written in this one place: every table with its columns, keys and
// indexes, and the triggers that refuse deleting a lookup entry that rows still use.
// Only SQLite's own types and collations are used, so the sqlite3 tool reads the file.
QStringList schemaStatements();

// Creates every table of a new, empty database. Returns false with the engine's text.
bool createSchema(platform::Database& db, QString* error);

// Case lists are ordered by the numeric value of the case number, then by its text with letter
// case ignored (as the number's unique key compares it, so the order is total). The value is a
// generated column (SQLite's own CAST, so the sqlite3 tool still reads the file) with an index
// over both, so the whole list comes in order without sorting 200,000 rows each time.
QString caseNumberValueColumn();
QString caseOrderIndex();

// Client lists are in Hungarian order of the name. Each client row keeps the name's sort key
// (unev1kulcs, written with the name, filled at start-up where missing) under an index, for
// the same reason.
QString clientOrderIndex();

// The triggers that keep every case with its client: a client named by cases cannot be
// deleted, and a case cannot name a client that does not exist.
QStringList clientGuards();

// The caption table's text columns in table order: 1sz1 .. 1sz39, 1g1 .. 1g10, then 2.., 3...
QStringList captionColumns();

} // namespace store
