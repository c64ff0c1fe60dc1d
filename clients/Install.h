#pragma once

#include "clients/Ugyfelek.h"
#include "session/Session.h"

class QWidget;

namespace clients {

// Plugs the client screen into the search screen's hand-offs: showClient opens the chosen
// client on the search screen's list, newClient opens the screen for a new client. Either
// replaces a client screen that is still loaded; clientGivesWay, asked first, answers for an
// entry in progress on it ("ments"). Closing shows the search screen again.
void install(Screens& screens, platform::Database& db);

// The case screen's way to record a client it does not know yet. Shows the client screen in
// mode "3" (reusing one that an earlier save left hidden) with the typed name in nev1. On
// save the case screen is shown again, the client screen is hidden, and saved(ukod, nev1) is
// called: the case screen writes them into ugyfelkod and ugyfelnev and puts the focus into
// ugytipus. Closing without saving shows the case screen again. The case screen hides itself
// before calling, if it wants to.
Ugyfelek* newClientForCase(platform::Database& db, QWidget* caseScreen, const QString& typedName,
                           Ugyfelek::ClientSaved saved);

} // namespace clients
