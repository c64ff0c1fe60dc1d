#include "store/Lookups.h"

namespace store {

namespace {

Written outcome(Written::Result result, const QString& name)
{
    return {result, platform::Failure::None, QString(), name};
}

} // namespace

QString Lookups::table(LookupList list)
{
    switch (list) {
    case LookupList::Countries:
        return QStringLiteral("orszagok");
    case LookupList::CaseTypes:
        return QStringLiteral("tipusok");
    case LookupList::Lawyers:
        return QStringLiteral("ugyvedek");
    }
    return QString();
}

QString Lookups::column(LookupList list)
{
    switch (list) {
    case LookupList::Countries:
        return QStringLiteral("orszagnev");
    case LookupList::CaseTypes:
        return QStringLiteral("tipus");
    case LookupList::Lawyers:
        return QStringLiteral("ugyvednev");
    }
    return QString();
}

QString Lookups::sameNameKey(const QString& name)
{
    const QString decomposed = name.trimmed().normalized(QString::NormalizationForm_D);
    QString key;
    key.reserve(decomposed.size());
    for (const QChar c : decomposed) {
        if (c.category() != QChar::Mark_NonSpacing)
            key += c;
    }
    return key.toCaseFolded();
}

QStringList Lookups::names(QString* error) const
{
    const QString col = column(m_list);
    QStringList result;
    const platform::Rows rows
            = m_db.select(QStringLiteral("SELECT %1 FROM %2 ORDER BY %1 COLLATE %3, %1")
                                  .arg(col, table(m_list), QLatin1String(platform::collation)),
                          {}, error);
    for (const platform::Row& row : rows)
        result << row.text(col);
    return result;
}

QString Lookups::clash(const QString& name, const QString& except, QString* error) const
{
    // The lists are short; every entry is compared as the office compares names.
    const QString key = sameNameKey(name);
    QString e;
    for (const QString& entry : names(&e)) {
        if (entry != except && sameNameKey(entry) == key)
            return entry;
    }
    if (error)
        *error = e;
    return QString();
}

Written Lookups::add(const QString& name)
{
    const QString entry = name.trimmed();
    QString error;
    // The look for the same name and the insert in one write transaction, so two workstations
    // cannot both add it.
    platform::Transaction t(m_db, &error);
    if (!t.isActive())
        return Written::failed(m_db, error);
    const bool exists = !clash(entry, QString(), &error).isEmpty();
    if (!error.isEmpty())
        return Written::failed(m_db, error);
    if (exists)
        return outcome(Written::Exists, entry);
    if (!m_db.insert(table(m_list), {{column(m_list), entry}}, nullptr, &error)
        || !t.commit(&error)) {
        // The table's own key may still refuse a name the look did not catch.
        if (m_db.lastFailure() == platform::Failure::Refused)
            return outcome(Written::Exists, entry);
        return Written::failed(m_db, error);
    }
    return outcome(Written::Stored, entry);
}

Written Lookups::rename(const QString& from, const QString& to)
{
    const QString entry = to.trimmed();
    QString error;
    platform::Transaction t(m_db, &error);
    if (!t.isActive())
        return Written::failed(m_db, error);
    // The entry itself does not clash: its name may change in letter case or accents.
    const bool exists = !clash(entry, from, &error).isEmpty();
    if (!error.isEmpty())
        return Written::failed(m_db, error);
    if (exists)
        return outcome(Written::Exists, entry);
    int changed = 0;
    const QString col = column(m_list);
    if (!m_db.update(table(m_list), {{col, entry}},
                     platform::Database::quoteName(col) + QStringLiteral(" = ?"), {from}, &error,
                     &changed)) {
        if (m_db.lastFailure() == platform::Failure::Refused)
            return outcome(Written::Exists, entry);
        return Written::failed(m_db, error);
    }
    if (changed == 0)
        return outcome(Written::Gone, from);
    if (!t.commit(&error))
        return Written::failed(m_db, error);
    return outcome(Written::Stored, entry);
}

Written Lookups::remove(const QString& name, bool* lastEntry)
{
    if (lastEntry)
        *lastEntry = false;
    QString error;
    platform::Transaction t(m_db, &error);
    if (!t.isActive())
        return Written::failed(m_db, error);
    const QVariant count
            = m_db.scalar(QStringLiteral("SELECT count(*) FROM %1").arg(table(m_list)), {}, &error);
    if (!error.isEmpty())
        return Written::failed(m_db, error);
    if (count.toInt() <= 1) {
        if (lastEntry)
            *lastEntry = true;
        return outcome(Written::InUse, name);
    }
    int changed = 0;
    const QString col = column(m_list);
    if (!m_db.remove(table(m_list), platform::Database::quoteName(col) + QStringLiteral(" = ?"),
                     {name}, &error, &changed)) {
        // The file's related-records rule: rows of other tables still name the entry.
        if (m_db.lastFailure() == platform::Failure::Refused)
            return outcome(Written::InUse, name);
        return Written::failed(m_db, error);
    }
    if (changed == 0)
        return outcome(Written::Gone, name);
    if (!t.commit(&error))
        return Written::failed(m_db, error);
    return outcome(Written::Stored, name);
}

} // namespace store
