#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariantList>

class QAbstractItemModel;
class QSqlQueryModel;
class QTableView;
class QWidget;

namespace platform {

class Database;

// The row set behind a grid: an SQL text with its bound values, run on the session's
// database. A screen changes what its grid shows only by giving a new record source and
// refreshing.
class ListSource : public QObject
{
    Q_OBJECT
public:
    explicit ListSource(Database& db, QObject* parent = nullptr);
    ~ListSource() override;

    void setRecordSource(const QString& sql, const QVariantList& params = {});
    QString recordSource() const { return m_sql; }
    QVariantList parameters() const { return m_params; }

    // Runs the record source again. Returns false with the engine's text on failure.
    bool refresh(QString* error = nullptr);
    void bind(QTableView* grid);
    QAbstractItemModel* model() const;

    // Reads every remaining row (the grid otherwise reads them as it scrolls).
    void fetchAll();
    int rowCount() const;
    int columnIndex(const QString& field) const;
    QVariant value(int row, const QString& field) const;
    QVariant value(int row, int column) const;
    // 1-based position of the grid's current row, or -1 when it has none.
    int position() const;

signals:
    void refreshed();

private:
    Database& m_db;
    QSqlQueryModel* m_model;
    QPointer<QTableView> m_grid;
    QString m_sql;
    QVariantList m_params;
};

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
