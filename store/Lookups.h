#pragma once

#include "store/Written.h"

#include <QStringList>

namespace store {

// The three lookup lists that feed the choice boxes: countries, case types and lawyers.
enum class LookupList { Countries, CaseTypes, Lawyers };

// One lookup list (orszagok, tipusok or ugyvedek): a table of one column that is also its key.
// Entries are compared with letter case and accents ignored, so "ügyvéd" and "UGYVED" are one
// entry. The file itself refuses to delete an entry other rows still name and carries a new name
// into those rows.
class Lookups
{
public:
    Lookups(platform::Database& db, LookupList list) : m_db(db), m_list(list) { }

    static QString table(LookupList list);
    static QString column(LookupList list);

    // Every entry in Hungarian order.
    QStringList names(QString* error = nullptr) const;
    // A new entry (blanks at either end dropped); Exists when the list holds it already. The
    // stored name is the result's key.
    Written add(const QString& name);
    // Renames an entry; the rows that use it follow. Exists when another entry has the new
    // name, Gone when the old one is no longer there. The stored name is the result's key.
    Written rename(const QString& from, const QString& to);
    // Deletes an entry: InUse while other rows name it, and also when it is the list's last
    // entry, which is never deleted (lastEntry then tells so). Gone when it was not there.
    Written remove(const QString& name, bool* lastEntry = nullptr);

    // The form in which two names are the same entry: letter case and accents ignored.
    static QString sameNameKey(const QString& name);

private:
    // The entry the list holds under the same name, other than except; empty when none.
    QString clash(const QString& name, const QString& except, QString* error) const;

    platform::Database& m_db;
    LookupList m_list;
};

} // namespace store
