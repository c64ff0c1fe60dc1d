#include "store/PostalCodes.h"

namespace store {

namespace {

const QString table = QStringLiteral("irsz");
const QString keyColumn = QStringLiteral("irszsorszam");

// An empty text is stored as no value.
QVariant valueOf(const QString& text)
{
    return text.isEmpty() ? QVariant(QMetaType(QMetaType::QString)) : QVariant(text);
}

QVariantMap rowValues(const QString& country, const QString& code, const QString& place)
{
    return {{QStringLiteral("orszag"), valueOf(country)},
            {QStringLiteral("irsz"), valueOf(code)},
            {QStringLiteral("hely"), valueOf(place)}};
}

} // namespace

platform::Row PostalCodes::find(const QVariant& irszsorszam, QString* error) const
{
    if (!irszsorszam.isValid())
        return platform::Row();
    return m_db.first(QStringLiteral("SELECT * FROM irsz WHERE irszsorszam = ?"), {irszsorszam},
                      error);
}

Written PostalCodes::add(const QString& country, const QString& code, const QString& place)
{
    QString error;
    platform::Transaction t(m_db, &error);
    if (!t.isActive())
        return Written::failed(m_db, error);
    QVariant key;
    if (!m_db.insert(table, rowValues(country, code, place), &key, &error) || !t.commit(&error))
        return Written::failed(m_db, error);
    return {Written::Stored, platform::Failure::None, QString(), key};
}

Written PostalCodes::change(const QVariant& irszsorszam, const QString& country,
                            const QString& code, const QString& place)
{
    if (!irszsorszam.isValid())
        return {Written::Gone, platform::Failure::None, QString(), irszsorszam};
    return changeRow(m_db, table, keyColumn, irszsorszam, rowValues(country, code, place));
}

Written PostalCodes::remove(const QVariant& irszsorszam)
{
    if (!irszsorszam.isValid())
        return {Written::Gone, platform::Failure::None, QString(), irszsorszam};
    return removeRow(m_db, table, keyColumn, irszsorszam);
}

QStringList PostalCodes::places(const QString& country, const QString& code, QString* error) const
{
    QStringList result;
    const platform::Rows rows = m_db.select(
            QStringLiteral("SELECT hely FROM irsz WHERE orszag = ? COLLATE HU AND irsz = ?"
                           " ORDER BY irszsorszam"),
            {country, code}, error);
    for (const platform::Row& row : rows)
        result << row.text(QStringLiteral("hely"));
    return result;
}

QString PostalCodes::codeOf(const QString& country, const QString& place, QString* error) const
{
    return m_db
            .first(QStringLiteral("SELECT irsz FROM irsz WHERE orszag = ? COLLATE HU"
                                  " AND hely = ? COLLATE HU ORDER BY irszsorszam LIMIT 1"),
                   {country, place}, error)
            .text(QStringLiteral("irsz"));
}

platform::ListQuery PostalCodes::list()
{
    platform::ListQuery q;
    q.columns = QStringLiteral("irsz.irszsorszam, irsz.irsz AS IRSZ, irsz.hely AS Hely,"
                               " irsz.orszag AS Orszag");
    q.from = table;
    q.order = QStringList{QStringLiteral("irsz.irsz"), QStringLiteral("irsz.irszsorszam")};
    return q;
}

platform::ListQuery PostalCodes::list(const QString& country)
{
    platform::ListQuery q = list();
    // Bound, so a name with an apostrophe is only a name.
    q.where = QStringLiteral("irsz.orszag = ? COLLATE HU");
    q.params = {country};
    return q;
}

} // namespace store
