#include "store/Users.h"

namespace store {

namespace {

const QString table = QStringLiteral("felhasznalo");
const QString key = QStringLiteral("rowid");
const QString loginColumn = QStringLiteral("loginnev");

// A user with his key and his language's name. A language missing from nyelvek leaves the
// name empty and the user still listed.
QString userQuery(const QString& where)
{
    return QStringLiteral("SELECT felhasznalo.rowid AS kulcs, felhasznalo.*, "
                          "(SELECT nyelvnev FROM nyelvek WHERE nyelvkod = felhasznalo.felhnyelv "
                          "LIMIT 1) AS nyelvnev FROM felhasznalo ")
           + where;
}

} // namespace

platform::Rows Users::list(QString* error) const
{
    return m_db.select(userQuery(QStringLiteral("ORDER BY felhnev COLLATE HU, felhasznalo.rowid")),
                       {}, error);
}

platform::Row Users::find(const QVariant& kulcs, QString* error) const
{
    if (!kulcs.isValid())
        return platform::Row();
    return m_db.first(userQuery(QStringLiteral("WHERE felhasznalo.rowid = ?")), {kulcs}, error);
}

platform::Row Users::findByLogin(const QString& loginName, QString* error) const
{
    // The first user of that name, should an older file hold two.
    return m_db.first(QStringLiteral("SELECT * FROM felhasznalo WHERE loginnev = ? COLLATE HU "
                                     "ORDER BY rowid LIMIT 1"),
                      {loginName}, error);
}

bool Users::loginTaken(const QVariant& loginName, const QVariant& kulcs, QString* error) const
{
    if (loginName.toString().isEmpty())
        return false;
    return !m_db.first(QStringLiteral("SELECT 1 FROM felhasznalo WHERE loginnev = ? COLLATE HU "
                                      "AND rowid IS NOT ? LIMIT 1"),
                       {loginName, kulcs}, error)
                    .isEmpty();
}

Written Users::add(const QVariantMap& values)
{
    QString error;
    platform::Transaction t(m_db, &error);
    if (!t.isActive())
        return Written::failed(m_db, error);
    const bool taken = loginTaken(values.value(loginColumn), QVariant(), &error);
    if (!error.isEmpty())
        return Written::failed(m_db, error);
    if (taken)
        return {Written::Exists, platform::Failure::None, QString(), QVariant()};
    QVariant newKey;
    if (!m_db.insert(table, values, &newKey, &error) || !t.commit(&error))
        return Written::failed(m_db, error);
    return {Written::Stored, platform::Failure::None, QString(), newKey};
}

Written Users::change(const QVariant& kulcs, const QVariantMap& values)
{
    QString error;
    platform::Transaction t(m_db, &error);
    if (!t.isActive())
        return Written::failed(m_db, error);
    const bool taken = loginTaken(values.value(loginColumn), kulcs, &error);
    if (!error.isEmpty())
        return Written::failed(m_db, error);
    if (taken)
        return {Written::Exists, platform::Failure::None, QString(), kulcs};
    int changed = 0;
    if (!m_db.update(table, values, QStringLiteral("rowid = ?"), {kulcs}, &error, &changed))
        return Written::failed(m_db, error);
    if (changed == 0)
        return {Written::Gone, platform::Failure::None, QString(), kulcs};
    if (!t.commit(&error))
        return Written::failed(m_db, error);
    return {Written::Stored, platform::Failure::None, QString(), kulcs};
}

Written Users::remove(const QVariant& kulcs)
{
    // Counted inside the delete's transaction, so two desks cannot delete the last two at once.
    return removeRow(m_db, table, key, kulcs, [this](QString* error) {
        return m_db.scalar(QStringLiteral("SELECT count(*) FROM felhasznalo"), {}, error).toInt()
               <= 1;
    });
}

QStringList Users::lawyerNames(QString* error) const
{
    QStringList names;
    for (const platform::Row& r :
         m_db.select(QStringLiteral("SELECT ugyvednev FROM ugyvedek ORDER BY ugyvednev COLLATE HU"),
                     {}, error))
        names << r.text(QStringLiteral("ugyvednev"));
    return names;
}

} // namespace store
