#pragma once

#include "platform/ListQuery.h"
#include "store/Written.h"

#include <QVariantMap>

namespace store {

// The five prefix filters of the client list; an empty one does not narrow the list.
struct ClientFilter
{
    QString name;
    QString country;
    QString place;
    QString street;
    QString postalCode;
};

// The client register, ugyfelek: every read and write of a client goes through here, by the
// client's key ukod. Values are keyed by column name; the sort key of the name is written
// with the name.
class Clients
{
public:
    explicit Clients(platform::Database& db) : m_db(db) { }

    platform::Row find(const QVariant& ukod, QString* error = nullptr) const;
    // A new client; the new key is in the result.
    Written add(const QVariantMap& values);
    // Changes the client of that key; Gone when no such client is left.
    Written change(const QVariant& ukod, const QVariantMap& values);
    // Deletes the client of that key; InUse while cases name it. The check and the delete run
    // in one write transaction, so no case can be added for the client in between.
    Written remove(const QVariant& ukod);

    // Every client in Hungarian order of the name, and the same narrowed by the filters.
    static platform::ListQuery list();
    static platform::ListQuery list(const ClientFilter& filter);

    // The key as the table holds it, from its text; invalid when the text is no number.
    static QVariant key(const QString& text);

private:
    platform::Database& m_db;
};

} // namespace store
