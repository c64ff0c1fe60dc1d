// Backup and restore while other desks work, files never restored, the admin hand-offs.
#include "TestSupport.h"

#include "admin/Install.h"
#include "admin/fBackup.h"
#include "admin/fRestore.h"
#include "locale/Uzenet.h"
#include "platform/Backup.h"
#include "platform/Dialogs.h"
#include "session/Session.h"
#include "store/Backup.h"

#include <QCloseEvent>
#include <QDate>
#include <QDir>
#include <QPointer>
#include <QProcess>
#include <QTimer>

namespace {

// A screen that keeps its entry when asked to close.
class KeepsItsEntry : public QWidget
{
protected:
    void closeEvent(QCloseEvent* e) override { e->ignore(); }
};

// The count and the highest number of the other workstation's cases.
QPair<int, int> writtenCases(platform::Database& db)
{
    const platform::Row r
            = db.first("SELECT count(*), max(ugyszamertek) FROM ugyek WHERE ugyszam LIKE '%/M'");
    return {r.value(0).toInt(), r.value(1).toInt()};
}

} // namespace

using namespace testsupport;

class tst_backup : public QObject
{
    Q_OBJECT
    std::unique_ptr<TestFolder> m_folder;
    QString m_chosen; // what the file dialog answers

    template<typename Screen>
    Screen* screen()
    {
        auto* s = new Screen(m_folder->db(), Session::instance().screens,
                             [this] { return Session::instance().start(m_folder->db()); });
        s->show();
        return s;
    }
    QString folder() { return m_folder->dataFolder(); }
    QStringList backupFiles() { return QDir(folder()).entryList({"*.bck"}, QDir::Files); }

private slots:
    void init()
    {
        m_folder = std::make_unique<TestFolder>(true);
        QVERIFY(m_folder->open());
        platform::setFileDialogHandler([this](const platform::FileDialogRequest& request) {
            // The dialogs start in the data folder and offer backup files.
            [&] {
                QCOMPARE(request.folder, folder());
                QCOMPARE(request.filter, QString("Backup files (*.bck)"));
            }();
            return m_chosen;
        });
    }
    void cleanup()
    {
        platform::setFileDialogHandler(nullptr);
        deleteWindows();
        m_folder.reset();
    }

    // The copy is one state of the register: every case stored before the backup began, no gaps.
    void backupWhileAnotherWorkstationSaves()
    {
        QProcess writer;
        writer.start(CASEWRITER, {folder(), "1000"});
        QVERIFY(writer.waitForStarted());
        QStringList told;
        while (told.size() < 50 && writer.waitForReadyRead(30000))
            while (writer.canReadLine())
                told << QString::fromLatin1(writer.readLine()).trimmed();
        QVERIFY2(told.size() >= 50, writer.readAllStandardError().constData());

        m_chosen = folder() + "/mentes";
        MessageRecorder boxes;
        screen<admin::fBackup>()->findChild<QPushButton*>("cmdOk")->click();
        QCOMPARE(boxes.texts(), messages({"backupOK"}));
        QVERIFY(writer.state() == QProcess::Running);
        QVERIFY(writer.waitForFinished(240000));
        QCOMPARE(writer.exitCode(), 0);

        const QString copy = folder() + "/mentes.bck";
        QCOMPARE(backupFiles(), QStringList{"mentes.bck"});
        QVERIFY(!QFile::exists(copy + ".part"));
        QVERIFY(platform::checkIntegrity(copy).done);
        platform::Database backup;
        QVERIFY(backup.openForReading(copy, nullptr));
        // Cases 1 to n with none missing: as many as the highest number.
        const auto [copied, highest] = writtenCases(backup);
        QVERIFY(copied >= told.size() && copied < 1000);
        QCOMPARE(highest, copied);
        QCOMPARE(writtenCases(m_folder->db()), qMakePair(1000, 1000));
    }

    // Neither file of the register is ever taken for a backup's target.
    void backupNeverOverTheRegister_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("data file") << "causora.mdb";
        QTest::newRow("account file") << "caujog.mdw";
    }
    void backupNeverOverTheRegister()
    {
        QFETCH(QString, file);
        m_chosen = folder() + "/" + file;
        const QByteArray before = readFile(m_chosen);
        MessageRecorder boxes;
        screen<admin::fBackup>()->findChild<QPushButton*>("cmdOk")->click();
        QCOMPARE(boxes.texts(), messages({"onmaga"}));
        QVERIFY(readFile(m_chosen) == before);
    }

    // Not a sound data file of the program: refused before anything is asked, closed or written.
    void restoreRefuses_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("reason");
        QTest::newRow("text file") << QString("text") << QString("nemmentes");
        QTest::newRow("another program's file") << QString("foreign") << QString("nemmentes");
        QTest::newRow("damaged copy") << QString("damaged") << QString("serultmentes");
    }
    void restoreRefuses()
    {
        QFETCH(QString, kind);
        QFETCH(QString, reason);
        m_chosen = m_folder->root() + "/valami.bck";
        if (kind == "text") {
            writeFile(m_chosen, "Ez nem adatfájl, csak szöveg.\n");
        } else if (kind == "foreign") {
            platform::Database other;
            QVERIFY(other.openUnchecked(m_chosen, nullptr));
            QVERIFY(other.exec("CREATE TABLE parameterek (alapnyelv INTEGER)"));
            QVERIFY(other.exec("INSERT INTO parameterek VALUES (1)"));
        } else {
            QVERIFY(store::Backup(m_folder->dataFile(), folder() + "/caujog.mdw")
                            .save(m_chosen)
                            .done());
            // Garbage over a page in the middle of the client table.
            platform::Database copy;
            QVERIFY(copy.openForReading(m_chosen, nullptr));
            const QStringList at = values(copy, "SELECT rootpage, page_size FROM sqlite_master,"
                                                " pragma_page_size WHERE name = 'ugyfelek'");
            copy.close();
            QFile f(m_chosen);
            QVERIFY(f.open(QIODevice::ReadWrite));
            f.seek(qint64(at[0].toInt() - 1) * at[1].toInt());
            f.write(QByteArray(at[1].toInt(), '\x5a'));
        }
        const QByteArray before = readFile(m_folder->dataFile());
        MessageRecorder boxes;
        auto* restore = screen<admin::fRestore>();
        restore->findChild<QPushButton*>("cmdOk")->click();
        QCOMPARE(boxes.texts(),
                 QStringList{uzenetszoveg(reason) + "\r\n" + uzenetszoveg("RestoreH")});
        QVERIFY(readFile(m_folder->dataFile()) == before);
        QVERIFY(backupFiles().isEmpty());
        QVERIFY(restore->isVisible());
    }

    // An entry kept on screen stops the restore; then the live file is replaced, a copy kept.
    void goodRestore()
    {
        platform::Database& db = m_folder->db();
        m_chosen = m_folder->root() + "/jo.bck";
        QVERIFY(store::Backup(m_folder->dataFile(), folder() + "/caujog.mdw")
                        .save(m_chosen)
                        .done());
        QVERIFY(db.exec("INSERT INTO ugyfelek (unev1) VALUES ('Utólagos Ügyfél')"));
        platform::Database otherDesk;
        QVERIFY(otherDesk.openExisting(m_folder->dataFile(), nullptr));
        const QString client = "SELECT count(*) FROM ugyfelek WHERE unev1 = 'Utólagos Ügyfél'";
        QCOMPARE(otherDesk.scalar(client).toInt(), 1);
        // Logged in as a user who reads English, which the session forgets.
        Session::instance().userName = "Rendszergazda";
        Session::instance().language = 3;
        const QString question = uzenetszoveg("RestoreK");
        const QString done = uzenetszoveg("RestoreOK");

        const QByteArray before = readFile(m_folder->dataFile());
        auto* entry = new KeepsItsEntry;
        entry->show();
        MessageRecorder boxes{platform::AnswerYes};
        QPointer<admin::fRestore> restore = screen<admin::fRestore>();
        restore->findChild<QPushButton*>("cmdOk")->click();
        QCOMPARE(boxes.texts(), QStringList{question});
        QVERIFY(entry->isVisible());
        QVERIFY(readFile(m_folder->dataFile()) == before);
        QVERIFY(backupFiles().isEmpty());

        delete entry;
        boxes.clear();
        boxes.answer(platform::AnswerYes);
        QPointer<QWidget> openScreen = new QWidget;
        openScreen->show();
        restore->findChild<QPushButton*>("cmdOk")->click();
        QCOMPARE(boxes.shown().size(), 2);
        QCOMPARE(boxes.shown().at(0).text, question);
        QCOMPARE(boxes.shown().at(0).style, int(platform::RestoreQuestion));
        QVERIFY(boxes.shown().at(1).text.startsWith(done));
        QVERIFY(!openScreen || !openScreen->isVisible());
        QVERIFY(!restore || !restore->isVisible());

        QVERIFY(db.isOpen());
        QCOMPARE(db.scalar(client).toInt(), 0);
        QCOMPARE(otherDesk.scalar(client).toInt(), 0);
        QCOMPARE(Session::instance().userName, QString());
        QCOMPARE(Session::instance().language, 1);
        // The copy of the data file as it was, named with the date and time, told to the user.
        const QStringList kept = backupFiles();
        QCOMPARE(kept.size(), 1);
        QVERIFY(kept.first().startsWith("causora-" + QDate::currentDate().toString("yyyyMMdd")));
        QVERIFY(boxes.shown().at(1).text.endsWith(folder() + "/" + kept.first()));
        platform::Database safety;
        QVERIFY(safety.openForReading(folder() + "/" + kept.first(), nullptr));
        QCOMPARE(safety.scalar(client).toInt(), 1);
        // The other desk goes on writing into the restored register.
        QVERIFY(otherDesk.exec("INSERT INTO ugyfelek (unev1) VALUES ('Másik asztal')"));
        QCOMPARE(db.scalar("SELECT count(*) FROM ugyfelek WHERE unev1 = 'Másik asztal'").toInt(),
                 1);
    }

    // Users and parameters open modal, backup and restore as windows of their own.
    void handOffsOpenTheScreens_data()
    {
        QTest::addColumn<QString>("screen");
        for (const char* screen : {"users", "param", "fBackup", "fRestore"})
            QTest::newRow(screen) << QString(screen);
    }
    void handOffsOpenTheScreens()
    {
        QFETCH(QString, screen);
        Screens& screens = Session::instance().screens;
        admin::install(screens, m_folder->db());
        const QMap<QString, std::function<void()>> show{{"users", screens.showUsers},
                                                        {"param", screens.showParameters},
                                                        {"fBackup", screens.showBackup},
                                                        {"fRestore", screens.showRestore}};
        ModalDialogsExpected modal;
        QString opened; // a modal screen is looked at and closed from inside its own event loop
        QTimer::singleShot(0, [&] {
            if (QWidget* w = QApplication::activeModalWidget()) {
                opened = "modal " + w->objectName();
                w->close();
            }
        });
        show[screen]();
        for (QWidget* w : QApplication::topLevelWidgets())
            if (opened.isEmpty() && w->isVisible())
                opened = w->objectName();
        QCOMPARE(opened, screen.startsWith('f') ? screen : "modal " + screen);
    }
};

QTEST_MAIN(tst_backup)
#include "tst_backup.moc"
