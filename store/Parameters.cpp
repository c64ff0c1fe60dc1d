#include "store/Parameters.h"

namespace store {

platform::Row Parameters::read(QString* error) const
{
    return m_db.first(QStringLiteral("SELECT parameterek.*, (SELECT nyelvnev FROM nyelvek "
                                     "WHERE nyelvkod = parameterek.alapnyelv LIMIT 1) AS nyelvnev "
                                     "FROM parameterek LIMIT 1"),
                      {}, error);
}

Written Parameters::save(const QVariantMap& values)
{
    QString error;
    platform::Transaction t(m_db, &error);
    if (!t.isActive())
        return Written::failed(m_db, error);
    int changed = 0;
    // The table holds exactly one row.
    if (!m_db.update(QStringLiteral("parameterek"), values, QStringLiteral("1"), {}, &error,
                     &changed))
        return Written::failed(m_db, error);
    if (changed == 0 && !values.isEmpty())
        return {Written::Gone, platform::Failure::None, QString(), QVariant()};
    if (!t.commit(&error))
        return Written::failed(m_db, error);
    return {Written::Stored, platform::Failure::None, QString(), QVariant()};
}

platform::Rows Parameters::languages(QString* error) const
{
    return m_db.select(QStringLiteral("SELECT nyelvkod, nyelvnev FROM nyelvek ORDER BY nyelvkod"),
                       {}, error);
}

} // namespace store
