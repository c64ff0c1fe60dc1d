#include "platform/ListQuery.h"

namespace platform {

namespace {

// "+x" keeps the engine from walking x's index; the sort then covers the matches only.
QStringList orderTerms(const ListQuery& q)
{
    QStringList terms = q.order;
    if (q.sortMatches && !terms.isEmpty())
        terms.first().prepend(u'+');
    return terms;
}

} // namespace

void ListQuery::addPrefix(const QString& column, const QString& text)
{
    if (text.isEmpty())
        return;
    if (!where.isEmpty())
        where += QStringLiteral(" AND ");
    where += QStringLiteral("(\"left\"(%1, ?) = ? COLLATE %2)")
                     .arg(column, QLatin1String(collation));
    // "left" counts characters, so a character outside the basic plane counts once.
    params << int(text.toUcs4().size()) << text;
    sortMatches = true;
}

QString ListQuery::text() const
{
    QString sql = QStringLiteral("SELECT %1 FROM %2").arg(columns, from);
    if (!where.isEmpty())
        sql += QStringLiteral(" WHERE ") + where;
    if (!order.isEmpty())
        sql += QStringLiteral(" ORDER BY ") + orderTerms(*this).join(QStringLiteral(", "));
    return sql;
}

bool ListPager::page(const QVariantList& after, int limit, Rows* rows, QStringList* columnNames,
                     QString* error) const
{
    const QStringList terms = orderTerms(m_query);
    QStringList conditions;
    QVariantList params;
    if (!m_query.where.isEmpty()) {
        conditions << u'(' + m_query.where + u')';
        params = m_query.params;
    }
    if (!after.isEmpty()) {
        // Rows after the given one in the list's order. Rows whose first order value is
        // empty come first in that order, and a row value holding no value compares to
        // nothing, so that case is spelled out.
        QStringList marks;
        for (int i = 0; i < terms.size(); ++i)
            marks << QStringLiteral("?");
        if (after.first().isNull() && terms.size() > 1) {
            conditions << QStringLiteral("((%1 IS NULL AND (%2) > (%3)) OR %1 IS NOT NULL)")
                                  .arg(terms.first(), terms.mid(1).join(QStringLiteral(", ")),
                                       marks.mid(1).join(QStringLiteral(", ")));
            params += after.mid(1);
        } else {
            conditions << QStringLiteral("(%1) > (%2)")
                                  .arg(terms.join(QStringLiteral(", ")),
                                       marks.join(QStringLiteral(", ")));
            params += after;
        }
    }
    QString sql
            = QStringLiteral("SELECT %1, %2 FROM %3")
                      .arg(m_query.columns, m_query.order.join(QStringLiteral(", ")), m_query.from);
    if (!conditions.isEmpty())
        sql += QStringLiteral(" WHERE ") + conditions.join(QStringLiteral(" AND "));
    sql += QStringLiteral(" ORDER BY ") + terms.join(QStringLiteral(", "));
    sql += QStringLiteral(" LIMIT ?");
    params << limit;
    QString e;
    *rows = m_db.select(sql, params, columnNames, &e);
    if (!e.isEmpty()) {
        if (error)
            *error = e;
        return false;
    }
    if (columnNames)
        columnNames->resize(columnNames->size() - orderCount());
    return true;
}

QVariantList ListPager::orderValues(const Row& row) const
{
    QVariantList values;
    for (int i = row.count() - orderCount(); i < row.count(); ++i)
        values << row.value(i);
    return values;
}

qint64 ListPager::count(QString* error) const
{
    QString sql = QStringLiteral("SELECT count(*) FROM %1").arg(m_query.from);
    if (!m_query.where.isEmpty())
        sql += QStringLiteral(" WHERE ") + m_query.where;
    QString e;
    const QVariant n = m_db.scalar(sql, m_query.params, &e);
    if (!e.isEmpty() && error)
        *error = e;
    return n.toLongLong();
}

} // namespace platform
