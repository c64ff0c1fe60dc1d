// Opening the data folder at start-up: the settings line, the missing files, the engine's look
// at credentials and at the marks of the two files, a save a stopped workstation left behind, the
// session's start values, the data-location screen, and the error log failures are written to.
#include "TestSupport.h"

#include "platform/Display.h"
#include "session/Session.h"
#include "store/Access.h"
#include "store/Credentials.h"
#include "store/DataLocation.h"
#include "store/ErrorLog.h"
#include "store/Prepare.h"
#include "store/dataeler.h"

#include <QApplication>
#include <QDate>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

using platform::Database;
using platform::Failure;
using testsupport::TestFolder;

namespace {

// Every file below a folder with its size and modification time, to show nothing was touched.
QStringList snapshot(const QString& root)
{
    QStringList files;
    QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QFileInfo f(it.next());
        files << QStringLiteral("%1 %2 %3")
                         .arg(f.filePath())
                         .arg(f.size())
                         .arg(f.lastModified().toMSecsSinceEpoch());
    }
    files.sort();
    return files;
}

// Closes the data-location screen as soon as it is shown modally, noting that it was.
struct LocationScreenWatcher
{
    testsupport::ModalDialogsExpected expected;
    bool shown = false;
    QTimer timer;
    LocationScreenWatcher()
    {
        QObject::connect(&timer, &QTimer::timeout, [this] {
            if (QWidget* w = QApplication::activeModalWidget()) {
                shown = shown || w->objectName() == QLatin1String("dataeler");
                w->close();
            }
        });
        timer.start(20);
    }
};

} // namespace

class tst_adatmegnyitas : public QObject
{
    Q_OBJECT
private slots:
    void opensWithQuotedAndUnquotedLines_data()
    {
        QTest::addColumn<QString>("line"); // <data> stands for the data folder
        QTest::addColumn<QString>("separator"); // between the folder and the file names
        const auto row = [](const char* tag, const char* line, const char* separator) {
            QTest::newRow(tag) << QString(line) << QString(separator);
        };
        row("quoted", "\"path=<data>\"\r\n", "/");
        row("unquoted", "path=<data>\r\n", "/");
        row("trailing separator", "\"path=<data>/\"\r\n", "//");
        row("other lines around", "[x]\r\n\"path=<data>\"\r\nmore\r\n", "/");
        row("line feed only", "path=<data>\n", "/");
    }
    void opensWithQuotedAndUnquotedLines()
    {
        QFETCH(QString, line);
        QFETCH(QString, separator);
        TestFolder folder;
        testsupport::writeFile(folder.programFolder() + "/jog.ini",
                               line.replace("<data>", folder.dataFolder()).toLocal8Bit());
        testsupport::MessageRecorder messages;
        platform::Database db;
        store::StartValues start;
        QVERIFY(store::adatmegnyitas(db, &start));
        QVERIFY(messages.shown().isEmpty());
        const QString files = folder.dataFolder() + separator;
        QCOMPARE((QStringList{start.dataFilePath, start.workgroupFilePath}),
                 (QStringList{files + "causora.mdb", files + "caujog.mdw"}));
        QVERIFY(db.isOpen() && !db.isReadOnly());
    }

    void failuresShowTheirMessageAndTouchNothing_data()
    {
        // <program> stands for the program folder and <data> for the data folder: markers that
        // no folder name can hold.
        QTest::addColumn<QString>("ini"); // null: no settings file
        QTest::addColumn<QString>("removed"); // a file of the data folder
        QTest::addColumn<QString>("message");
        QTest::addColumn<bool>("locationScreen");
        const auto row = [](const char* tag, QString ini, QString removed, QString message,
                            bool locationScreen) {
            QTest::newRow(tag) << ini << removed << message << locationScreen;
        };
        const QString good = "\"path=<data>\"\r\n";
        row("no settings file", QString(), "", "<program>/jog.ini    Not found ", false);
        row("empty settings file", "", "", "Bad inifile", true);
        row("no path entry", "adat=<data>\r\n", "", "Bad inifile", true);
        row("no line end", "\"path=<data>\"", "", "Bad inifile", true);
        row("no data file", good, "causora.mdb", "<data>/causora.mdb   Not found", true);
        row("no account file", good, "caujog.mdw", "<data>/caujog.mdw  <nincsmeg>", false);
    }
    void failuresShowTheirMessageAndTouchNothing()
    {
        QFETCH(QString, ini);
        QFETCH(QString, removed);
        QFETCH(QString, message);
        TestFolder folder;
        const auto place = [&folder](QString text) {
            return text.replace("<program>", folder.programFolder())
                    .replace("<data>", folder.dataFolder());
        };
        if (!ini.isNull())
            testsupport::writeFile(folder.programFolder() + "/jog.ini", place(ini).toLocal8Bit());
        if (!removed.isEmpty())
            QVERIFY(QFile::remove(folder.dataFolder() + '/' + removed));
        message = place(message.replace("<nincsmeg>", store::catalogueMessage("nincsmeg", 1)));

        const QStringList before = snapshot(folder.root());
        testsupport::MessageRecorder messages;
        LocationScreenWatcher watcher;
        QVERIFY(!Session::instance().start(folder.db()));
        QCOMPARE(messages.texts(), QStringList{message});
        QTEST(watcher.shown, "locationScreen");
        QCOMPARE(snapshot(folder.root()), before);
        QVERIFY(!testsupport::database().isOpen());
    }

    void startingValuesOfTheSession_data()
    {
        QTest::addColumn<int>("kelllogon");
        QTest::addColumn<QStringList>("lawyers");
        QTest::addColumn<QString>("rights");
        QTest::addColumn<QString>("defaultLawyer");
        QTest::newRow("no login needed, no lawyer")
                << 0 << QStringList() << QString(20, u'1') << "";
        QTest::newRow("login needed, one lawyer")
                << -1 << QStringList{"Dr. Kis Anna"} << QString(20, u'0') << "Dr. Kis Anna";
        QTest::newRow("two lawyers")
                << 0 << QStringList{"Dr. Kis Anna", "Dr. Nagy Béla"} << QString(20, u'1') << "";
    }
    void startingValuesOfTheSession()
    {
        QFETCH(int, kelllogon);
        QFETCH(QStringList, lawyers);
        TestFolder folder;
        {
            platform::Database db;
            QVERIFY(db.openUnchecked(folder.dataFile(), nullptr));
            QVERIFY(db.exec("UPDATE parameterek SET kelllogon = ?, alapnyelv = 3", {kelllogon}));
            for (const QString& l : lawyers)
                QVERIFY(db.exec("INSERT INTO ugyvedek (ugyvednev) VALUES (?)", {l}));
        }
        QVERIFY(folder.open());
        const Session& s = Session::instance();
        QCOMPARE(s.dataFilePath, folder.dataFile());
        QTEST(s.rights, "rights");
        QCOMPARE(s.language, qint16(3));
        QTEST(s.defaultLawyer, "defaultLawyer");
    }

    void locationScreenWritesTheQuotedLine()
    {
        TestFolder folder;
        dataeler screen;
        QCOMPARE(screen.currentFolder(), folder.programFolder());
        screen.setFolder(folder.dataFolder() + "/");
        QTest::mouseClick(screen.findChild<QPushButton*>("ok"), Qt::LeftButton);
        QCOMPARE(testsupport::readFile(folder.programFolder() + "/jog.ini"),
                 ("\"path=" + folder.dataFolder() + "\"\r\n").toLocal8Bit());
        // The line it writes is read back as the same folder.
        QVERIFY(folder.open());
    }

    void refusesBadCredentialsAndForeignFiles_data()
    {
        // One thing changed from a good opening: "user=", "password=" or "connect=" replaces that
        // value; "data:<bytes>" or "account:<bytes>" overwrites that file; "swap" names each file
        // as the other; "no account file" removes it.
        QTest::addColumn<QString>("change");
        QTest::addColumn<QString>("expected"); // <data> and <account> stand for the files' paths
        QTest::addColumn<Failure>("failure");
        const QString badAccount = store::accountOrPasswordError();
        const QString badPassword = "Not a valid password.";
        const QString notOurs = "Unrecognized database format '%1'.";
        const auto row = [](const char* tag, const char* change, QString expected, Failure f) {
            QTest::newRow(tag) << QString(change) << expected << f;
        };
        row("wrong account", "user=Kiss Béla", badAccount, Failure::Refused);
        row("wrong account password", "password=vm4818", badAccount, Failure::Refused);
        row("wrong database password", "connect=pwd=xx", badPassword, Failure::Refused);
        row("no database password", "connect=uid=x", badPassword, Failure::Refused);
        row("text file", "data:path=C:\\x\r\n", notOurs.arg("<data>"), Failure::NotCausora);
        row("empty file", "data:", notOurs.arg("<data>"), Failure::NotCausora);
        row("text account file", "account:[accounts]\r\n", notOurs.arg("<account>"),
            Failure::NotCausora);
        // Each file is a database of the program, but not of the kind it is taken for.
        row("files swapped", "swap", notOurs.arg("<account>"), Failure::NotCausora);
        row("no account file", "no account file", "Could not find file '<account>'.",
            Failure::Missing);
    }
    void refusesBadCredentialsAndForeignFiles()
    {
        QFETCH(QString, change);
        QFETCH(QString, expected);
        QString account = store::databaseAccount();
        QString password = store::databasePassword();
        QString connect = store::connectText();
        TestFolder folder;
        QString file = folder.dataFile();
        QString accounts = folder.dataFolder() + "/caujog.mdw";
        const QString value = change.section(QRegularExpression("[=:]"), 1);
        if (change.startsWith("user="))
            account = value;
        else if (change.startsWith("password="))
            password = value;
        else if (change.startsWith("connect="))
            connect = value;
        else if (change.startsWith("data:"))
            testsupport::writeFile(file, value.toLatin1());
        else if (change.startsWith("account:"))
            testsupport::writeFile(accounts, value.toLatin1());
        else if (change == "swap")
            std::swap(file, accounts);
        else if (change == "no account file")
            QVERIFY(QFile::remove(accounts));
        expected.replace("<data>", file).replace("<account>", accounts);
        const auto contents = [&] {
            return QList<QByteArray>{testsupport::readFile(file), testsupport::readFile(accounts)};
        };
        const QList<QByteArray> before = contents();
        const QDateTime modified = QFileInfo(file).lastModified();

        Database db;
        QString error;
        QVERIFY(!store::openDataFile(db, file, accounts, account, password, connect, &error));
        QCOMPARE(error, expected);
        QTEST(db.lastFailure(), "failure");
        QVERIFY(!db.isOpen());
        // Nothing was written to the files that failed to open.
        QCOMPARE(contents(), before);
        QCOMPARE(QFileInfo(file).lastModified(), modified);
        QVERIFY(!QFileInfo::exists(file + "-journal") && !QFileInfo::exists(accounts + "-journal"));
    }

    void opensAfterAWorkstationStoppedInTheMiddleOfASave()
    {
        // The files as a workstation killed during a save leaves them: the data file already
        // holding part of the save (a small cache spills it early) and the journal holding what the
        // save overwrote.
        TestFolder data;
        QVERIFY(data.open());
        Database& db = data.db();
        const QString folder = data.dataFolder();
        const QString crashed = data.root() + "/crashed";
        QVERIFY(QDir().mkpath(crashed));
        const double before = db.scalar("SELECT total(length(uzen1)) FROM uzenetek").toDouble();
        QVERIFY(db.exec("PRAGMA cache_size = 2"));
        QVERIFY(db.begin());
        // Long enough to fill more pages than the cache holds, however many messages there are.
        QVERIFY(db.exec("UPDATE uzenetek SET uzen1 = uzen1 || ?", {QString(2000, u'x')}));
        for (const QString name : {"causora.mdb", "causora.mdb-journal", "caujog.mdw"})
            QVERIFY(QFile::copy(folder + '/' + name, crashed + '/' + name));
        db.rollback();
        QVERIFY(testsupport::readFile(crashed + "/causora.mdb")
                != testsupport::readFile(data.dataFile()));

        // The next workstation gets in, and finds the file as it was before the broken save.
        Database next;
        QString error;
        QVERIFY2(store::openDataFile(next, crashed + "/causora.mdb", crashed + "/caujog.mdw",
                                     store::databaseAccount(), store::databasePassword(),
                                     store::connectText(), &error),
                 qPrintable(error));
        QVERIFY(!next.isReadOnly());
        QCOMPARE(next.scalar("SELECT total(length(uzen1)) FROM uzenetek").toDouble(), before);
        QVERIFY(!QFileInfo::exists(crashed + "/causora.mdb-journal"));
    }

    // One line per failure in hiba.txt; a log that cannot be written is passed over in silence.
    void errorLog()
    {
        TestFolder folder;
        const QString log = folder.programFolder() + "/hiba.txt";
        const QByteArray date = "Dátum: " + QDate::currentDate().toString("yyyy.MM.dd").toUtf8();
        store::hibanaplo("UGYEK", "LOAD", "Disk or network error.");
        const QByteArray first
                = date + " ** Modul: UGYEK ** Helye: LOAD ** Hiba: Disk or network error.\r\n";
        QCOMPARE(testsupport::readFile(log), first);
        // A second failure adds its own line, which ends as any other without a description.
        store::hibanaplo("Emailkuldo", "Emailkuld", QString());
        QCOMPARE(testsupport::readFile(log),
                 first + date + " ** Modul: Emailkuldo ** Helye: Emailkuld ** Hiba: \r\n");

        // A folder that does not exist, and a log name taken by a folder (the tests may run as
        // root, for whom permissions do not stop a write).
        platform::setProgramFolder("/nonexistent/causora");
        store::hibanaplo("UGYEK", "g5", "x");
        QVERIFY(!QFile::exists("/nonexistent/causora/hiba.txt"));
        QVERIFY(QFile::remove(log) && QDir(folder.programFolder()).mkdir("hiba.txt"));
        platform::setProgramFolder(folder.programFolder());
        store::hibanaplo("UGYEK", "g6", "y");
        QVERIFY(QFileInfo(log).isDir());
    }
};

QTEST_MAIN(tst_adatmegnyitas)
#include "tst_adatmegnyitas.moc"
