#include "platform/ListSource.h"

#include "platform/Database.h"
#include "platform/Display.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlQueryModel>
#include <QSqlRecord>
#include <QTableView>

namespace platform {

ListSource::ListSource(Database& db, QObject* parent)
    : QObject(parent), m_db(db), m_model(new QSqlQueryModel(this))
{
}

ListSource::~ListSource() = default;

void ListSource::setRecordSource(const QString& sql, const QVariantList& params)
{
    m_sql = sql;
    m_params = params;
}

bool ListSource::refresh(QString* error)
{
    // The model needs a scrollable query; SQLite still reads it forward as rows are fetched.
    QSqlQuery q(m_db.connection());
    bool ok = q.prepare(m_sql);
    if (ok) {
        for (const QVariant& v : m_params)
            q.addBindValue(v);
        ok = q.exec();
    }
    if (!ok) {
        if (error)
            *error = q.lastError().databaseText().isEmpty() ? q.lastError().text()
                                                             : q.lastError().databaseText();
        m_model->clear();
        emit refreshed();
        return false;
    }
    m_model->setQuery(std::move(q));
    if (m_grid)
        m_grid->setModel(m_model);
    emit refreshed();
    return true;
}

void ListSource::bind(QTableView* grid)
{
    m_grid = grid;
    grid->setModel(m_model);
}

QAbstractItemModel* ListSource::model() const
{
    return m_model;
}

void ListSource::fetchAll()
{
    while (m_model->canFetchMore())
        m_model->fetchMore();
}

int ListSource::rowCount() const
{
    return m_model->rowCount();
}

int ListSource::columnIndex(const QString& field) const
{
    const QSqlRecord rec = m_model->record();
    for (int i = 0; i < rec.count(); ++i) {
        if (rec.fieldName(i).compare(field, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

QVariant ListSource::value(int row, const QString& field) const
{
    return value(row, columnIndex(field));
}

QVariant ListSource::value(int row, int column) const
{
    if (column < 0)
        return QVariant();
    return m_model->record(row).value(column);
}

int ListSource::position() const
{
    if (!m_grid || !m_grid->selectionModel())
        return -1;
    const QModelIndex current = m_grid->selectionModel()->currentIndex();
    if (!current.isValid() || current.model() != m_model)
        return -1;
    return current.row() + 1;
}

void gridoszlopok(QTableView* grid, const QList<GridColumn>& columns)
{
    QAbstractItemModel* model = grid->model();
    if (!model)
        return;
    for (int c = 0; c < model->columnCount(); ++c) {
        // The data field name, whatever heading an earlier call gave the column.
        const auto* sqlModel = qobject_cast<const QSqlQueryModel*>(model);
        const QString field = sqlModel ? sqlModel->record().fieldName(c)
                                       : model->headerData(c, Qt::Horizontal).toString();
        const auto it = std::find_if(columns.cbegin(), columns.cend(),
                                     [&](const GridColumn& gc) { return gc.field == field; });
        if (it == columns.cend()) {
            grid->setColumnHidden(c, true);
            continue;
        }
        grid->setColumnHidden(c, false);
        QString heading = field;
        if (auto* label = qobject_cast<QLabel*>(it->heading))
            heading = label->text();
        else if (auto* edit = qobject_cast<QLineEdit*>(it->heading))
            heading = edit->text();
        else if (it->heading)
            heading = it->heading->property("text").toString();
        model->setHeaderData(c, Qt::Horizontal, heading, Qt::DisplayRole);
        grid->setColumnWidth(c, twipsToPixels(it->widthTwips));
    }
}

} // namespace platform
