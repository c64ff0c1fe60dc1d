#include "platform/ListSource.h"

#include "platform/Database.h"
#include "platform/Display.h"

#include <map>
#include <QAbstractTableModel>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>

namespace platform {

namespace {
constexpr int pageSize = 256;
// Pages kept in memory: enough for a screenful and the pages on either side of it.
constexpr int pagesKept = 8;
} // namespace

// A table model over a list read in pages. The row count grows as pages are read; a page that
// was dropped to save memory is read again, by the order values it starts after, when the
// view comes back to it.
class PagedListModel : public QAbstractTableModel
{
public:
    PagedListModel(const Database& db, QObject* parent) : QAbstractTableModel(parent), m_db(db) { }

    bool reset(const ListQuery& query, QString* error)
    {
        beginResetModel();
        forget();
        m_pager = std::make_unique<ListPager>(m_db, query);
        m_atEnd = false;
        const bool ok = readPage(0, error);
        if (!ok)
            m_atEnd = true;
        endResetModel();
        return ok;
    }

    void clear()
    {
        beginResetModel();
        forget();
        endResetModel();
    }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : m_rows;
    }
    int columnCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : int(m_fields.size());
    }

    QVariant data(const QModelIndex& index, int role) const override
    {
        if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole))
            return QVariant();
        return value(index.row(), index.column());
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        if (orientation != Qt::Horizontal || section < 0 || section >= m_fields.size())
            return QAbstractTableModel::headerData(section, orientation, role);
        if (role == FieldNameRole)
            return m_fields.at(section);
        if (role == Qt::DisplayRole)
            return m_headings.value(section, m_fields.at(section));
        return QVariant();
    }

    bool setHeaderData(int section, Qt::Orientation orientation, const QVariant& value,
                       int role) override
    {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0
            || section >= m_fields.size())
            return false;
        m_headings[section] = value.toString();
        emit headerDataChanged(orientation, section, section);
        return true;
    }

    bool canFetchMore(const QModelIndex& parent) const override
    {
        return !parent.isValid() && !m_atEnd;
    }

    void fetchMore(const QModelIndex& parent) override
    {
        if (parent.isValid() || m_atEnd)
            return;
        const int before = m_rows;
        Rows rows;
        QString error;
        const int page = m_pagesRead;
        if (!read(page, &rows, &error)) {
            m_atEnd = true;
            return;
        }
        if (rows.empty()) {
            m_atEnd = true;
            return;
        }
        beginInsertRows(QModelIndex(), before, before + int(rows.size()) - 1);
        store(page, std::move(rows));
        endInsertRows();
    }

    QVariant value(int row, int column) const
    {
        if (row < 0 || row >= m_rows || column < 0 || column >= m_fields.size())
            return QVariant();
        const Rows* page = pageOf(row);
        const int at = row % pageSize;
        if (!page || at >= int(page->size()))
            return QVariant();
        return page->at(at).value(column);
    }

    int fieldIndex(const QString& field) const
    {
        for (int i = 0; i < m_fields.size(); ++i) {
            if (m_fields.at(i).compare(field, Qt::CaseInsensitive) == 0)
                return i;
        }
        return -1;
    }

    int pagesHeld() const { return int(m_pages.size()); }

private:
    // No list: nothing read, nothing kept.
    void forget()
    {
        m_pager.reset();
        m_pages.clear();
        m_starts = {QVariantList()};
        m_pagesRead = 0;
        m_rows = 0;
        m_atEnd = true;
        m_fields.clear();
        m_headings.clear();
    }

    // Reads page n: from the start, or after the last row of page n - 1.
    bool read(int n, Rows* rows, QString* error) const
    {
        if (!m_pager)
            return false;
        const QVariantList after = m_starts.at(n);
        QStringList fields;
        if (!m_pager->page(after, pageSize, rows, &fields, error))
            return false;
        if (m_fields.isEmpty())
            m_fields = fields;
        return true;
    }

    bool readPage(int n, QString* error)
    {
        Rows rows;
        if (!read(n, &rows, error))
            return false;
        store(n, std::move(rows));
        return true;
    }

    // Keeps a page that continues the list, and notes where the page after it starts.
    void store(int n, Rows rows)
    {
        if (rows.size() < size_t(pageSize))
            m_atEnd = true;
        if (n == m_pagesRead) {
            ++m_pagesRead;
            m_rows += int(rows.size());
            if (!m_atEnd)
                m_starts.push_back(m_pager->orderValues(rows.back()));
        }
        keep(n, std::move(rows));
    }

    void keep(int n, Rows rows) const
    {
        m_pages[n] = std::move(rows);
        // Drops the page farthest from the one just read.
        while (int(m_pages.size()) > pagesKept) {
            const auto first = m_pages.begin();
            const auto last = std::prev(m_pages.end());
            m_pages.erase(n - first->first > last->first - n ? first : last);
        }
    }

    const Rows* pageOf(int row) const
    {
        const int n = row / pageSize;
        auto it = m_pages.find(n);
        if (it == m_pages.end()) {
            Rows rows;
            if (!read(n, &rows, nullptr))
                return nullptr;
            keep(n, std::move(rows));
            it = m_pages.find(n);
        }
        return &it->second;
    }

    const Database& m_db;
    std::unique_ptr<ListPager> m_pager;
    mutable std::map<int, Rows> m_pages;
    // Order values of the row before each page read or next to read; empty for the first.
    std::vector<QVariantList> m_starts{QVariantList()};
    int m_pagesRead = 0;
    int m_rows = 0;
    bool m_atEnd = true;
    mutable QStringList m_fields;
    QMap<int, QString> m_headings;
};

ListSource::ListSource(Database& db, QObject* parent)
    : QObject(parent), m_db(db), m_model(new PagedListModel(db, this))
{
}

ListSource::~ListSource() = default;

void ListSource::setRecordSource(const ListQuery& query)
{
    m_query = query;
}

bool ListSource::refresh(QString* error)
{
    QString e;
    const bool ok = m_model->reset(m_query, &e);
    if (!ok) {
        m_model->clear();
        if (error)
            *error = e;
    }
    // The first row is the current one as soon as the list is shown.
    if (ok && m_grid && m_grid->selectionModel() && m_model->rowCount() > 0) {
        int column = 0;
        while (column < m_model->columnCount() && m_grid->isColumnHidden(column))
            ++column;
        m_grid->selectionModel()->setCurrentIndex(m_model->index(0, column),
                                                  QItemSelectionModel::ClearAndSelect
                                                          | QItemSelectionModel::Rows);
    }
    emit refreshed();
    return ok;
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

int ListSource::rowCount() const
{
    return m_model->rowCount();
}

bool ListSource::canReadMore() const
{
    return m_model->canFetchMore(QModelIndex());
}

void ListSource::readMore()
{
    m_model->fetchMore(QModelIndex());
}

int ListSource::pagesHeld() const
{
    return m_model->pagesHeld();
}

int ListSource::columnIndex(const QString& field) const
{
    return m_model->fieldIndex(field);
}

QVariant ListSource::value(int row, const QString& field) const
{
    return value(row, columnIndex(field));
}

QVariant ListSource::value(int row, int column) const
{
    return m_model->value(row, column);
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
        QString field = model->headerData(c, Qt::Horizontal, FieldNameRole).toString();
        if (field.isEmpty())
            field = model->headerData(c, Qt::Horizontal).toString();
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
