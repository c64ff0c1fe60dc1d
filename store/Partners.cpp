#include "store/Partners.h"

#include "store/Conflicts.h"

namespace store {

namespace {
const QString table = QStringLiteral("partner");
const QString keyColumn = QStringLiteral("pkod");

// The name's match key goes with the name, for the conflict check.
QVariantMap withNameKey(QVariantMap values)
{
    addNameKey(values, QStringLiteral("pnev1"), QStringLiteral("pnev1egyezo"));
    return values;
}
} // namespace

QVariant Partners::key(const QString& text)
{
    return counterKey(text);
}

platform::Row Partners::find(const QVariant& pkod, QString* error) const
{
    if (!pkod.isValid())
        return platform::Row();
    return m_db.first(QStringLiteral("SELECT * FROM partner WHERE pkod = ?"), {pkod}, error);
}

Written Partners::add(const QVariantMap& values)
{
    return addRow(m_db, table, keyColumn, withNameKey(values));
}

Written Partners::change(const QVariant& pkod, const QVariantMap& values)
{
    return changeRow(m_db, table, keyColumn, pkod, withNameKey(values));
}

Written Partners::remove(const QVariant& pkod)
{
    return removeRow(m_db, table, keyColumn, pkod);
}

platform::ListQuery Partners::list()
{
    platform::ListQuery q;
    q.columns = QStringLiteral(
            "pkod, pnev1, pnev2, porszag, pirsz, phely, putca, ptel1, ptel2, pfax, pemail");
    q.from = table;
    // The register is small: the collation sorts it directly. The key makes each row's place
    // unique, so two partners of one name are both listed and each page follows the last.
    q.order = QStringList{QStringLiteral("partner.pnev1 COLLATE HU"),
                          QStringLiteral("partner.pkod")};
    return q;
}

} // namespace store
