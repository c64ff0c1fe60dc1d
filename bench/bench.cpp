// Times the search screen on a large data folder (made by causora-bench-generate) and writes
// the figures as JSON. Each figure is the median of several runs.
#include "platform/Display.h"
#include "platform/ListSource.h"
#include "platform/Printer.h"
#include "search/ListPrint.h"
#include "search/keres.h"
#include "session/Session.h"
#include "store/DataLocation.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTextStream>
#include <algorithm>
#include <functional>

namespace {

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

double timeMs(const std::function<void()>& step, int runs)
{
    QList<double> ms;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer t;
        t.start();
        step();
        ms << t.nsecsElapsed() / 1e6;
    }
    return median(ms);
}

double peakMemoryMb()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    }
    return -1;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QTextStream err(stderr);
    if (argc != 3) {
        err << "usage: causora-bench <data folder> <result.json>\n";
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    QTemporaryDir program;
    platform::setProgramFolder(program.path());
    QFile ini(program.filePath(QStringLiteral("jog.ini")));
    if (!ini.open(QIODevice::WriteOnly) || ini.write(store::settingsLine(folder).toLocal8Bit()) < 0)
        return 1;
    ini.close();
    if (!Session::instance().start()) {
        err << "the data folder did not open\n";
        return 1;
    }
    const int runs = 7;
    QJsonObject result;

    keres screen;
    auto* ker2 = screen.findChild<QLineEdit*>(QStringLiteral("ker2"));

    // The full case list: from the query until its first rows are in the grid.
    screen.setTipus(QStringLiteral("2"));
    result[QStringLiteral("cases_activate_ms")] = timeMs([&] { screen.Activate(); }, runs);
    result[QStringLiteral("cases_activate_rows")] = screen.forras().rowCount();
    result[QStringLiteral("peak_memory_mb")] = peakMemoryMb();

    result[QStringLiteral("cases_filter_ms")] = timeMs(
            [&] {
                ker2->setText(QStringLiteral("Kov"));
                screen.szukites();
            },
            runs);
    result[QStringLiteral("cases_filter_rows")] = screen.forras().rowCount();
    result[QStringLiteral("cases_filter_sql")] = screen.forras().recordSource().text();

    screen.Activate();
    result[QStringLiteral("cases_activate_sql")] = screen.forras().recordSource().text();
    const platform::ListQuery allCases = screen.forras().recordSource();

    screen.setTipus(QStringLiteral("1"));
    result[QStringLiteral("clients_activate_ms")] = timeMs([&] { screen.Activate(); }, runs);
    result[QStringLiteral("clients_activate_sql")] = screen.forras().recordSource().text();
    result[QStringLiteral("clients_activate_rows")] = screen.forras().rowCount();

    // 10,000 case rows printed to a PDF file.
    search::PrintedList list;
    list.clients = false;
    // The first 10,000 cases: those numbered below the 10,001st case's number.
    list.query = allCases;
    {
        const platform::Row row = Session::instance().database.first(
                allCases.text() + QStringLiteral(" LIMIT 1 OFFSET 10000"));
        list.query.where = QStringLiteral("(ugyek.ugyszamertek, ugyek.ugyszam) < (?, ?)");
        list.query.params = {Session::instance().database.scalar(
                                     QStringLiteral("SELECT ugyszamertek FROM ugyek WHERE ugyszam = ?"),
                                     {row.text(QStringLiteral("ugyszam"))}),
                             row.text(QStringLiteral("ugyszam"))};
    }
    list.headings = QStringList{QStringLiteral("Ügyszám"), QStringLiteral("Ügyfél"),
                                QStringLiteral("Ügytípus"), QStringLiteral("Ellenfél")};
    list.measureFont = screen.font();
    const QString pdf = program.filePath(QStringLiteral("lista.pdf"));
    bool printed = true;
    result[QStringLiteral("print_10000_ms")] = timeMs(
            [&] {
                platform::PdfPrinter printer(pdf);
                printed = search::listanyomtatas(list, Session::instance().database, &printer)
                                == search::PrintResult::Printed
                        && printed;
            },
            3);
    result[QStringLiteral("print_ok")] = printed;

    // With the whole case list read into the grid, for comparison.
    screen.setTipus(QStringLiteral("2"));
    screen.Activate();
    while (screen.forras().canReadMore())
        screen.forras().readMore();
    result[QStringLiteral("peak_memory_all_rows_mb")] = peakMemoryMb();

    QFile out(QString::fromLocal8Bit(argv[2]));
    if (!out.open(QIODevice::WriteOnly))
        return 1;
    out.write(QJsonDocument(result).toJson());
    return 0;
}
