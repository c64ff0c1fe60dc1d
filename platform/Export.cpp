#include "platform/Export.h"

#include "platform/Database.h"
#include "platform/Dialogs.h"
#include "platform/Display.h"
#include "platform/ExportFormats.h"
#include "platform/ListSource.h"

#include <QDir>
#include <QHeaderView>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTableView>

namespace platform {

namespace {

// Rows read from the database at a time: large enough that the statements cost little beside
// the writing, small enough that a page is a few hundred kilobytes at most.
constexpr int readBatch = 2000;

// The items of a select list, split at the commas that stand outside parentheses and quotes.
QStringList selectItems(const QString& columns)
{
    QStringList items;
    int depth = 0;
    QChar quote;
    qsizetype start = 0;
    for (qsizetype i = 0; i < columns.size(); ++i) {
        const QChar c = columns.at(i);
        if (!quote.isNull()) {
            if (c == quote)
                quote = QChar();
        } else if (c == u'\'' || c == u'"' || c == u'[' || c == u'`') {
            quote = c == u'[' ? QChar(u']') : c;
        } else if (c == u'(') {
            ++depth;
        } else if (c == u')') {
            --depth;
        } else if (c == u',' && depth == 0) {
            items << columns.mid(start, i - start).trimmed();
            start = i + 1;
        }
    }
    items << columns.mid(start).trimmed();
    return items;
}

// The select list cut down to the exported columns, so that a page carries only what is
// written: a list's query may read five times as many columns as its grid shows. An item is
// kept when the name it gives its column (its alias, or a column's own name after any table
// name) is an exported field, and so is any item whose name cannot be told. When a field is
// named by no item the whole list is kept, and the export then reports the missing column.
QString exportedColumns(const QString& columns, const QList<ExportColumn>& exported)
{
    static const QRegularExpression alias(QStringLiteral("\\s+AS\\s+\"?(\\w+)\"?$"),
                                          QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression column(QStringLiteral("^(?:\\w+\\.)*(\\w+)$"));
    QStringList wanted;
    for (const ExportColumn& c : exported)
        wanted << c.field;
    QStringList kept;
    QStringList named;
    for (const QString& item : selectItems(columns)) {
        QRegularExpressionMatch m = alias.match(item);
        if (!m.hasMatch())
            m = column.match(item);
        if (!m.hasMatch() || wanted.contains(m.captured(1))) {
            kept << item;
            named << m.captured(1);
        }
    }
    for (const QString& field : std::as_const(wanted)) {
        if (!named.contains(field))
            return columns;
    }
    return kept.join(QStringLiteral(", "));
}

} // namespace

QList<ExportColumn> gridExportColumns(const QTableView* grid)
{
    QList<ExportColumn> columns;
    const QAbstractItemModel* model = grid->model();
    if (!model)
        return columns;
    const QHeaderView* header = grid->horizontalHeader();
    for (int visual = 0; visual < header->count(); ++visual) {
        const int c = header->logicalIndex(visual);
        if (grid->isColumnHidden(c))
            continue;
        columns << ExportColumn{model->headerData(c, Qt::Horizontal, FieldNameRole).toString(),
                                model->headerData(c, Qt::Horizontal).toString(),
                                pixelsToTwips(grid->columnWidth(c))};
    }
    return columns;
}

ExportFormat exportFormatFor(const QString& path)
{
    return path.endsWith(QLatin1String(".ods"), Qt::CaseInsensitive) ? ExportFormat::Ods
                                                                     : ExportFormat::Csv;
}

ExportResult exportList(const Database& db, const ExportedList& list, const QString& path,
                        ExportFormat format, Progress* progress)
{
    ExportResult result;
    result.path = path;
    QSaveFile file(path);
    auto end = [&](ExportOutcome outcome, const QString& error) {
        file.cancelWriting();
        result.outcome = outcome;
        result.error = error;
        return result;
    };

    ListQuery query = list.query;
    query.columns = exportedColumns(query.columns, list.columns);
    const ListPager pager(db, query);
    QString error;
    const qint64 total = pager.count(&error);
    if (!error.isEmpty())
        return end(ExportOutcome::ReadFailed, error);

    if (!file.open(QIODevice::WriteOnly))
        return end(ExportOutcome::WriteFailed, file.errorString());
    const std::unique_ptr<ListWriter> writer
            = format == ExportFormat::Ods ? odsWriter(file) : csvWriter(file);
    QStringList headings;
    QList<int> widths;
    for (const ExportColumn& c : list.columns) {
        headings << c.heading;
        widths << c.widthTwips;
    }
    if (!writer->begin(list.title, headings, widths))
        return end(ExportOutcome::WriteFailed, writer->errorString());

    // Where each exported column stands in a row of the list, found on the first page.
    QList<int> at;
    QVariantList after;
    QStringList values;
    for (;;) {
        Rows rows;
        QStringList names;
        if (!pager.page(after, readBatch, &rows, &names, &error))
            return end(ExportOutcome::ReadFailed, error);
        if (at.isEmpty()) {
            for (const ExportColumn& c : list.columns) {
                at << int(names.indexOf(c.field));
                if (at.last() < 0)
                    return end(ExportOutcome::ReadFailed,
                               QStringLiteral("The list has no column %1.").arg(c.field));
            }
        }
        for (const Row& row : rows) {
            values.clear();
            for (const int i : std::as_const(at))
                values << row.value(i).toString();
            if (!writer->row(values))
                return end(ExportOutcome::WriteFailed, writer->errorString());
        }
        result.rows += qint64(rows.size());
        // Rows that other workstations add meanwhile may carry the count past the total.
        if (progress && !progress->advance(result.rows, qMax(total, result.rows)))
            return end(ExportOutcome::Cancelled, QString());
        if (rows.size() < size_t(readBatch))
            break;
        after = pager.orderValues(rows.back());
    }
    if (!writer->finish())
        return end(ExportOutcome::WriteFailed, writer->errorString());
    if (!file.commit())
        return end(ExportOutcome::WriteFailed, file.errorString());
    result.outcome = ExportOutcome::Written;
    return result;
}

ExportResult exportListAs(const Database& db, const ExportedList& list, const ExportTexts& texts,
                          QWidget* parent)
{
    QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (folder.isEmpty() || !QDir(folder).exists())
        folder = QDir::homePath();
    QString name = list.title.trimmed();
    name.replace(u'/', u'_').replace(u'\\', u'_');
    if (!name.isEmpty())
        folder += u'/' + name + QStringLiteral(".csv");
    const QString path = chooseFile({FileDialogKind::Save, texts.dialogCaption, folder,
                                     QStringLiteral("CSV (*.csv);;OpenDocument (*.ods)")},
                                    parent);
    if (path.isEmpty())
        return ExportResult();
    const std::unique_ptr<Progress> progress = openProgress(texts.progress, parent);
    return exportList(db, list, path, exportFormatFor(path), progress.get());
}

} // namespace platform
