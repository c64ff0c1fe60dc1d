#pragma once

#include "platform/ListQuery.h"

#include <QFont>
#include <QString>
#include <QStringList>
#include <QVariantList>

namespace platform {
class Database;
class Printer;
} // namespace platform

namespace search {

// The list the search screen shows, as printing needs it.
struct PrintedList
{
    bool clients = true; // mode "1"; anything else prints the case list
    platform::ListQuery query; // the screen's current list
    QStringList headings; // the four column headings, in the session's language
    QFont measureFont; // the screen's font: fields are shortened by their width in it
    // Another list's layout: its title, its four fields and the widths of the first three in
    // twips. Left empty, the client or case layout above is printed.
    QString title;
    QStringList fields;
    QList<int> widths;
};

enum class PrintResult { Printed, NoPrinter, Failed };

// Prints the list: a header with the title, the date and the headings, four columns with
// 65 rows a page, and a footer with the page number. On any failure the document is cancelled
// and Failed is returned; the caller tells the user.
PrintResult listanyomtatas(const PrintedList& list, platform::Database& db,
                           platform::Printer* printer, QString* error = nullptr);

} // namespace search
