#pragma once

#include "platform/ListQuery.h"
#include "store/Written.h"

#include <QVariantMap>

namespace store {

// The partner register, partner: every read and write of a partner goes through here, by the
// partner's key pkod. Values are keyed by column name. Partners are named by no other table,
// so nothing guards their deletion.
class Partners
{
public:
    explicit Partners(platform::Database& db) : m_db(db) { }

    // The partner of that key, or an empty row when there is none (any more).
    platform::Row find(const QVariant& pkod, QString* error = nullptr) const;
    // A new partner; the new key is in the result.
    Written add(const QVariantMap& values);
    // Changes the partner of that key; Gone when no such partner is left.
    Written change(const QVariant& pkod, const QVariantMap& values);
    // Deletes the partner of that key; Gone when it was not there.
    Written remove(const QVariant& pkod);

    // Every partner in Hungarian order of the first name line, the key deciding between equal
    // names, with every column in the table's order.
    static platform::ListQuery list();

    // The key as the table holds it, from its text; invalid when the text is no number.
    static QVariant key(const QString& text);

private:
    platform::Database& m_db;
};

} // namespace store
