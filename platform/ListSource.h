#pragma once

#include "platform/ListQuery.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariantList>

class QAbstractItemModel;
class QTableView;
class QWidget;

namespace platform {

class Database;
class PagedListModel;

// The row set behind a grid: a list query run on the session's database. A screen changes
// what its grid shows only by giving a new record source and refreshing.
//
// The list is read a page at a time, the next page when the grid scrolls there, and each page
// is one short statement run to its end: between the user's steps the list holds no statement
// and no read lock, so other workstations write freely. Only the pages near the view are kept.
class ListSource : public QObject
{
    Q_OBJECT
public:
    explicit ListSource(Database& db, QObject* parent = nullptr);
    ~ListSource() override;

    void setRecordSource(const ListQuery& query);
    const ListQuery& recordSource() const { return m_query; }

    // Reads the list's first page again. Returns false with the engine's text on failure.
    bool refresh(QString* error = nullptr);
    void bind(QTableView* grid);
    QAbstractItemModel* model() const;

    // Rows read so far; more follow while canReadMore() is true.
    int rowCount() const;
    bool canReadMore() const;
    void readMore();
    // How many pages are held in memory.
    int pagesHeld() const;

    int columnIndex(const QString& field) const;
    QVariant value(int row, const QString& field) const;
    QVariant value(int row, int column) const;
    // 1-based position of the grid's current row, or -1 when it has none.
    int position() const;

signals:
    void refreshed();

private:
    Database& m_db;
    ListQuery m_query;
    PagedListModel* m_model;
    QPointer<QTableView> m_grid;
};

// The role under which the list's model gives a column's data field name.
constexpr int FieldNameRole = Qt::UserRole + 1;

// A visible grid column: the data field (matched exactly, letter case included), the widget
// whose text is the heading, and the width in twips.
struct GridColumn
{
    QString field;
    QWidget* heading = nullptr;
    int widthTwips = 0;
};

// Shows the listed columns with their headings and widths and hides every other column.
void gridoszlopok(QTableView* grid, const QList<GridColumn>& columns);

} // namespace platform
