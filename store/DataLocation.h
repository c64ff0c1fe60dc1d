#pragma once

#include "platform/Database.h"
#include "store/Settings.h"

#include <QString>

namespace store {

// What a start gives the session: where its files are, the language it starts in, the rights
// before anybody logs in, and the lawyer a new case gets when the office has only one.
struct StartValues
{
    QString dataFilePath;
    QString workgroupFilePath;
    qint16 language = 1;
    QString rights = QStringLiteral("00000000000000000000");
    QString defaultLawyer;
};

// The jog.ini of this program and user (see settingsPath).
QString settingsFile();

// Opens the data file named by jog.ini into db, upgrades the layout and reads the starting
// values into start, as far as the start got. Returns false when the program has to end; every
// message has been shown (and the data-location screen offered where it helps) and db closed by
// then.
bool adatmegnyitas(platform::Database& db, StartValues* start);

} // namespace store
