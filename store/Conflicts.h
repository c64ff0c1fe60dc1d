#pragma once

#include "platform/ListQuery.h"
#include "store/NameMatch.h"

#include <QList>
#include <QVariantMap>

namespace store {

// A record whose name matches a name being checked: a client (key ukod), a partner (pkod) or
// a case (ugyszam, matched by its opponent's name).
struct ConflictMatch
{
    enum Kind { Client = 1, Partner = 2, Case = 3 };
    Kind kind = Client;
    QVariant key;
    QString name;
};

// The conflict-of-interest check: the names of clients, partners and cases' opponents (and the
// opponents' lawyers) are compared by their match key (NameMatch), stored beside each name
// under an index and written with the name, so one check is a few index look-ups.
class Conflicts
{
public:
    explicit Conflicts(const platform::Database& db) : m_db(db) { }

    // The clients, partners and cases (other than the case numbered exceptCase) whose name or
    // opponent matches the name. Empty for a name that has no key.
    QList<ConflictMatch> matches(const QString& name, const QString& exceptCase = QString(),
                                 QString* error = nullptr) const;
    // The cases whose opponent matches a client's name.
    QList<ConflictMatch> casesAgainst(const QString& clientName, QString* error = nullptr) const;

    // Every conflict in the register, one row per case field and matching record: ugyszam,
    // mezonev (the opponent or the opponent's lawyer), nev (the name on the case), rekord (the
    // kind of record and its key: "ügyfél 12", "ügy 10/A"), egyezonev (the record's name), and
    // mezo, fajta (ConflictMatch::Kind) and kod as numbers and keys; in the order of the case
    // list, words in the language (1 Hungarian, 2 German, 3 English). A client matching a
    // case's opponent is the row of that case.
    static platform::ListQuery list(int language = 1);

    // The legal-form words as the catalogue holds them, and the key made with them.
    static const NameMatch& nameMatch();
    static QVariant key(const QString& name);

private:
    const platform::Database& m_db;
};

// Adds the match key of the name to values when they hold the name, so the key is written in
// the same write as the name.
void addNameKey(QVariantMap& values, const QString& nameColumn, const QString& keyColumn);

// The match-key columns of the clients, partners and cases with their indexes, made where an
// older file lacks them, and keys for names written without one (by another tool, or before
// the key existed). Cheap when there is nothing to do.
void updateNameKeys(platform::Database& db);

// The index statements of the match keys, as a new file has them.
QStringList nameKeyIndexes();

} // namespace store
