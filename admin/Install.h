#pragma once

#include "platform/Database.h"
#include "session/Screens.h"

namespace admin {

// Plugs the users editor and the parameters screen (modal over the main menu) and the backup
// and restore screens (shown without waiting, once each) into the main menu's hand-offs.
void install(Screens& screens, platform::Database& db);

} // namespace admin
