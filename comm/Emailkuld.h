#pragma once

#include <QString>

namespace comm {

// Hands an e-mail address to the desktop's mail handler (xdg-open) as one argument,
// "mailto:" followed by the address exactly as stored, and does not wait for it. A handler
// that cannot be started goes to hiba.txt ("Emailkuldo", "Emailkuld"); nothing is shown.
void Emailkuld(const QString& address);

} // namespace comm
