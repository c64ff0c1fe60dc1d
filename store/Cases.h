#pragma once

#include "platform/ListQuery.h"
#include "store/Written.h"

#include <QVariantMap>

namespace store {

// The filters of the case list; an empty one does not narrow the list. The date is the
// beginning of the start date: a year, a month or a whole day.
struct CaseFilter
{
    QString number;
    QString client;
    QString type;
    QString opponent;
    QString date;
};

// The case register, ugyek: every read and write of a case goes through here, by its number.
class Cases
{
public:
    explicit Cases(platform::Database& db) : m_db(db) { }

    platform::Row find(const QString& ugyszam, QString* error = nullptr) const;
    // A new case: Exists when the number is taken. The check and the insert run in one write
    // transaction, so two workstations cannot both store the same number.
    Written add(const QVariantMap& values);
    // Changes the case of that number; Gone when no such case is left.
    Written change(const QString& ugyszam, const QVariantMap& values);
    // Deletes the case of that number (its sub-numbers stay); Gone when it was not there.
    Written remove(const QString& ugyszam);

    // Every case with its client, in the order of the number's value and then its text (letter
    // case ignored), and the same narrowed by the filters.
    static platform::ListQuery list();
    static platform::ListQuery list(const CaseFilter& filter);

private:
    platform::Database& m_db;
};

} // namespace store
