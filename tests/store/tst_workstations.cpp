// Several workstations on one data folder: lists that hold no lock, check-then-write in one
// transaction, a lock held by another program, and the start-up failures told apart.
#include "TestSupport.h"

#include "admin/users.h"
#include "cases/Ugyek.h"
#include "clients/Install.h"
#include "clients/Partnerek.h"
#include "locale/Uzenet.h"
#include "locale/felir.h"
#include "platform/Display.h"
#include "platform/ListSource.h"
#include "reference/Egyebadat.h"
#include "reference/irszam.h"
#include "search/keres.h"
#include "search/utkozesek.h"
#include "session/Session.h"
#include "store/Cases.h"
#include "store/Clients.h"
#include "store/Prepare.h"

#include <atomic>
#include <functional>
#include <memory>
#include <sys/stat.h>
#include <QApplication>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTableView>
#include <QTest>
#include <QThread>

using store::Written;

namespace {

// A second workstation: its own connection to the same file, which never waits for a lock,
// so any lock the first one holds shows at once as a Busy failure.
struct OtherDesk
{
    explicit OtherDesk(const QString& file)
    {
        db.setBusyWait(0);
        QVERIFY(db.openExisting(file, nullptr));
    }
    platform::Database db;
};

// Another program holding the file: the sqlite3 tool inside an open transaction.
class LockingProgram
{
public:
    LockingProgram(const QString& file, const char* begin)
    {
        m_tool.start(QStringLiteral("sqlite3"), {file});
        m_tool.waitForStarted();
        m_tool.write(begin);
        m_tool.write("\nSELECT 'held';\n");
        while (!m_tool.readAllStandardOutput().contains("held") && m_tool.waitForReadyRead(5000)) {
        }
    }
    ~LockingProgram() { release(); }
    void release()
    {
        if (m_tool.state() == QProcess::NotRunning)
            return;
        m_tool.write("ROLLBACK;\n.quit\n");
        m_tool.closeWriteChannel();
        m_tool.waitForFinished(5000);
    }

private:
    QProcess m_tool;
};

// Overwrites a table's first page, its header included, with random bytes.
void damageTable(const QString& file, const QString& table)
{
    int page = 0;
    int pageSize = 0;
    {
        platform::Database db;
        QVERIFY(db.openForReading(file, nullptr));
        page = db.scalar("SELECT rootpage FROM sqlite_master WHERE name = ?", {table}).toInt();
        pageSize = db.scalar("PRAGMA page_size").toInt();
    }
    QVERIFY(page > 1);
    QFile f(file);
    QVERIFY(f.open(QIODevice::ReadWrite));
    QByteArray noise(pageSize / 2, Qt::Uninitialized);
    QRandomGenerator gen(7);
    for (char& c : noise)
        c = char(gen.bounded(256));
    noise[0] = char(0x42); // no kind of page
    f.seek(qint64(page - 1) * pageSize);
    f.write(noise);
}

int count(platform::Database& db, const QString& sql, const QVariantList& params = {})
{
    return db.scalar(sql, params).toInt();
}

} // namespace

class tst_workstations : public QObject
{
    Q_OBJECT
    std::unique_ptr<testsupport::TestFolder> m_folder;

    platform::Database& db() { return m_folder->db(); }
    // A register of the given size, written in one transaction.
    void fill(int clients, int casesPerClient)
    {
        platform::Transaction t(db());
        QVERIFY(t.isActive());
        for (int c = 1; c <= clients; ++c) {
            const QString name = QStringLiteral("Ügyfél %1").arg(c, 5, 10, QLatin1Char('0'));
            QVERIFY(db().exec("INSERT INTO ugyfelek (ukod, unev1, unev1kulcs) "
                              "VALUES (?, ?, hukulcs(?))",
                              {c, name, name}));
            for (int k = 0; k < casesPerClient; ++k)
                QVERIFY(db().exec("INSERT INTO ugyek (ugyszam, ugyfelkod, ugytipus) "
                                  "VALUES (?, ?, 'Polgári')",
                                  {QStringLiteral("%1/%2").arg(c).arg(k), c}));
        }
        QVERIFY(t.commit());
    }

private slots:
    void init()
    {
        platform::Database::setDefaultBusyWait(300);
        m_folder = std::make_unique<testsupport::TestFolder>();
        if (QByteArray(QTest::currentTestFunction()) != "startUpTellsFailuresApart")
            QVERIFY(m_folder->open());
    }
    void cleanup() { m_folder.reset(); }

    // A list shown and scrolled to its middle keeps no read lock: another desk saves at once,
    // while the screen is open and after it closed.
    void aShownListLetsOthersWrite_data()
    {
        QTest::addColumn<QString>("tipus");
        QTest::newRow("cases") << "2";
        QTest::newRow("clients") << "1";
    }
    void aShownListLetsOthersWrite()
    {
        QFETCH(QString, tipus);
        fill(5000, 2);
        OtherDesk other(m_folder->dataFile());
        auto screen = std::make_unique<keres>(testsupport::database());
        screen->setTipus(tipus);
        screen->show();
        auto* grid = screen->findChild<QTableView*>("DataGrid1");
        const int middle = tipus == "1" ? 2500 : 5000;
        while (screen->forras().rowCount() <= middle && screen->forras().canReadMore())
            screen->forras().readMore();
        grid->scrollTo(grid->model()->index(middle, 1));
        QVERIFY(!screen->forras().value(middle, "unev1").toString().isEmpty());
        QVERIFY(screen->forras().pagesHeld() <= 8);

        for (int round = 0; round < 2; ++round) {
            const Written client = store::Clients(other.db).add(
                    {{"unev1", QStringLiteral("Másik asztal %1").arg(round)}});
            QVERIFY2(client.stored(), qPrintable(client.engineText));
            const Written kase = store::Cases(other.db).add(
                    {{"ugyszam", QStringLiteral("M-%1").arg(round)}, {"ugyfelkod", client.key}});
            QVERIFY2(kase.stored(), qPrintable(kase.engineText));
            QVERIFY(store::Cases(other.db)
                            .change(QStringLiteral("1/0"), {{"ugytipus", "Más"}})
                            .stored());
            screen.reset();
        }
        // The list read after the other desk's saves shows them.
        keres again(testsupport::database());
        again.setTipus("1");
        again.show();
        again.findChild<QLineEdit*>("ker1")->setText("Másik");
        again.szukites();
        QCOMPARE(again.forras().rowCount(), 2);
    }

    // Every other screen that reads as it is shown holds no lock either: the record screens
    // on their rows and lists, the grids of the partners, postal codes, conflicts and captions.
    // Another desk saves at once while each is up.
    void eachScreenShownLetsOthersWrite_data()
    {
        QTest::addColumn<QString>("screen");
        for (const char* name : {"Ugyfelek", "Ugyek", "Partnerek", "Egyebadat", "irszam", "users",
                                 "utkozesek", "felir"})
            QTest::newRow(name) << name;
    }
    void eachScreenShownLetsOthersWrite()
    {
        QFETCH(QString, screen);
        fill(600, 1);
        OtherDesk other(m_folder->dataFile());
        platform::Database& db = testsupport::database();
        std::unique_ptr<QWidget> shown;
        QWidget search;
        const QMap<QString, std::function<QWidget*()>> makers = {
                {"Ugyek",
                 [&] {
                     return new cases::Ugyek(db, {"300/0", store::Cases::list(), &search}, {});
                 }},
                {"Partnerek", [&] { return new clients::Partnerek(db); }},
                {"Egyebadat",
                 [&] {
                     auto* editor = new reference::Egyebadat(db);
                     editor->setHivo("2");
                     return editor;
                 }},
                {"irszam", [&] { return new reference::irszam(db); }},
                {"users", [&] { return new admin::users(db); }},
                {"utkozesek", [&] { return new utkozesek(db); }},
                {"felir", [&] { return new felir(db); }},
        };
        if (screen == "Ugyfelek") {
            clients::install(Session::instance().screens, db);
            Session::instance().screens.showClient({"300", store::Clients::list(), &search});
            for (QWidget* w : QApplication::topLevelWidgets())
                if (w->objectName() == "Ugyfelek")
                    shown.reset(w);
        } else {
            shown.reset(makers.value(screen)());
            shown->show();
            if (auto* ugyek = qobject_cast<cases::Ugyek*>(shown.get()))
                ugyek->ugyfeltolt();
        }
        QVERIFY(shown && shown->isVisible());
        QCoreApplication::processEvents();
        const Written w = store::Clients(other.db).add({{"unev1", "Másik asztal"}});
        QVERIFY2(w.stored(), qPrintable(w.engineText));
    }

    // Deleting a client and adding a case for it on another desk: whichever comes first wins,
    // and no case is ever left without its client.
    void aClientAndItsNewCaseNeverPart()
    {
        fill(200, 0);
        OtherDesk other(m_folder->dataFile());
        // The case first: the delete is refused.
        QVERIFY(store::Cases(other.db).add({{"ugyszam", "E-1"}, {"ugyfelkod", 1}}).stored());
        QCOMPARE(store::Clients(db()).remove(1).result, Written::InUse);
        // The delete first: the case is refused by the database itself.
        QVERIFY(store::Clients(db()).remove(2).stored());
        const Written refused = store::Cases(other.db).add({{"ugyszam", "E-2"}, {"ugyfelkod", 2}});
        QCOMPARE(refused.result, Written::Failed);
        QCOMPARE(refused.failure, platform::Failure::Refused);
        // Another program is held to the same rule.
        QProcess tool;
        tool.start("sqlite3", {m_folder->dataFile(), "DELETE FROM ugyfelek WHERE ukod = 1"});
        QVERIFY(tool.waitForFinished());
        QVERIFY(tool.exitCode() != 0);

        // Both at once, from two threads, each desk with its own connection.
        std::atomic<int> deleted{0};
        std::atomic<int> added{0};
        const QString file = m_folder->dataFile();
        auto desk = [&](bool deleting) {
            platform::Database own;
            own.setBusyWait(5000);
            if (!own.openExisting(file, nullptr))
                return;
            for (int c = 3; c <= 200; ++c) {
                if (deleting)
                    deleted += store::Clients(own).remove(c).stored() ? 1 : 0;
                else
                    added += store::Cases(own)
                                             .add({{"ugyszam", QStringLiteral("R-%1").arg(c)},
                                                   {"ugyfelkod", c}})
                                             .stored()
                                     ? 1
                                     : 0;
            }
        };
        std::unique_ptr<QThread> a(QThread::create(desk, true));
        std::unique_ptr<QThread> b(QThread::create(desk, false));
        a->start();
        b->start();
        QVERIFY(a->wait(60000) && b->wait(60000));
        QCOMPARE(deleted + added, 198);
        QCOMPARE(count(db(), "SELECT count(*) FROM ugyek WHERE ugyfelkod NOT IN "
                             "(SELECT ukod FROM ugyfelek)"),
                 0);
    }

    // A save that meets another program's lock waits, says so in the session's language and
    // keeps the entry; once the lock is gone the same save goes through.
    void aLockElsewhereIsWaitedForAndTold()
    {
        Session::instance().language = 3;
        clients::install(Session::instance().screens, testsupport::database());
        QWidget search;
        Session::instance().screens.newClient({QString(), store::Clients::list(), &search});
        auto* screen = QApplication::topLevelWidgets().last();
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->objectName() == "Ugyfelek")
                screen = w;
        auto* name = screen->findChild<QLineEdit*>("nev1");
        auto* save = screen->findChild<QPushButton*>("g5");
        QVERIFY(name && save && save->isEnabled());
        name->setText("Zárolt Zoltán");

        testsupport::MessageRecorder messages;
        {
            LockingProgram lock(m_folder->dataFile(), "BEGIN EXCLUSIVE;");
            QElapsedTimer waited;
            waited.start();
            save->click();
            QVERIFY(waited.elapsed() >= 250);
            QCOMPARE(messages.texts(), QStringList{uzenetszoveg("foglalt")});
            QVERIFY(messages.texts().first().startsWith("Another workstation"));
            QVERIFY(!messages.shown().first().title.isEmpty());
            QCOMPARE(name->text(), QString("Zárolt Zoltán"));
            QVERIFY(save->isEnabled());
        }
        QVERIFY(testsupport::readFile(m_folder->programFolder() + "/hiba.txt").contains("g5"));
        messages.clear();
        save->click();
        QVERIFY(messages.shown().isEmpty());
        QVERIFY(!save->isEnabled());
        QCOMPARE(count(db(), "SELECT count(*) FROM ugyfelek WHERE unev1 = ?", {"Zárolt Zoltán"}),
                 1);
        screen->close();
    }

    // Each start-up failure has its own message, the program ends where it must, and the
    // files are left exactly as they were.
    void startUpTellsFailuresApart_data()
    {
        QTest::addColumn<QString>("condition");
        QTest::addColumn<QString>("code");
        QTest::addColumn<bool>("starts");
        QTest::newRow("locked") << "locked"
                                << "zarolt" << false;
        QTest::newRow("unreadable file") << "unreadable file"
                                         << "nemolvashato" << false;
        QTest::newRow("unreadable folder") << "unreadable folder"
                                           << "nemolvashato" << false;
        QTest::newRow("read-only file") << "read-only file"
                                        << "olvasomod" << true;
        QTest::newRow("read-only folder") << "read-only folder"
                                          << "olvasomod" << true;
        // A damaged file is found by the look at its structure, which runs once the program is
        // up; from then on nothing is written into it.
        QTest::newRow("damaged page") << "damaged"
                                      << "serult" << true;
        QTest::newRow("not a database") << "text"
                                        << "nemcausora" << false;
        QTest::newRow("another database") << "foreign"
                                          << "nemcausora" << false;
    }
    void startUpTellsFailuresApart()
    {
        QFETCH(QString, condition);
        QFETCH(QString, code);
        QFETCH(bool, starts);
        const QString file = m_folder->dataFile();
        const QString folder = m_folder->dataFolder();
        std::unique_ptr<LockingProgram> lock;
        if (condition == "locked")
            lock = std::make_unique<LockingProgram>(file, "BEGIN EXCLUSIVE;");
        else if (condition == "damaged")
            damageTable(file, "ugyfelek");
        else if (condition == "text")
            testsupport::writeFile(file, "path=C:\\adat\r\n");
        else if (condition == "foreign")
            QVERIFY(QProcess::execute("sqlite3", {file + ".x", "CREATE TABLE t (a)"}) == 0
                    && QFile::remove(file) && QFile::rename(file + ".x", file));
        const QByteArray before = testsupport::readFile(file);
        if (condition == "unreadable file")
            ::chmod(QFile::encodeName(file).constData(), 0);
        else if (condition == "unreadable folder")
            ::chmod(QFile::encodeName(folder).constData(), 0600);
        else if (condition == "read-only file")
            ::chmod(QFile::encodeName(file).constData(), 0444);
        else if (condition == "read-only folder")
            ::chmod(QFile::encodeName(folder).constData(), 0555);

        testsupport::MessageRecorder messages;
        QCOMPARE(m_folder->open(), starts);
        QTRY_VERIFY2(!messages.shown().isEmpty(), qPrintable(condition));
        QVERIFY2(messages.texts().first().startsWith(store::catalogueMessage(code, 1)),
                 qPrintable(messages.texts().first()));
        QVERIFY(!messages.shown().first().title.isEmpty());
        if (starts) {
            // Every write is refused before it starts.
            const Written w = store::Clients(db()).add({{"unev1", "Nem menthető"}});
            const bool damaged = code == "serult";
            QCOMPARE(w.failure, damaged ? platform::Failure::Damaged : platform::Failure::ReadOnly);
            messages.clear();
            QCOMPARE(engineFailure(w.failure, w.engineText, "teszt", "add"),
                     damaged ? QStringLiteral("serult") : QStringLiteral("csakolvas"));
            testsupport::database().close();
        }
        lock.reset();
        ::chmod(QFile::encodeName(folder).constData(), 0755);
        ::chmod(QFile::encodeName(file).constData(), 0644);
        QCOMPARE(testsupport::readFile(file), before);
        QVERIFY(!QFile::exists(file + "-journal"));
    }

    // Damage the engine meets later, in a table the start-up look did not reach, stops writes.
    void damageMetLaterStopsWrites()
    {
        testsupport::database().close();
        damageTable(m_folder->dataFile(), "ugyek");
        const QByteArray before = testsupport::readFile(m_folder->dataFile());
        platform::Database db;
        QVERIFY(db.openExisting(m_folder->dataFile(), nullptr));
        QString error;
        db.select("SELECT * FROM ugyek", {}, &error);
        QCOMPARE(db.lastFailure(), platform::Failure::Damaged);
        QVERIFY(db.isDamaged());
        QCOMPARE(store::Clients(db).add({{"unev1", "Nem menthető"}}).failure,
                 platform::Failure::Damaged);
        db.close();
        QCOMPARE(testsupport::readFile(m_folder->dataFile()), before);
    }
};

QTEST_MAIN(tst_workstations)
#include "tst_workstations.moc"
