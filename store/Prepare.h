#pragma once

#include "platform/Database.h"

#include <QString>

namespace store {

// Creates a new data folder: causora.mdb with every table, the parameters row, the languages,
// the caption and message catalogue, the countries and postal codes, and the account file
// caujog.mdw. With demo set it also adds believable sample clients, cases and partners.
// An existing data file is never overwritten.
bool prepareDataFolder(const QString& folder, bool demo, QString* error);

// The pieces, for tools that build larger data sets.
bool fillCatalogue(platform::Database& db, QString* error);
bool fillPostalCodes(platform::Database& db, QString* error);
bool fillDemoData(platform::Database& db, QString* error);

} // namespace store
