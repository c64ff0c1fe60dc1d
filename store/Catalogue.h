#pragma once

#include "platform/Database.h"

#include <QString>

namespace store {

// The texts the program shows, as the register holds them: the messages (uzenetek) and the
// screen captions (felirat). The one thing about the open database that messages and captions
// need; the session hands it to them.
class Catalogue
{
public:
    explicit Catalogue(platform::Database& db) : m_db(db) { }

    // uzen1, uzen2 or uzen3 of the code's row, the code matched without regard to letter case.
    // A code with no row gives the code itself, so the user still sees what was meant; a
    // language outside 1..3 gives an empty text. While the file cannot be read the program's
    // own copy of the catalogue answers.
    QString message(const QString& code, int language) const;

    // The caption row of a screen (felirkod matched without regard to letter case); an empty
    // row when there is none or the file cannot be read.
    platform::Row captions(const QString& key) const;

private:
    platform::Database& m_db;
};

} // namespace store
