#include "store/Cases.h"

namespace store {

namespace {
const QString table = QStringLiteral("ugyek");
} // namespace

platform::Row Cases::find(const QString& ugyszam, QString* error) const
{
    return m_db.first(QStringLiteral("SELECT * FROM ugyek WHERE ugyszam = ?"), {ugyszam}, error);
}

Written Cases::add(const QVariantMap& values)
{
    const QString number = values.value(QStringLiteral("ugyszam")).toString();
    QString error;
    platform::Transaction t(m_db, &error);
    if (!t.isActive())
        return Written::failed(m_db, error);
    // The number is unique whatever the letter case, as the table's key is.
    const platform::Row existing = m_db.first(
            QStringLiteral("SELECT ugyszam FROM ugyek WHERE ugyszam = ? COLLATE NOCASE"), {number},
            &error);
    if (!error.isEmpty())
        return Written::failed(m_db, error);
    if (!existing.isEmpty())
        return {Written::Exists, platform::Failure::None, QString(), number};
    if (!m_db.insert(table, values, nullptr, &error) || !t.commit(&error))
        return Written::failed(m_db, error);
    return {Written::Stored, platform::Failure::None, QString(), number};
}

Written Cases::change(const QString& ugyszam, const QVariantMap& values)
{
    return changeRow(m_db, table, QStringLiteral("ugyszam"), ugyszam, values);
}

Written Cases::remove(const QString& ugyszam)
{
    return removeRow(m_db, table, QStringLiteral("ugyszam"), ugyszam);
}

platform::ListQuery Cases::list()
{
    platform::ListQuery q;
    q.columns = QStringLiteral(
            "ugyszam, unev1, ugytipus, ugyved, kezdet, zaras, ugyfelkod, megjegyzes, ellnev,"
            " ellorszag, ellhely, ellutca, ellirsz, ellugyvorsz, elltelefon, ellugyvnev,"
            " ellugyvhely, ellugyvutca, ellugyvirsz, ellugyvtel1, ellugyvtel2, ellugyvfax,"
            " ellugyvemail, feljegyzes");
    q.from = QStringLiteral("ugyek INNER JOIN ugyfelek ON ugyek.ugyfelkod = ugyfelek.ukod");
    // The stored numeric value of the number, read in order from its index, then the text with
    // letter case ignored ("11/a" before "11/B"), as the index holds it.
    q.order = QStringList{QStringLiteral("ugyek.ugyszamertek"),
                          QStringLiteral("ugyek.ugyszam COLLATE NOCASE")};
    return q;
}

platform::ListQuery Cases::list(const CaseFilter& filter)
{
    platform::ListQuery q = list();
    q.addPrefix(QStringLiteral("ugyszam"), filter.number);
    q.addPrefix(QStringLiteral("unev1"), filter.client);
    q.addPrefix(QStringLiteral("ugytipus"), filter.type);
    q.addPrefix(QStringLiteral("ellnev"), filter.opponent);
    q.addPrefix(QStringLiteral("kezdet"), filter.date);
    return q;
}

} // namespace store
