// Times the program on a large data folder (made by causora-bench-generate) and writes the
// figures of one measure as a JSON object to its standard output. Each measure runs in a
// process of its own, so that its peak memory (VmHWM, which never goes down) is its own.
//
//   causora-bench lists FOLDER     first rows of the lists, a filter, 10,000 cases to PDF
//   causora-bench page FOLDER      the whole case list paged through the search screen's grid
//   causora-bench print FOLDER     the whole case register printed to PDF
//   causora-bench record FOLDER    the same recorded for the preview
//   causora-bench check FOLDER     the structure check, bounded as at start-up and in full
//   causora-bench save FOLDER      durable saves of one client
//   causora-bench export FOLDER    the whole case list exported to CSV and to a spreadsheet
//   causora-bench case FOLDER      a case opened from the whole case list and saved
//   causora-bench startup FOLDER PROGRAM
//                                  the program's start to an idle main menu, on the folder and
//                                  on an empty register
#include "cases/Install.h"
#include "cases/Ugyek.h"
#include "platform/Database.h"
#include "platform/Display.h"
#include "platform/Export.h"
#include "platform/ListSource.h"
#include "platform/Printer.h"
#include "platform/StructureCheck.h"
#include "search/ListPrint.h"
#include "search/keres.h"
#include "session/Session.h"
#include "store/Cases.h"
#include "store/Catalogue.h"
#include "store/Clients.h"
#include "store/Conflicts.h"
#include "store/DataLocation.h"
#include "store/Prepare.h"

#include <algorithm>
#include <climits>
#include <ctime>
#include <fcntl.h>
#include <functional>
#include <unistd.h>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

QTextStream& err()
{
    static QTextStream stream(stderr);
    return stream;
}

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

// Processor time of the calling thread or of the whole process: on a busy machine it tells
// what a step takes when it has a core to itself.
double cpuMs(clockid_t clock)
{
    timespec ts{};
    clock_gettime(clock, &ts);
    return ts.tv_sec * 1e3 + ts.tv_nsec / 1e6;
}
// The check runs in a thread of its own: its processor time is the process's.
double processCpuMs()
{
    return cpuMs(CLOCK_PROCESS_CPUTIME_ID);
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

QJsonArray toJson(const QList<double>& values)
{
    QJsonArray a;
    for (double v : values)
        a << v;
    return a;
}

// A program folder whose jog.ini names the data folder.
bool writeSettings(const QString& programFolder, const QString& dataFolder)
{
    QFile ini(programFolder + QStringLiteral("/jog.ini"));
    return ini.open(QIODevice::WriteOnly)
           && ini.write(store::settingsLine(dataFolder).toLocal8Bit()) >= 0;
}

platform::Database& db();

// Opens the data folder the way the program does at start-up.
bool openFolder(const QString& folder, const QTemporaryDir& program)
{
    platform::setProgramFolder(program.path());
    if (!writeSettings(program.path(), folder) || !Session::instance().start(db())) {
        err() << "the data folder did not open\n";
        return false;
    }
    return true;
}

// The benchmark's one open database, whose catalogue the session reads messages from.
platform::Database& db()
{
    static platform::Database database;
    static const store::Catalogue catalogue(database);
    static const bool wired = [] {
        Session::instance().catalogue = &catalogue;
        // The connection must close while Qt SQL still exists, not at static destruction.
        qAddPostRoutine([] { database.close(); });
        return true;
    }();
    Q_UNUSED(wired);
    return database;
}

// The case list as the search screen prints it.
search::PrintedList caseList(const keres& screen)
{
    search::PrintedList list;
    list.clients = false;
    list.query = screen.forras().recordSource();
    list.headings = QStringList{QStringLiteral("Ügyszám"), QStringLiteral("Ügyfél"),
                                QStringLiteral("Ügytípus"), QStringLiteral("Ellenfél")};
    list.measureFont = screen.font();
    return list;
}

bool lists(const QString& folder, const QTemporaryDir& program, QJsonObject& result)
{
    if (!openFolder(folder, program))
        return false;
    const int runs = 7;
    keres screen(db());
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
    search::PrintedList list = caseList(screen);
    const platform::ListQuery allCases = list.query;

    screen.setTipus(QStringLiteral("1"));
    result[QStringLiteral("clients_activate_ms")] = timeMs([&] { screen.Activate(); }, runs);
    result[QStringLiteral("clients_activate_sql")] = screen.forras().recordSource().text();
    result[QStringLiteral("clients_activate_rows")] = screen.forras().rowCount();

    // The first 10,000 cases: those numbered below the 10,001st case's number.
    {
        const platform::Row row
                = db().first(allCases.text() + QStringLiteral(" LIMIT 1 OFFSET 10000"));
        list.query.where = QStringLiteral("(ugyek.ugyszamertek, ugyek.ugyszam) < (?, ?)");
        list.query.params = {db().scalar(QStringLiteral("SELECT ugyszamertek FROM ugyek"
                                                        " WHERE ugyszam = ?"),
                                         {row.text(QStringLiteral("ugyszam"))}),
                             row.text(QStringLiteral("ugyszam"))};
    }
    const QString pdf = program.filePath(QStringLiteral("lista.pdf"));
    bool printed = true;
    result[QStringLiteral("print_10000_ms")] = timeMs(
            [&] {
                platform::PdfPrinter printer(pdf);
                printed = search::listanyomtatas(list, db(), &printer)
                                  == search::PrintResult::Printed
                          && printed;
            },
            3);
    return printed;
}

// Pages the whole case list through the search screen's grid, as a user holding the scroll
// bar at the bottom does: each round scrolls to the last row, lets the grid read the next page
// and paint, and reads the data of every visible cell.
bool page(const QString& folder, const QTemporaryDir& program, QJsonObject& result)
{
    if (!openFolder(folder, program))
        return false;
    keres screen(db());
    screen.setTipus(QStringLiteral("2"));
    screen.resize(1000, 700);
    screen.show();
    screen.Activate();
    QCoreApplication::processEvents();
    auto* grid = screen.findChild<QTableView*>(QStringLiteral("DataGrid1"));
    platform::ListSource& source = screen.forras();
    const qint64 total = db().scalar(QStringLiteral("SELECT count(*) FROM ugyek")).toLongLong();
    result[QStringLiteral("page_memory_before_mb")] = peakMemoryMb();

    QAbstractItemModel* model = grid->model();
    qint64 cells = 0;
    int rounds = 0;
    int stalled = 0;
    // The part of each round spent reading the page: from the scroll until the model
    // announces the new rows.
    QElapsedTimer round;
    double readMs = 0;
    QObject::connect(model, &QAbstractItemModel::rowsAboutToBeInserted, model,
                     [&] { readMs += round.nsecsElapsed() / 1e6; });
    QElapsedTimer t;
    t.start();
    const double cpu = cpuMs(CLOCK_PROCESS_CPUTIME_ID);
    while (source.canReadMore() && stalled < 50) {
        const int before = source.rowCount();
        round.start();
        grid->scrollToBottom();
        QCoreApplication::processEvents();
        const int top = grid->rowAt(0);
        int bottom = grid->rowAt(grid->viewport()->height() - 1);
        if (bottom < 0)
            bottom = model->rowCount() - 1;
        for (int r = std::max(top, 0); r <= bottom; ++r) {
            for (int c = 0; c < model->columnCount(); ++c) {
                if (!grid->isColumnHidden(c) && model->data(model->index(r, c)).isValid())
                    ++cells;
            }
        }
        ++rounds;
        stalled = source.rowCount() == before ? stalled + 1 : 0;
    }
    const double ms = t.nsecsElapsed() / 1e6;
    result[QStringLiteral("page_all_cpu_ms")] = cpuMs(CLOCK_PROCESS_CPUTIME_ID) - cpu;
    const int rows = source.rowCount();
    const int pages = (rows + 255) / 256;
    result[QStringLiteral("page_all_ms")] = ms;
    result[QStringLiteral("page_rows")] = rows;
    result[QStringLiteral("page_pages")] = pages;
    result[QStringLiteral("page_rounds")] = rounds;
    result[QStringLiteral("page_per_page_ms")] = ms / std::max(pages, 1);
    result[QStringLiteral("page_read_ms")] = readMs;
    result[QStringLiteral("page_cells_read")] = double(cells);
    result[QStringLiteral("page_pages_held")] = source.pagesHeld();
    result[QStringLiteral("page_peak_memory_mb")] = peakMemoryMb();
    // The last row in the grid is the last case of the list.
    const platform::ListQuery all = source.recordSource();
    const QString last = db().first(all.text() + QStringLiteral(" LIMIT 1 OFFSET ?"),
                                    QVariantList(all.params) << qlonglong(total - 1))
                                 .text(QStringLiteral("ugyszam"));
    const QString shown = source.value(rows - 1, QStringLiteral("ugyszam")).toString();
    if (rows != total || shown != last) {
        err() << "the grid holds " << rows << " rows ending with " << shown << "; the list has "
              << total << " ending with " << last << "\n";
        return false;
    }
    return true;
}

bool print(const QString& folder, const QTemporaryDir& program, QJsonObject& result, bool toPdf)
{
    if (!openFolder(folder, program))
        return false;
    keres screen(db());
    screen.setTipus(QStringLiteral("2"));
    screen.Activate();
    const search::PrintedList list = caseList(screen);
    const QString key = toPdf ? QStringLiteral("print_all") : QStringLiteral("record_all");
    result[key + QStringLiteral("_memory_before_mb")] = peakMemoryMb();
    QElapsedTimer t;
    t.start();
    const double cpu = cpuMs(CLOCK_PROCESS_CPUTIME_ID);
    QString error;
    search::PrintResult printed;
    if (toPdf) {
        const QString pdf = program.filePath(QStringLiteral("lista.pdf"));
        platform::PdfPrinter printer(pdf);
        printed = search::listanyomtatas(list, db(), &printer, &error);
        result[key + QStringLiteral("_file_mb")] = QFileInfo(pdf).size() / 1048576.0;
    } else {
        platform::RecordingPrinter printer;
        printed = search::listanyomtatas(list, db(), &printer, &error);
        result[key + QStringLiteral("_held_mb")] = printer.memoryUsed() / 1048576.0;
    }
    result[key + QStringLiteral("_ms")] = t.nsecsElapsed() / 1e6;
    result[key + QStringLiteral("_cpu_ms")] = cpuMs(CLOCK_PROCESS_CPUTIME_ID) - cpu;
    result[key + QStringLiteral("_peak_memory_mb")] = peakMemoryMb();
    if (printed != search::PrintResult::Printed) {
        err() << "printing failed: " << error << "\n";
        return false;
    }
    return true;
}

// Exports the whole case list as the search screen's export button does, with its progress
// window, to CSV and to an OpenDocument spreadsheet, three times each.
bool exportAll(const QString& folder, const QTemporaryDir& program, QJsonObject& result)
{
    if (!openFolder(folder, program))
        return false;
    keres screen(db());
    screen.setTipus(QStringLiteral("2"));
    screen.Activate();
    platform::ExportedList list;
    list.query = screen.forras().recordSource();
    list.columns = platform::gridExportColumns(
            screen.findChild<QTableView*>(QStringLiteral("DataGrid1")));
    list.title = QStringLiteral("Ügyek");
    const QList<QPair<QString, platform::ExportFormat>> formats{
            {QStringLiteral("csv"), platform::ExportFormat::Csv},
            {QStringLiteral("ods"), platform::ExportFormat::Ods}};
    for (const auto& [name, format] : formats) {
        const QString path = program.filePath(QStringLiteral("lista.") + name);
        const QString key = QStringLiteral("export_") + name;
        QList<double> ms, cpu;
        for (int run = 0; run < 3; ++run) {
            const auto progress = platform::openProgress(
                    {QStringLiteral("Causora"), QStringLiteral("Export"), QStringLiteral("Mégse")},
                    &screen);
            QElapsedTimer t;
            t.start();
            const double cpuStart = cpuMs(CLOCK_PROCESS_CPUTIME_ID);
            const platform::ExportResult done
                    = platform::exportList(db(), list, path, format, progress.get());
            ms << t.nsecsElapsed() / 1e6;
            cpu << cpuMs(CLOCK_PROCESS_CPUTIME_ID) - cpuStart;
            if (done.outcome != platform::ExportOutcome::Written) {
                err() << "the export failed: " << done.error << "\n";
                return false;
            }
            result[key + QStringLiteral("_rows")] = done.rows;
        }
        result[key + QStringLiteral("_ms")] = median(ms);
        result[key + QStringLiteral("_cpu_ms")] = median(cpu);
        result[key + QStringLiteral("_runs")] = toJson(ms);
        result[key + QStringLiteral("_file_mb")] = QFileInfo(path).size() / 1048576.0;
    }
    result[QStringLiteral("export_peak_memory_mb")] = peakMemoryMb();
    return true;
}

// Asks the system to drop the data file from its file cache (only that file's pages).
void dropFromFileCache(const QString& file)
{
    const int fd = ::open(QFile::encodeName(file).constData(), O_RDONLY);
    if (fd < 0)
        return;
    ::posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED);
    ::close(fd);
}

bool check(const QString& folder, QJsonObject& result)
{
    const QString file = folder + QStringLiteral("/causora.mdb");
    // Each run opens the file anew, so that the engine's page cache starts empty as at
    // start-up; the system's file cache stays warm unless the file is dropped from it.
    auto once = [&](int budgetMs, bool* ok, double* cpuMs) {
        QElapsedTimer t;
        t.start();
        const double cpu = processCpuMs();
        platform::StructureCheck check(file, budgetMs);
        *ok = check.wait() && *ok;
        *cpuMs = processCpuMs() - cpu;
        return t.nsecsElapsed() / 1e6;
    };
    bool ok = true;
    QList<double> bounded, floor, full, fullCpu, uncached;
    double cpu = 0;
    for (int i = 0; i < 5; ++i) {
        bounded << once(300, &ok, &cpu);
        floor << once(1, &ok, &cpu);
    }
    for (int i = 0; i < 3; ++i) {
        full << once(INT_MAX, &ok, &cpu);
        fullCpu << cpu;
    }
    for (int i = 0; i < 3; ++i) {
        dropFromFileCache(file);
        uncached << once(300, &ok, &cpu);
    }
    once(INT_MAX, &ok, &cpu); // the file back in the cache for the measures after this one
    result[QStringLiteral("check_bounded_ms")] = median(bounded);
    // With a budget of 1 ms: the part of the check that its budget cannot cut short.
    result[QStringLiteral("check_floor_ms")] = median(floor);
    result[QStringLiteral("check_full_ms")] = median(full);
    // The processor time of the full check: what it takes on an otherwise idle machine.
    result[QStringLiteral("check_full_cpu_ms")] = median(fullCpu);
    result[QStringLiteral("check_uncached_ms")] = median(uncached);
    result[QStringLiteral("check_file_mb")] = QFileInfo(file).size() / 1048576.0;
    return ok;
}

// Saves one client again and again, each save a write transaction of its own committed to
// disk (the engine's defaults: the rollback journal, synchronous FULL), then adds new clients
// and removes them again, so that the folder stays as it was.
bool save(const QString& folder, const QTemporaryDir& program, QJsonObject& result)
{
    if (!openFolder(folder, program))
        return false;
    result[QStringLiteral("save_journal_mode")]
            = db().scalar(QStringLiteral("PRAGMA journal_mode")).toString();
    result[QStringLiteral("save_synchronous")]
            = db().scalar(QStringLiteral("PRAGMA synchronous")).toInt();
    store::Clients clients(db());
    const QVariant ukod = qlonglong(4242);
    const platform::Row row = clients.find(ukod);
    if (row.isEmpty()) {
        err() << "no client 4242\n";
        return false;
    }
    // What the client screen writes: every column of the client but its key.
    QVariantMap values;
    for (const QString& column : store::Clients::list().columns.split(u',')) {
        const QString name = column.trimmed();
        if (name != QLatin1String("ukod"))
            values.insert(name, row.value(name));
    }
    const QVariant phone = values.value(QStringLiteral("utel2"));
    bool ok = true;
    QList<double> changes;
    for (int i = 0; i < 50; ++i) {
        values.insert(QStringLiteral("utel2"),
                      QStringLiteral("06 1 555 %1").arg(i, 4, 10, QChar(u'0')));
        QElapsedTimer t;
        t.start();
        ok = clients.change(ukod, values).stored() && ok;
        changes << t.nsecsElapsed() / 1e6;
    }
    values.insert(QStringLiteral("utel2"), phone);
    ok = clients.change(ukod, values).stored() && ok;

    QList<double> adds;
    QVariantList added;
    for (int i = 0; i < 20; ++i) {
        values.insert(QStringLiteral("unev1"), QStringLiteral("Mérés Ügyfél %1").arg(i));
        QElapsedTimer t;
        t.start();
        const store::Written w = clients.add(values);
        adds << t.nsecsElapsed() / 1e6;
        ok = w.stored() && ok;
        if (w.stored())
            added << w.key;
    }
    for (const QVariant& key : added)
        ok = clients.remove(key).stored() && ok;
    result[QStringLiteral("save_change_ms")] = median(changes);
    result[QStringLiteral("save_add_ms")] = median(adds);
    result[QStringLiteral("save_change_runs")] = toJson(changes);
    return ok;
}

// Opens a case from the middle of the whole case list as the search screen hands it over (the
// case screen is made, reads the case, is shown and activated: captions and the choice lists,
// every client among them), then changes its remark and saves it. The case is given its own
// values back at the end.
bool caseScreen(const QString& folder, const QTemporaryDir& program, QJsonObject& result)
{
    if (!openFolder(folder, program))
        return false;
    Screens& screens = Session::instance().screens;
    cases::install(screens, db());
    keres search(db());
    search.setTipus(QStringLiteral("2"));
    search.Activate();
    const platform::ListQuery list = search.forras().recordSource();
    const qint64 middle
            = db().scalar(QStringLiteral("SELECT count(*) FROM ugyek")).toLongLong() / 2;
    const QString number = db().first(list.text() + QStringLiteral(" LIMIT 1 OFFSET ?"),
                                      QVariantList(list.params) << middle)
                                   .text(QStringLiteral("ugyszam"));
    const platform::Row original = store::Cases(db()).find(number);
    if (original.isEmpty()) {
        err() << "no case in the middle of the list\n";
        return false;
    }
    bool ok = true;
    QList<double> opens, saves;
    int clients = 0;
    for (int i = 0; i < 7; ++i) {
        QElapsedTimer t;
        t.start();
        screens.showCase({number, list, &search});
        cases::Ugyek* screen = nullptr;
        for (QWidget* w : QApplication::topLevelWidgets()) {
            if (auto* s = qobject_cast<cases::Ugyek*>(w); s && !s->isUnloading())
                screen = s;
        }
        if (!screen)
            return false;
        QCoreApplication::processEvents();
        if (!screen->isActiveWindow())
            screen->Activate();
        opens << t.nsecsElapsed() / 1e6;
        clients = screen->findChild<QComboBox*>(QStringLiteral("ugyfelnev"))->count();

        screen->findChild<QPushButton*>(QStringLiteral("g4"))->click();
        const QString remark = QStringLiteral("Mérés %1").arg(i);
        screen->findChild<QLineEdit*>(QStringLiteral("megjegyzes"))->setText(remark);
        t.restart();
        screen->findChild<QPushButton*>(QStringLiteral("g5"))->click();
        saves << t.nsecsElapsed() / 1e6;
        ok = store::Cases(db()).find(number).text(QStringLiteral("megjegyzes")) == remark && ok;
        screen->unload(false);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    QVariantMap values;
    for (const QString& column : original.names()) {
        if (column != QLatin1String("ugyszamertek"))
            values.insert(column, original.value(column));
    }
    ok = store::Cases(db()).change(number, values).stored() && ok;
    result[QStringLiteral("case_open_ms")] = median(opens);
    result[QStringLiteral("case_save_ms")] = median(saves);
    result[QStringLiteral("case_open_runs")] = toJson(opens);
    result[QStringLiteral("case_clients_listed")] = clients;
    if (!ok)
        err() << "a save of case " << number << " was not stored\n";
    return ok;
}

// Runs the program until it reports its main menu idle; the time from the start of the
// process to that report, in ms, or -1 when it did not come.
double startOnce(const QString& executable)
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("CAUSORA_EXIT_WHEN_READY"), QStringLiteral("1"));
    p.setProcessEnvironment(env);
    p.setStandardErrorFile(QProcess::nullDevice());
    QElapsedTimer t;
    t.start();
    p.start(executable, QStringList());
    while (!p.canReadLine() && p.state() != QProcess::NotRunning && t.elapsed() < 30000)
        p.waitForReadyRead(1000);
    const double ms = t.nsecsElapsed() / 1e6;
    const bool ready = p.readLine().trimmed() == "ready";
    if (!p.waitForFinished(30000))
        p.kill();
    return ready && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0 ? ms : -1;
}

bool startup(const QString& folder, const QString& executable, QJsonObject& result)
{
    // The program reads jog.ini from its own folder: each data folder gets a copy of the
    // program in a folder of its own.
    QTemporaryDir work;
    const QString empty = work.filePath(QStringLiteral("empty"));
    QString error;
    if (!store::prepareDataFolder(empty, false, &error)) {
        err() << error << "\n";
        return false;
    }
    auto install = [&](const QString& name, const QString& dataFolder) {
        const QString dir = work.filePath(name);
        const QString copy = dir + QStringLiteral("/causora");
        const bool ok = QDir().mkpath(dir) && QFile::copy(executable, copy)
                        && QFile::setPermissions(copy, QFile::permissions(executable))
                        && writeSettings(dir, dataFolder);
        return ok ? copy : QString();
    };
    const QString big = install(QStringLiteral("big"), folder);
    const QString small = install(QStringLiteral("small"), empty);
    if (big.isEmpty() || small.isEmpty()) {
        err() << "the program could not be copied\n";
        return false;
    }
    // One start of each first, to have the program and the files in the system's cache; then
    // the two alternate.
    if (startOnce(big) < 0 || startOnce(small) < 0) {
        err() << "the program did not report its menu ready\n";
        return false;
    }
    QList<double> bigMs, smallMs, coldMs;
    for (int i = 0; i < 9; ++i) {
        bigMs << startOnce(big);
        smallMs << startOnce(small);
    }
    const QString dataFile = folder + QStringLiteral("/causora.mdb");
    for (int i = 0; i < 5; ++i) {
        dropFromFileCache(dataFile);
        coldMs << startOnce(big);
    }
    startOnce(big); // the file back in the cache for the measures after this one
    if (bigMs.contains(-1) || smallMs.contains(-1) || coldMs.contains(-1)) {
        err() << "a start did not report its menu ready\n";
        return false;
    }
    result[QStringLiteral("startup_ms")] = median(bigMs);
    result[QStringLiteral("startup_empty_ms")] = median(smallMs);
    result[QStringLiteral("startup_ratio")] = median(bigMs) / median(smallMs);
    result[QStringLiteral("startup_file_uncached_ms")] = median(coldMs);
    result[QStringLiteral("startup_runs")] = toJson(bigMs);
    result[QStringLiteral("startup_empty_runs")] = toJson(smallMs);
    return true;
}

// The conflict check as the case screen runs it at each keystroke: the opponent's name against
// the clients, the partners and the other cases' opponents, and a client's name against the
// opponents. The first start on a file without match keys fills them; that is timed too.
bool conflict(const QString& folder, const QTemporaryDir& program, QJsonObject& result)
{
    QElapsedTimer start;
    start.start();
    if (!openFolder(folder, program))
        return false;
    result[QStringLiteral("conflict_start_ms")] = start.nsecsElapsed() / 1e6;
    const platform::Rows cases
            = db().select(QStringLiteral("SELECT ugyszam, ellnev FROM ugyek WHERE ellnev <> ''"
                                         " ORDER BY rowid LIMIT 100 OFFSET 5000"));
    const platform::Rows clients = db().select(
            QStringLiteral("SELECT unev1 FROM ugyfelek ORDER BY ukod LIMIT 100 OFFSET 5000"));
    if (cases.empty() || clients.empty()) {
        err() << "no cases or clients to check\n";
        return false;
    }
    const store::Conflicts check(db());
    QList<double> ms;
    qint64 found = 0;
    for (const platform::Row& row : cases) {
        QElapsedTimer t;
        t.start();
        found += check.matches(row.text(QStringLiteral("ellnev")),
                               row.text(QStringLiteral("ugyszam")))
                         .size();
        ms << t.nsecsElapsed() / 1e6;
    }
    result[QStringLiteral("conflict_check_ms")] = median(ms);
    result[QStringLiteral("conflict_check_max_ms")] = *std::max_element(ms.cbegin(), ms.cend());
    result[QStringLiteral("conflict_check_matches")] = double(found) / double(cases.size());
    QList<double> clientMs;
    for (const platform::Row& row : clients) {
        QElapsedTimer t;
        t.start();
        check.casesAgainst(row.text(QStringLiteral("unev1")));
        clientMs << t.nsecsElapsed() / 1e6;
    }
    result[QStringLiteral("conflict_client_check_ms")] = median(clientMs);
    result[QStringLiteral("conflict_client_check_max_ms")]
            = *std::max_element(clientMs.cbegin(), clientMs.cend());
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const QStringList args = app.arguments().mid(1);
    const QString mode = args.value(0);
    const QString folder = args.value(1);
    const QStringList modes{QStringLiteral("lists"),   QStringLiteral("page"),
                            QStringLiteral("print"),   QStringLiteral("record"),
                            QStringLiteral("check"),   QStringLiteral("save"),
                            QStringLiteral("export"),  QStringLiteral("case"),
                            QStringLiteral("startup"), QStringLiteral("conflict")};
    if (!modes.contains(mode) || folder.isEmpty()
        || args.size() != (mode == QLatin1String("startup") ? 3 : 2)) {
        err() << "usage: causora-bench lists|page|print|record|check|save|export|case|conflict"
                 " FOLDER\n"
                 "       causora-bench startup FOLDER PROGRAM\n";
        return 2;
    }
    QTemporaryDir program;
    QJsonObject result;
    bool ok = false;
    if (mode == QLatin1String("lists"))
        ok = lists(folder, program, result);
    else if (mode == QLatin1String("page"))
        ok = page(folder, program, result);
    else if (mode == QLatin1String("print"))
        ok = print(folder, program, result, true);
    else if (mode == QLatin1String("record"))
        ok = print(folder, program, result, false);
    else if (mode == QLatin1String("check"))
        ok = check(folder, result);
    else if (mode == QLatin1String("save"))
        ok = save(folder, program, result);
    else if (mode == QLatin1String("export"))
        ok = exportAll(folder, program, result);
    else if (mode == QLatin1String("case"))
        ok = caseScreen(folder, program, result);
    else if (mode == QLatin1String("conflict"))
        ok = conflict(folder, program, result);
    else
        ok = startup(folder, args.value(2), result);
    QTextStream(stdout) << QJsonDocument(result).toJson();
    return ok ? 0 : 1;
}
