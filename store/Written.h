#pragma once

#include "platform/Database.h"

#include <QString>
#include <QVariant>

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

} // namespace store
