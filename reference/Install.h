#pragma once

struct Screens;

namespace platform {
class Database;
}

namespace reference {

// Plugs the lookup-list editor and the postal-code register into the program:
// showLookupList opens the editor modally on a list ("1" countries, "2" case types,
// "3" lawyers); addToLookupList opens it for the case screen (not modal; "11", "12", "21",
// "31"), which is shown again on closing and given the entry added last; showPostalCodes
// opens the postal-code register modally. Each screen exists once: asked for again while the
// case screen's editor is open, that editor is brought to the front.
void install(Screens& screens, platform::Database& db);

} // namespace reference
