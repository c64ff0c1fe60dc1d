#include "store/Written.h"

namespace store {

QVariant counterKey(const QString& text)
{
    bool ok = false;
    const qlonglong k = text.trimmed().toLongLong(&ok);
    return ok ? QVariant(k) : QVariant();
}

Written addRow(platform::Database& db, const QString& table, const QString& keyColumn,
               const QVariantMap& values)
{
    platform::NewRow row(db, table, keyColumn);
    if (!row.isValid())
        return Written::failed(db, row.error());
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        row.set(it.key(), it.value());
    QString error;
    if (!row.update(&error))
        return Written::failed(db, error);
    return {Written::Stored, platform::Failure::None, QString(), row.key()};
}

namespace {

Written outcome(Written::Result result, const QVariant& key)
{
    return {result, platform::Failure::None, QString(), key};
}

// A write of one row by its key, done inside the transaction: no row changed means another
// workstation deleted it meanwhile, and there is nothing to commit.
Written settled(platform::Database& db, platform::Transaction& t, int changed, const QVariant& key)
{
    if (changed == 0)
        return outcome(Written::Gone, key);
    QString error;
    if (!t.commit(&error))
        return Written::failed(db, error);
    return outcome(Written::Stored, key);
}

} // namespace

Written changeRow(platform::Database& db, const QString& table, const QString& keyColumn,
                  const QVariant& key, const QVariantMap& values)
{
    QString error;
    platform::Transaction t(db, &error);
    if (!t.isActive())
        return Written::failed(db, error);
    int changed = 0;
    if (!db.update(table, values, platform::Database::quoteName(keyColumn) + QStringLiteral(" = ?"),
                   {key}, &error, &changed))
        return Written::failed(db, error);
    return settled(db, t, changed, key);
}

Written removeRow(platform::Database& db, const QString& table, const QString& keyColumn,
                  const QVariant& key, const std::function<bool(QString* error)>& inUse)
{
    QString error;
    platform::Transaction t(db, &error);
    if (!t.isActive())
        return Written::failed(db, error);
    if (inUse) {
        const bool used = inUse(&error);
        if (!error.isEmpty())
            return Written::failed(db, error);
        if (used)
            return outcome(Written::InUse, key);
    }
    int changed = 0;
    if (!db.remove(table, platform::Database::quoteName(keyColumn) + QStringLiteral(" = ?"), {key},
                   &error, &changed))
        return Written::failed(db, error);
    return settled(db, t, changed, key);
}

} // namespace store
