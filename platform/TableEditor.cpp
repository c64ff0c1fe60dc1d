#include "platform/TableEditor.h"

#include "platform/Database.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QSqlError>
#include <QSqlTableModel>
#include <QTableView>

namespace platform {

// Writes only when asked: the grid's own submit calls (Enter in a cell, moving between cells)
// are ignored, so that a row is stored once, when the user leaves it.
class EditableTableModel : public QSqlTableModel
{
public:
    EditableTableModel(QObject* parent, const QSqlDatabase& db) : QSqlTableModel(parent, db)
    {
        setEditStrategy(QSqlTableModel::OnRowChange);
    }
    bool submit() override { return true; }
    bool storeRows() { return QSqlTableModel::submitAll(); }
};

TableEditor::TableEditor(Database& db, const QString& table, QObject* parent)
    : QObject(parent), m_db(db), m_table(table)
{
}

TableEditor::~TableEditor() = default;

bool TableEditor::refresh(QString* error)
{
    if (!m_model) {
        m_model = new EditableTableModel(this, m_db.connection());
        m_model->setTable(m_table);
    }
    if (!m_model->select()) {
        m_db.failureOf(m_model->lastError());
        if (error)
            *error = m_model->lastError().text();
        return false;
    }
    // SQLite reports no row count: read every row so that the whole table is listed.
    while (m_model->canFetchMore())
        m_model->fetchMore();
    return true;
}

void TableEditor::bind(QTableView* grid)
{
    if (!m_model)
        refresh();
    if (m_grid == grid && grid->model() == m_model)
        return;
    m_grid = grid;
    grid->setModel(m_model);
    connect(grid->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &TableEditor::currentRowChanged);
}

QAbstractItemModel* TableEditor::model() const
{
    return m_model;
}

bool TableEditor::hasPendingEdit() const
{
    return m_model && m_model->isDirty();
}

bool TableEditor::store()
{
    if (!hasPendingEdit())
        return true;
    QString text;
    if (!m_db.writable(&text)) {
        m_model->revertAll();
        emit failed(m_db.lastFailure(), text);
        return false;
    }
    if (m_model->storeRows())
        return true;
    const QSqlError e = m_model->lastError();
    text = e.databaseText().isEmpty() ? e.text() : e.databaseText();
    const Failure failure = m_db.failureOf(e);
    m_model->revertAll();
    emit failed(failure, text);
    return false;
}

void TableEditor::currentRowChanged(const QModelIndex& current, const QModelIndex& previous)
{
    if (previous.isValid() && current.row() != previous.row())
        store();
}

} // namespace platform
