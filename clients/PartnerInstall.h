#pragma once

#include "session/Screens.h"

namespace platform {
class Database;
}

namespace clients {

// Plugs the partner screen into the main menu's hand-off showPartners. The screen exists once:
// a second call brings the open one to the front. Closing it shows the main menu again.
void installPartners(Screens& screens, platform::Database& db);

} // namespace clients
