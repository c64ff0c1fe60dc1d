#pragma once

#include "platform/Database.h"

#include <QString>
#include <QStringList>
#include <QVariantList>

namespace platform {

// A list as the screens show it: what to read, which rows, and in which order. The order's
// expressions together identify a row, so the list can be read a page at a time, each page
// starting after the last row of the one before (no statement is kept open between pages).
struct ListQuery
{
    QString columns; // the select list, e.g. "ukod, unev1"
    QString from; // the tables and joins after FROM
    QString where; // a condition with ? placeholders, or empty
    QVariantList params; // the condition's values
    QStringList order; // ordering expressions, the last one unique, e.g. "ugyfelek.ukod"
    // A narrowing filter: the engine finds the matching rows first and sorts only those,
    // instead of walking the whole order's index.
    bool sortMatches = false;

    bool isEmpty() const { return columns.isEmpty(); }
    // Narrows the list to the rows whose column begins with the text, compared as the office
    // compares text (letter case ignored, accents kept). An empty text narrows nothing.
    void addPrefix(const QString& column, const QString& text);
    // The whole statement, ordered; its values are params.
    QString text() const;
};

// Reads a list page by page. Each page is one short statement stepped to its end.
class ListPager
{
public:
    ListPager(const Database& db, ListQuery query) : m_db(db), m_query(std::move(query)) { }

    // Up to limit rows that follow the row whose order values are after (all rows from the
    // start when after is empty). Each row carries the list's columns followed by its order
    // values; orderValues() takes them off a row.
    bool page(const QVariantList& after, int limit, Rows* rows, QStringList* columnNames,
              QString* error) const;
    int orderCount() const { return int(m_query.order.size()); }
    QVariantList orderValues(const Row& row) const;
    // How many rows the list has.
    qint64 count(QString* error) const;

private:
    const Database& m_db;
    ListQuery m_query;
};

} // namespace platform
