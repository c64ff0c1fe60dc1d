#pragma once

#include "platform/Database.h"

#include <functional>
#include <QString>
#include <QVariant>
#include <QVariantMap>

namespace store {

// What became of a write of one row.
struct Written
{
    enum Result {
        Stored,
        Gone, // the row is no longer there: another workstation deleted it
        Exists, // a new row's key is already used
        InUse, // other rows still name the row, so it stays
        Failed, // the engine refused or failed; failure and engineText tell why
    };
    Result result = Failed;
    platform::Failure failure = platform::Failure::None;
    QString engineText;
    QVariant key; // the key of a stored new row

    bool stored() const { return result == Stored; }
    static Written failed(const platform::Database& db, const QString& text)
    {
        return {Failed, db.lastFailure(), text, QVariant()};
    }
};

// A counter key typed as text (a client's ukod, a partner's pkod); none when it is not a number.
QVariant counterKey(const QString& text);

// Adds a row whose counter key the database gives; the stored key comes back in Written::key.
Written addRow(platform::Database& db, const QString& table, const QString& keyColumn,
               const QVariantMap& values);

// Changes the row of that key in one write transaction: Gone when no such row is left.
Written changeRow(platform::Database& db, const QString& table, const QString& keyColumn,
                  const QVariant& key, const QVariantMap& values);

// Deletes the row of that key in one write transaction. inUse, when given, looks inside the same
// transaction whether other rows still need the row (InUse then); Gone when it was not there.
Written removeRow(platform::Database& db, const QString& table, const QString& keyColumn,
                  const QVariant& key, const std::function<bool(QString* error)>& inUse = nullptr);

} // namespace store
