#pragma once

#include "cases/Ugyek.h"
#include "session/Screens.h"

namespace platform {
class Database;
}

namespace cases {

// Plugs the case screen into the search screen's hand-offs: showCase opens the chosen case,
// newCase opens the screen for a new case. Either replaces a case screen that is still loaded;
// caseGivesWay, asked first, answers for an entry in progress on it ("ments"). Closing shows the
// search screen again. The screen's "+" buttons reach the lookup-list editor through
// Screens::addToLookupList, and a client name not yet on record reaches the client screen
// through newClient (the client screen's new client for the case screen).
void install(Screens& screens, platform::Database& db, CaseHandOffs::NewClient newClient = {});

} // namespace cases
