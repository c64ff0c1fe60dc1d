#pragma once

#include "platform/ListQuery.h"
#include "store/Written.h"

#include <QList>
#include <QStringList>
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

// The lists a case's values are chosen from: every client that has a name (keys and names side
// by side, in the Hungarian order of the name), and the lawyers, case types and countries.
struct CaseChoices
{
    QList<qlonglong> clientKeys;
    QStringList clientNames;
    QStringList lawyers;
    QStringList types;
    QStringList countries;
};

// The case register, ugyek: every read and write of a case goes through here, by its number.
class Cases
{
public:
    explicit Cases(platform::Database& db) : m_db(db) { }

    platform::Row find(const QString& ugyszam, QString* error = nullptr) const;
    // The case of that number with its client's name (unev1); empty when there is none.
    platform::Row findWithClient(const QString& ugyszam, QString* error = nullptr) const;
    // True when a case has the number, whatever its letter case (the table's key).
    bool exists(const QString& ugyszam, QString* error = nullptr) const;
    // A new case: Exists when the number is taken. The check and the insert run in one write
    // transaction, so two workstations cannot both store the same number.
    Written add(const QVariantMap& values);
    // Changes the case of that number; Gone when no such case is left.
    Written change(const QString& ugyszam, const QVariantMap& values);
    // Deletes the case of that number (its sub-numbers stay); Gone when it was not there.
    Written remove(const QString& ugyszam);

    bool choices(CaseChoices* lists, QString* error = nullptr) const;

    // Every case with its client, in the order of the number's value and then its text (letter
    // case ignored), and the same narrowed by the filters.
    static platform::ListQuery list();
    static platform::ListQuery list(const CaseFilter& filter);

private:
    platform::Database& m_db;
};

} // namespace store
