#pragma once

#include <chrono>
#include <QByteArray>
#include <QString>

namespace platform {
class Database;
}

namespace comm {

// The Hayes dial command: "ATD", "T" for tone or "P" for pulse dialling, the modem's dial
// pause ",", the prefix and the number as stored, then a carriage return.
QByteArray dialCommand(bool tone, const QString& prefix, const QString& number);

// Dials a number through the modem named in parameterek (modemport, tonepulse, elotag) at
// 1200 baud 8N1, waits (blocking the screens) so that the modem can dial, tells the user to
// pick up the handset ("telefon"), then closes the port, which makes the modem hang up.
// Failures go to hiba.txt ("Telhivo", "telhivo") and nothing is shown for them.
// The wait is five seconds; tests shorten it.
void telefonhiv(platform::Database& db, const QString& number,
                std::chrono::milliseconds wait = std::chrono::milliseconds(5000));

} // namespace comm
