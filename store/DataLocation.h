#pragma once

#include "store/Settings.h"

namespace store {

// Opens the session's database from jog.ini, upgrades the layout and sets the session's
// starting values. Returns false when the program has to end; every message has been shown
// (and the data-location screen offered where it helps) by then.
bool adatmegnyitas();

} // namespace store
