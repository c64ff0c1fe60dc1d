#include "store/Cases.h"

#include "store/Conflicts.h"
#include "store/Upgrade.h"

namespace store {

namespace {
const QString table = QStringLiteral("ugyek");

// The match keys of the opponent's and the opponent's lawyer's names go with the names, for
// the conflict check.
QVariantMap withNameKeys(QVariantMap values)
{
    addNameKey(values, QStringLiteral("ellnev"), QStringLiteral("ellnevegyezo"));
    addNameKey(values, QStringLiteral("ellugyvnev"), QStringLiteral("ellugyvnevegyezo"));
    return values;
}
} // namespace

platform::Row Cases::find(const QString& ugyszam, QString* error) const
{
    return m_db.first(QStringLiteral("SELECT * FROM ugyek WHERE ugyszam = ?"), {ugyszam}, error);
}

platform::Row Cases::findWithClient(const QString& ugyszam, QString* error) const
{
    return m_db.first(QStringLiteral("SELECT ugyek.*, ugyfelek.unev1 FROM ugyek LEFT JOIN ugyfelek"
                                     " ON ugyek.ugyfelkod = ugyfelek.ukod WHERE ugyszam = ?"),
                      {ugyszam}, error);
}

bool Cases::exists(const QString& ugyszam, QString* error) const
{
    return !m_db.first(QStringLiteral("SELECT ugyszam FROM ugyek WHERE ugyszam = ? COLLATE NOCASE"),
                       {ugyszam}, error)
                    .isEmpty();
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
    if (!m_db.insert(table, withNameKeys(values), nullptr, &error) || !t.commit(&error))
        return Written::failed(m_db, error);
    return {Written::Stored, platform::Failure::None, QString(), number};
}

Written Cases::change(const QString& ugyszam, const QVariantMap& values)
{
    return changeRow(m_db, table, QStringLiteral("ugyszam"), ugyszam, withNameKeys(values));
}

Written Cases::remove(const QString& ugyszam)
{
    return removeRow(m_db, table, QStringLiteral("ugyszam"), ugyszam);
}

bool Cases::choices(CaseChoices* lists, QString* error) const
{
    *lists = CaseChoices();
    // Names written by other tools get their sort key first, so that they stand in order.
    store::fillClientSortKeys(m_db);
    QString e;
    const platform::Rows clients
            = m_db.select(QStringLiteral("SELECT ukod, unev1 FROM ugyfelek WHERE unev1 <> ''"
                                         " ORDER BY unev1kulcs, ukod"),
                          {}, &e);
    lists->clientKeys.reserve(qsizetype(clients.size()));
    lists->clientNames.reserve(qsizetype(clients.size()));
    for (const platform::Row& row : clients) {
        lists->clientKeys << row.value(0).toLongLong();
        lists->clientNames << row.value(1).toString();
    }
    auto names = [&](const char* sql, QStringList* into) {
        if (!e.isEmpty())
            return;
        for (const platform::Row& row : m_db.select(QLatin1String(sql), {}, &e))
            *into << row.value(0).toString();
    };
    names("SELECT ugyvednev FROM ugyvedek ORDER BY ugyvednev COLLATE HU", &lists->lawyers);
    names("SELECT tipus FROM tipusok ORDER BY tipus COLLATE HU", &lists->types);
    names("SELECT orszagnev FROM orszagok ORDER BY orszagnev COLLATE HU", &lists->countries);
    if (!e.isEmpty() && error)
        *error = e;
    return e.isEmpty();
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
