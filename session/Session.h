#pragma once

#include "platform/Database.h"
#include "session/Screens.h"

namespace store {
class Catalogue;
}

#include <QString>

// The state of the one running session: who is logged in, what he may do, which language he
// reads, and where messages and captions come from. The open database itself belongs to the
// program, which hands it to the screens that need it.
class Session
{
public:
    static Session& instance();

    QString userName;
    QString rights = QStringLiteral("00000000000000000000");
    qint16 language = 1;
    QString dateFormat = QStringLiteral("yyyy.mm.dd");
    QString defaultLawyer;
    QString dataFilePath;
    QString workgroupFilePath;
    // The messages and captions of the open register; none before it is open, and then the
    // program's own copy of the messages answers.
    const store::Catalogue* catalogue = nullptr;
    Screens screens;

    // The start-up open: opens into db the database named by jog.ini and takes the starting
    // values of the session (files, language, rights, default lawyer). False when the program
    // has to end; every message has been shown by then.
    bool start(platform::Database& db);

    // True when the character at position (counting from 1) of the rights string is "1".
    bool hasRight(int position) const;

    // Back to the values a session has before anything is opened (tests start from here).
    void reset();

private:
    Session() = default;
};
