#include "store/Clients.h"

#include "platform/SqlFunctions.h"
#include "store/Conflicts.h"

namespace store {

namespace {

const QString table = QStringLiteral("ugyfelek");

// The name's sort key goes with the name, so the lists stay in order.
QVariantMap withSortKey(QVariantMap values)
{
    const auto name = values.constFind(QStringLiteral("unev1"));
    if (name != values.cend())
        values.insert(QStringLiteral("unev1kulcs"),
                      name->toString().isEmpty() ? QVariant(QMetaType(QMetaType::QByteArray))
                                                 : QVariant(platform::huSortKey(name->toString())));
    // And its match key, for the conflict check.
    addNameKey(values, QStringLiteral("unev1"), QStringLiteral("unev1egyezo"));
    return values;
}

} // namespace

QVariant Clients::key(const QString& text)
{
    return counterKey(text);
}

platform::Row Clients::find(const QVariant& ukod, QString* error) const
{
    if (!ukod.isValid())
        return platform::Row();
    return m_db.first(QStringLiteral("SELECT * FROM ugyfelek WHERE ukod = ?"), {ukod}, error);
}

Written Clients::add(const QVariantMap& values)
{
    return addRow(m_db, table, QStringLiteral("ukod"), withSortKey(values));
}

Written Clients::change(const QVariant& ukod, const QVariantMap& values)
{
    return changeRow(m_db, table, QStringLiteral("ukod"), ukod, withSortKey(values));
}

Written Clients::remove(const QVariant& ukod)
{
    return removeRow(m_db, table, QStringLiteral("ukod"), ukod, [&](QString* error) {
        return !m_db.first(QStringLiteral("SELECT ugyszam FROM ugyek WHERE ugyfelkod = ? LIMIT 1"),
                           {ukod}, error)
                        .isEmpty();
    });
}

platform::ListQuery Clients::list()
{
    platform::ListQuery q;
    q.columns = QStringLiteral(
            "ukod, unev1, unev2, uorszag, uirsz, uhely, uutca, utel1, utel2, ufax, uemail,"
            " ucegprivat, uanyja, uszemszam, uadoszam, ucegszam");
    q.from = table;
    // Hungarian order of the name, read from the index of its stored sort key; the key makes
    // each row's place unique.
    q.order = QStringList{QStringLiteral("ugyfelek.unev1kulcs"), QStringLiteral("ugyfelek.ukod")};
    return q;
}

platform::ListQuery Clients::list(const ClientFilter& filter)
{
    platform::ListQuery q = list();
    q.addPrefix(QStringLiteral("unev1"), filter.name);
    q.addPrefix(QStringLiteral("uorszag"), filter.country);
    q.addPrefix(QStringLiteral("uhely"), filter.place);
    q.addPrefix(QStringLiteral("uutca"), filter.street);
    q.addPrefix(QStringLiteral("uirsz"), filter.postalCode);
    return q;
}

} // namespace store
