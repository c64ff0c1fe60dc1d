#pragma once

#include <memory>
#include <QList>
#include <QString>
#include <QStringList>

class QFileDevice;

namespace platform {

// Writes a list into a file: the headings first, then the rows one at a time, so that no more
// than a page of the list is held at once.
class ListWriter
{
public:
    virtual ~ListWriter() = default;
    // headings and widthsTwips have one entry per column (a width of 0 leaves it to the reader).
    virtual bool begin(const QString& title, const QStringList& headings,
                       const QList<int>& widthsTwips)
            = 0;
    virtual bool row(const QStringList& values) = 0;
    // Completes the file's content; the caller then puts the file in place.
    virtual bool finish() = 0;
    virtual QString errorString() const = 0;
};

// CSV as office spreadsheets open it in Hungarian settings: UTF-8 with a byte-order mark, ";"
// between fields, CR LF after each row; a field holding ";", a double quote, a line break or
// blanks at either end is quoted, its quotes doubled.
std::unique_ptr<ListWriter> csvWriter(QFileDevice& file);
// An OpenDocument spreadsheet: one sheet named by the title, the headings in bold as its first
// row, every value a text cell.
std::unique_ptr<ListWriter> odsWriter(QFileDevice& file);

} // namespace platform
