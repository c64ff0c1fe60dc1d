#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

class QAbstractItemModel;
class QModelIndex;
class QTableView;

#include "platform/Database.h"

namespace platform {

class EditableTableModel;

// An editable grid over every row and column of one table, in the table's own order. An edited
// row is written when the user leaves it (or when the screen stores it on closing); a row the
// database refuses is put back as stored and reported through failed() with the engine's text.
class TableEditor : public QObject
{
    Q_OBJECT
public:
    TableEditor(Database& db, const QString& table, QObject* parent = nullptr);
    ~TableEditor() override;

    // Reads the whole table again. Returns false with the engine's text on failure.
    bool refresh(QString* error = nullptr);
    void bind(QTableView* grid);
    QAbstractItemModel* model() const;

    bool hasPendingEdit() const;
    // Writes the pending row now; false (and failed()) when the database refuses it.
    bool store();

signals:
    void failed(platform::Failure failure, const QString& engineText);

private:
    void currentRowChanged(const QModelIndex& current, const QModelIndex& previous);

    Database& m_db;
    QString m_table;
    EditableTableModel* m_model = nullptr;
    QPointer<QTableView> m_grid;
};

} // namespace platform
