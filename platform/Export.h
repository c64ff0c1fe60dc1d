#pragma once

#include "platform/ListQuery.h"
#include "platform/Progress.h"

#include <QList>
#include <QString>

class QTableView;
class QWidget;

namespace platform {

class Database;

// A column of an exported list: the data field as the list's query names it (matched exactly),
// its heading, and its width in twips (0: the reader's own).
struct ExportColumn
{
    QString field;
    QString heading;
    int widthTwips = 0;
};

// The visible columns of a grid bound to a list, left to right as the grid shows them, with
// the grid's headings and widths.
QList<ExportColumn> gridExportColumns(const QTableView* grid);

// A list to export: what to read, which columns, and the sheet's name in a spreadsheet.
struct ExportedList
{
    ListQuery query;
    QList<ExportColumn> columns;
    QString title;
};

enum class ExportFormat { Csv, Ods };
// The format a file name asks for: ".ods" an OpenDocument spreadsheet, anything else CSV.
ExportFormat exportFormatFor(const QString& path);

enum class ExportOutcome {
    Written,
    Cancelled, // by the user, at the file dialog or while writing
    ReadFailed, // the database refused a page; Database::lastFailure() tells why
    WriteFailed, // the file could not be written
};

struct ExportResult
{
    ExportOutcome outcome = ExportOutcome::Cancelled;
    QString path;
    QString error;
    qint64 rows = 0;
};

// Writes the list into the file a page at a time, reporting each page to the progress (which
// may cancel). The file is written beside the target and put in place only when it is
// complete: a cancelled or failed export leaves any earlier file of that name as it was.
ExportResult exportList(const Database& db, const ExportedList& list, const QString& path,
                        ExportFormat format, Progress* progress = nullptr);

// The texts of an export in the user's language: the save dialog's title and the progress
// window's.
struct ExportTexts
{
    QString dialogCaption;
    ProgressRequest progress;
};

// Asks for the file with the save dialog (CSV or OpenDocument spreadsheet), then writes it
// with a progress window the user may cancel. Choosing no file gives Cancelled and no path.
ExportResult exportListAs(const Database& db, const ExportedList& list, const ExportTexts& texts,
                          QWidget* parent = nullptr);

} // namespace platform
