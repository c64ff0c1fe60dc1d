#pragma once

#include "platform/Database.h"

#include <QString>

namespace store {

// The layout a new data file gets: today's, or the one an older version of the program left
// (for trying the start-up upgrade).
enum class Layout { Current, Old };

// Creates a new data folder: causora.mdb with every table, the parameters row, the languages,
// the caption and message catalogue, the countries and postal codes, and the account file
// caujog.mdw. With demo set it also adds believable sample clients, cases and partners.
// An existing data file is never overwritten.
bool prepareDataFolder(const QString& folder, bool demo, QString* error,
                       Layout layout = Layout::Current);

// The pieces, for tools that build larger data sets.
bool fillCatalogue(platform::Database& db, QString* error);
// A message of the catalogue the program carries, for the moments the data file cannot be read.
QString catalogueMessage(const QString& code, int language);
// Adds the messages of the catalogue that an older data file does not have yet.
void addMissingMessages(platform::Database& db);
// Adds the caption row of every screen the file has none for (screens newer than the file).
void addMissingCaptions(platform::Database& db);
bool fillPostalCodes(platform::Database& db, QString* error);
bool fillDemoData(platform::Database& db, QString* error);
// Takes a new data file back to the older layout: no sub-numbers, notes, default lawyers or
// labels 31 to 39, start and end dates in DATE columns as ISO dates, without the newer indexes,
// triggers, captions and the bad-data message.
bool makeOldLayout(platform::Database& db, QString* error);

} // namespace store
