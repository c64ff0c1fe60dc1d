#pragma once

struct Screens;
namespace platform {
class Database;
}

namespace search {

// Plugs the search screen into the program: screens.showSearch opens it in clients ("1") or
// cases ("2") mode. There is one search screen; opening it again reuses it. Opening it while
// it is closed loads it, which closes the client and case screens (keres::Load).
void install(Screens& screens, platform::Database& db);

// Plugs the conflict list in: screens.showConflicts opens it, or brings the open one to the
// front and reads it again. There is one conflict list.
void installConflicts(Screens& screens, platform::Database& db);

} // namespace search
