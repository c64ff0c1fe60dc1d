// Several workstations on one data folder: lists that hold no lock, check-then-write in one
// transaction, a lock held by another program, and the start-up failures told apart.
#include "TestSupport.h"

#include "admin/users.h"
#include "cases/Ugyek.h"
#include "clients/Install.h"
#include "clients/Partnerek.h"
#include "locale/Uzenet.h"
#include "locale/felir.h"
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

// Another program holding the file: the sqlite3 tool inside an open exclusive transaction.
class LockingProgram
{
public:
    explicit LockingProgram(const QString& file)
    {
        m_tool.start(QStringLiteral("sqlite3"), {file});
        m_tool.waitForStarted();
        m_tool.write("BEGIN EXCLUSIVE;\nSELECT 'held';\n");
        while (!m_tool.readAllStandardOutput().contains("held") && m_tool.waitForReadyRead(5000)) {
        }
    }
    ~LockingProgram()
    {
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

} // namespace

class tst_workstations : public QObject
{
    Q_OBJECT
    std::unique_ptr<testsupport::TestFolder> m_folder;

    platform::Database& db() { return m_folder->db(); }
    // The client screen, as the search screen's hand-off point opened it.
    static QWidget* clientScreen()
    {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->objectName() == "Ugyfelek")
                return w;
        return nullptr;
    }
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

    // No screen holds a lock while it is shown: the search lists scrolled to their middle, the
    // record screens on their browse lists, the lookup lists, the users, and the grids of the
    // partners, postal codes, conflicts and captions. Another desk saves at once while
    // each is up, and after it closed.
    void aShownScreenLetsOthersWrite_data()
    {
        QTest::addColumn<QString>("screen");
        for (const char* name : {"keres 1", "keres 2", "Ugyfelek", "Ugyek", "Partnerek", "irszam",
                                 "Egyebadat", "users", "utkozesek", "felir"})
            QTest::newRow(name) << name;
    }
    void aShownScreenLetsOthersWrite()
    {
        QFETCH(QString, screen);
        fill(screen.startsWith("keres") ? 5000 : 600, 2);
        OtherDesk other(m_folder->dataFile());
        platform::Database& db = testsupport::database();
        std::unique_ptr<QWidget> shown;
        QWidget search;
        if (screen == "Ugyfelek") {
            clients::install(Session::instance().screens, db);
            Session::instance().screens.showClient({"300", store::Clients::list(), &search});
            shown.reset(clientScreen());
        } else if (screen.startsWith("keres")) {
            auto* list = new keres(db);
            shown.reset(list);
            list->setTipus(screen.right(1));
            list->show();
            auto* grid = list->findChild<QTableView*>("DataGrid1");
            const int middle = screen == "keres 1" ? 2500 : 5000;
            while (list->forras().rowCount() <= middle && list->forras().canReadMore())
                list->forras().readMore();
            grid->scrollTo(grid->model()->index(middle, 1));
            QVERIFY(!list->forras().value(middle, "unev1").toString().isEmpty());
            QVERIFY(list->forras().pagesHeld() <= 8);
        } else if (screen == "Ugyek") {
            auto* record = new cases::Ugyek(db, {"300/0", store::Cases::list(), &search}, {});
            shown.reset(record);
            record->show();
            record->ugyfeltolt();
        } else if (screen == "Egyebadat") {
            auto* editor = new reference::Egyebadat(db);
            shown.reset(editor);
            editor->setHivo("2");
            editor->show();
        } else {
            shown.reset(screen == "Partnerek"   ? new clients::Partnerek(db)
                        : screen == "irszam"    ? new reference::irszam(db)
                        : screen == "users"     ? new admin::users(db)
                        : screen == "utkozesek" ? new utkozesek(db)
                                                : static_cast<QWidget*>(new felir(db)));
            shown->show();
        }
        QVERIFY(shown && shown->isVisible());
        QCoreApplication::processEvents();
        for (int round = 0; round < 2; ++round) {
            const Written client = store::Clients(other.db).add(
                    {{"unev1", QStringLiteral("Másik asztal %1").arg(round)}});
            QVERIFY2(client.stored(), qPrintable(client.engineText));
            const Written kase = store::Cases(other.db).add(
                    {{"ugyszam", QStringLiteral("M-%1").arg(round)}, {"ugyfelkod", client.key}});
            QVERIFY2(kase.stored(), qPrintable(kase.engineText));
            QVERIFY(store::Cases(other.db).change("1/0", {{"ugytipus", "Más"}}).stored());
            shown.reset();
        }
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
                const QVariantMap kase{{"ugyszam", QStringLiteral("R-%1").arg(c)},
                                       {"ugyfelkod", c}};
                const Written w
                        = deleting ? store::Clients(own).remove(c) : store::Cases(own).add(kase);
                (deleting ? deleted : added) += w.stored() ? 1 : 0;
            }
        };
        std::unique_ptr<QThread> a(QThread::create(desk, true));
        std::unique_ptr<QThread> b(QThread::create(desk, false));
        a->start();
        b->start();
        QVERIFY(a->wait(60000) && b->wait(60000));
        QCOMPARE(deleted + added, 198);
        const QString orphans
                = "SELECT 1 FROM ugyek WHERE ugyfelkod NOT IN (SELECT ukod FROM ugyfelek)";
        QVERIFY(db().first(orphans).isEmpty());
    }

    // A save that meets another program's lock waits, says so in the session's language and
    // keeps the entry; once the lock is gone the same save goes through.
    void aLockElsewhereIsWaitedForAndTold()
    {
        Session::instance().language = 3;
        clients::install(Session::instance().screens, testsupport::database());
        QWidget search;
        Session::instance().screens.newClient({QString(), store::Clients::list(), &search});
        QWidget* screen = clientScreen();
        QVERIFY(screen);
        auto* name = screen->findChild<QLineEdit*>("nev1");
        auto* save = screen->findChild<QPushButton*>("g5");
        QVERIFY(name && save && save->isEnabled());
        name->setText("Zárolt Zoltán");

        testsupport::MessageRecorder messages;
        {
            LockingProgram lock(m_folder->dataFile());
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
        const QString saved = "SELECT count(*) FROM ugyfelek WHERE unev1 = 'Zárolt Zoltán'";
        QCOMPARE(db().scalar(saved).toInt(), 1);
        screen->close();
    }

    // Each start-up failure has its own message, the program ends where it must, and the
    // files are left exactly as they were.
    void startUpTellsFailuresApart_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<bool>("starts");
        QTest::addColumn<int>("mode"); // given to the file or the folder the row names
        QTest::addRow("locked") << "zarolt" << false << -1;
        QTest::addRow("unreadable file") << "nemolvashato" << false << 0;
        QTest::addRow("unreadable folder") << "nemolvashato" << false << 0600;
        QTest::addRow("read-only file") << "olvasomod" << true << 0444;
        QTest::addRow("read-only folder") << "olvasomod" << true << 0555;
        // A damaged file is found by the look at its structure, which runs once the program is
        // up; from then on nothing is written into it.
        QTest::addRow("damaged page") << "serult" << true << -1;
        QTest::addRow("not a database") << "nemcausora" << false << -1;
        QTest::addRow("another database") << "nemcausora" << false << -1;
    }
    void startUpTellsFailuresApart()
    {
        QFETCH(QString, code);
        QFETCH(bool, starts);
        QFETCH(int, mode);
        const QString condition = QTest::currentDataTag();
        const QString file = m_folder->dataFile();
        const QString folder = m_folder->dataFolder();
        std::unique_ptr<LockingProgram> lock;
        if (condition == "locked")
            lock = std::make_unique<LockingProgram>(file);
        else if (condition == "damaged page")
            damageTable(file, "ugyfelek");
        else if (condition == "not a database")
            testsupport::writeFile(file, "path=C:\\adat\r\n");
        else if (condition == "another database")
            QVERIFY(QProcess::execute("sqlite3", {file + ".x", "CREATE TABLE t (a)"}) == 0
                    && QFile::remove(file) && QFile::rename(file + ".x", file));
        const QByteArray before = testsupport::readFile(file);
        if (mode >= 0)
            ::chmod(QFile::encodeName(condition.endsWith("folder") ? folder : file).constData(),
                    mode);

        testsupport::MessageRecorder messages;
        QCOMPARE(m_folder->open(), starts);
        QTRY_VERIFY2(!messages.shown().isEmpty(), qPrintable(condition));
        QVERIFY2(messages.texts().first().startsWith(store::catalogueMessage(code, 1)),
                 qPrintable(messages.texts().first()));
        QVERIFY(!messages.shown().first().title.isEmpty());
        QCOMPARE(messages.shown().size(), 1);
        QCOMPARE(messages.shown().first().style,
                 int(code == "olvasomod" ? platform::Notice : platform::ErrorNotice));
        // The office's words in the box, the engine's in the error log.
        const QString log = testsupport::readFile(m_folder->programFolder() + "/hiba.txt");
        QVERIFY2(code == "olvasomod" || log.contains("adatmegnyitas ** Helye: " + file + " ** "),
                 qPrintable(log));
        QVERIFY(condition != "not a database" || log.contains("Unrecognized database format"));
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
