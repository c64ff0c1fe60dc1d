#include "search/ListPrint.h"

#include "platform/Database.h"
#include "platform/Printer.h"

#include <QDate>

namespace search {

namespace {

constexpr int rowsPerPage = 65;
// Rows read from the database at a time.
constexpr int readBatch = 1000;
// Column 3 is cut at this width in both lists, whatever its own width.
constexpr int thirdColumnLimit = 3750;

struct Layout
{
    QString title;
    QStringList fields;
    int widths[3];
};

Layout layoutFor(const PrintedList& list)
{
    if (list.fields.size() == 4 && list.widths.size() == 3)
        return {list.title, list.fields, {list.widths.at(0), list.widths.at(1), list.widths.at(2)}};
    if (list.clients)
        return {QStringLiteral("Ügyféllista"),
                {QStringLiteral("unev1"), QStringLiteral("uirsz"), QStringLiteral("uhely"),
                 QStringLiteral("uutca")},
                {3350, 700, 3800}};
    return {QStringLiteral("Ügyek listája"),
            {QStringLiteral("ugyszam"), QStringLiteral("unev1"), QStringLiteral("ugytipus"),
             QStringLiteral("ellnev")},
            {1000, 3350, 3000}};
}

// Drops characters from the end until the text fits the width.
QString shortened(QString text, int limitTwips, const QFont& font)
{
    while (!text.isEmpty() && platform::textWidthTwips(font, text) > limitTwips)
        text.chop(1);
    return text;
}

// Numbers print with a blank before and after them, as the office's lists always had.
QString printedNumber(int n)
{
    return QStringLiteral(" %1 ").arg(n);
}

class ListLayout
{
public:
    ListLayout(platform::Printer& printer, const PrintedList& list)
        : m_printer(printer), m_list(list), m_layout(layoutFor(list))
    {
        m_x[0] = 100;
        for (int i = 1; i < 4; ++i)
            m_x[i] = m_x[i - 1] + m_layout.widths[i - 1] + 50;
    }

    const QStringList& fields() const { return m_layout.fields; }

    void header()
    {
        const QSize page = m_printer.pageSize();
        m_printer.setFontSize(14);
        m_printer.text(page.width() / 2 - 1000, 200, m_layout.title);
        m_printer.setFontSize(8);
        m_printer.setBold(true);
        m_printer.text(page.width() / 2 + 4000, 200,
                       QStringLiteral("Dátum: ")
                               + QDate::currentDate().toString(QStringLiteral("yyyy.MM.dd")));
        for (int i = 0; i < 4; ++i)
            m_printer.text(m_x[i], 600, m_list.headings.value(i));
        m_printer.line(100, 800, page.width() - 100, 800);
        m_y = 900;
        m_printer.setBold(false);
        m_printer.setFontSize(10);
    }

    void row(const QStringList& values)
    {
        const int limits[3] = {m_layout.widths[0], m_layout.widths[1], thirdColumnLimit};
        for (int i = 0; i < 3; ++i)
            m_printer.text(m_x[i], m_y, shortened(values.at(i), limits[i], m_list.measureFont));
        m_printer.text(m_x[3], m_y, values.at(3));
        m_y += m_printer.lineHeight();
    }

    void footer(int page, int pages)
    {
        const QSize size = m_printer.pageSize();
        m_printer.line(100, size.height() - 600, size.width() - 100, size.height() - 600);
        m_printer.setFontSize(10);
        m_printer.text(size.width() / 2 - 500, size.height() - 300,
                       printedNumber(page) + QStringLiteral(" / ") + printedNumber(pages));
    }

private:
    platform::Printer& m_printer;
    const PrintedList& m_list;
    Layout m_layout;
    int m_x[4];
    int m_y = 0;
};

} // namespace

PrintResult listanyomtatas(const PrintedList& list, platform::Database& db,
                           platform::Printer* printer, QString* error)
{
    if (!printer)
        return PrintResult::NoPrinter;
    ListLayout layout(*printer, list);
    auto fail = [&](const QString& why) {
        printer->cancel();
        if (error)
            *error = why;
        return PrintResult::Failed;
    };

    // The list is read a page at a time in its own order, so a register of any size prints
    // without being held in memory whole.
    const platform::ListPager pager(db, list.query);
    QString readError;
    const qint64 total = pager.count(&readError);
    if (!readError.isEmpty())
        return fail(readError);
    if (total == 0)
        return fail(QStringLiteral("The list is empty."));

    const qint64 pages = (total + rowsPerPage - 1) / rowsPerPage;
    int page = 1;
    int rowOnPage = 1;
    bool headerDue = true;
    qint64 printed = 0;
    QVariantList after;
    while (printed < total) {
        platform::Rows rows;
        if (!pager.page(after, readBatch, &rows, nullptr, &readError))
            return fail(readError);
        // Rows deleted meanwhile on another workstation end the list early.
        if (rows.empty())
            break;
        after = pager.orderValues(rows.back());
        for (const platform::Row& row : rows) {
            if (printed == total)
                break;
            if (headerDue) {
                layout.header();
                headerDue = false;
            }
            QStringList values;
            for (const QString& field : layout.fields()) {
                const QString v = row.text(field);
                values << (v.isEmpty() ? QStringLiteral(" ") : v);
            }
            layout.row(values);
            ++printed;
            if (++rowOnPage == rowsPerPage + 1) {
                layout.footer(page, int(pages));
                ++page;
                rowOnPage = 1;
                headerDue = true;
                if (printed < total)
                    printer->newPage();
            }
        }
    }
    if (rowOnPage > 1)
        layout.footer(page, int(pages));
    QString endError;
    if (!printer->end(&endError))
        return fail(endError);
    return PrintResult::Printed;
}

} // namespace search
