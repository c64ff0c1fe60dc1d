#pragma once

namespace platform {
class Database;
}

namespace store {

// Brings an older data file to the current layout. Each step first looks whether its change
// is there already, and every failure is passed over, so running it at every start, on every
// workstation, is harmless.
void adatfrissites(platform::Database& db);

} // namespace store
