#pragma once

namespace platform {
class Database;
}

namespace store {

// Brings an older data file to the current layout. Each step first looks whether its change
// is there already, and every failure is passed over, so running it at every start, on every
// workstation, is harmless.
void adatfrissites(platform::Database& db);

// Gives every client name written without its sort key (by another tool, or an older version)
// its key, so the client lists stay in order. Cheap when there is nothing to do.
void fillClientSortKeys(platform::Database& db);

} // namespace store
