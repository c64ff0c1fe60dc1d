#pragma once

#include "platform/Database.h"

#include <QString>

namespace store {

// The register's files are guarded twice, as the engine guards them. The account file holds
// the accounts that may open the data file, each with a salted SHA-256 hash of its password;
// the data file holds a hash of its own password, which the connect text ("pwd=...") must
// carry. Each file bears a mark of its own that tells it from any other SQLite file.

// Opens the data file into db as the engine does: the account must be in the account file with
// that password, and the connect text must carry the data file's password. A file or folder
// that may not be written is opened for reading only. On failure the engine's text is
// returned, db.lastFailure() tells its kind, and nothing is written to either file.
bool openDataFile(platform::Database& db, const QString& dataFile, const QString& accountFile,
                  const QString& account, const QString& accountPassword, const QString& connect,
                  QString* error);

// Writes a new account file holding one account; used when a data folder is prepared.
bool createAccountFile(const QString& path, const QString& account, const QString& password,
                       QString* error);
// Marks an open data file as the register's, with its own password.
bool setDatabasePassword(platform::Database& db, const QString& password, QString* error);

// The engine's texts for refused credentials.
QString accountOrPasswordError();
QString databasePasswordError();

} // namespace store
