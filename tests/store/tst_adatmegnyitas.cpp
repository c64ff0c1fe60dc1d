#include "TestSupport.h"

#include "session/Session.h"
#include "store/DataLocation.h"
#include "store/Prepare.h"
#include "store/dataeler.h"

#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QPushButton>
#include <QTest>
#include <QTimer>

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
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("dataFile");
        // <data> stands for the data folder.
        QTest::newRow("quoted") << "\"path=<data>\"\r\n"
                                << "<data>/causora.mdb";
        QTest::newRow("unquoted") << "path=<data>\r\n"
                                  << "<data>/causora.mdb";
        QTest::newRow("trailing separator") << "\"path=<data>/\"\r\n"
                                            << "<data>//causora.mdb";
        QTest::newRow("other lines around") << "[x]\r\n\"path=<data>\"\r\nmore\r\n"
                                            << "<data>/causora.mdb";
        QTest::newRow("line feed only") << "path=<data>\n"
                                        << "<data>/causora.mdb";
    }
    void opensWithQuotedAndUnquotedLines()
    {
        QFETCH(QString, line);
        QFETCH(QString, dataFile);
        TestFolder folder;
        testsupport::writeFile(folder.programFolder() + "/jog.ini",
                               line.replace("<data>", folder.dataFolder()).toLocal8Bit());
        testsupport::MessageRecorder messages;
        platform::Database db;
        store::StartValues start;
        QVERIFY(store::adatmegnyitas(db, &start));
        QVERIFY(messages.shown().isEmpty());
        dataFile.replace("<data>", folder.dataFolder());
        QCOMPARE(start.dataFilePath, dataFile);
        QCOMPARE(start.workgroupFilePath, dataFile.replace("causora.mdb", "caujog.mdw"));
        QVERIFY(db.isOpen());
        QVERIFY(!db.isReadOnly());
    }

    void failuresShowTheirMessageAndTouchNothing_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<bool>("locationScreen");
        // In the messages, <program> stands for the program folder and <data> for the data
        // folder: markers that no folder name can hold.
        QTest::addRow("no settings file") << "<program>/jog.ini    Not found " << false;
        QTest::addRow("empty settings file") << "Bad inifile" << true;
        QTest::addRow("no path entry") << "Bad inifile" << true;
        QTest::addRow("no line end") << "Bad inifile" << true;
        QTest::addRow("no data file") << "<data>/causora.mdb   Not found" << true;
        QTest::addRow("no account file") << "<data>/caujog.mdw  <nincsmeg>" << false;
    }
    void failuresShowTheirMessageAndTouchNothing()
    {
        QFETCH(QString, message);
        QFETCH(bool, locationScreen);
        const QString setup = QTest::currentDataTag();
        TestFolder folder;
        const QString ini = folder.programFolder() + "/jog.ini";
        if (setup == "empty settings file")
            testsupport::writeFile(ini, "");
        else if (setup == "no path entry")
            testsupport::writeFile(ini, "adat=" + folder.dataFolder().toLocal8Bit() + "\r\n");
        else if (setup == "no line end")
            testsupport::writeFile(ini, "\"path=" + folder.dataFolder().toLocal8Bit() + "\"");
        else if (setup != "no settings file")
            testsupport::writeFile(ini, ("\"path=" + folder.dataFolder() + "\"\r\n").toLocal8Bit());
        if (setup == "no data file")
            QFile::remove(folder.dataFile());
        if (setup == "no account file")
            QFile::remove(folder.dataFolder() + "/caujog.mdw");

        message.replace(QLatin1String("<nincsmeg>"), store::catalogueMessage("nincsmeg", 1));
        message.replace(QLatin1String("<program>"), folder.programFolder());
        message.replace(QLatin1String("<data>"), folder.dataFolder());

        const QStringList before = snapshot(folder.root());
        testsupport::MessageRecorder messages;
        LocationScreenWatcher watcher;
        QVERIFY(!Session::instance().start());
        QCOMPARE(messages.texts(), QStringList{message});
        QCOMPARE(watcher.shown, locationScreen);
        QCOMPARE(snapshot(folder.root()), before);
        QVERIFY(!Session::instance().database.isOpen());
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
        QFETCH(QString, rights);
        QFETCH(QString, defaultLawyer);
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
        QCOMPARE(s.rights, rights);
        QCOMPARE(s.language, qint16(3));
        QCOMPARE(s.userName, QString());
        QCOMPARE(s.defaultLawyer, defaultLawyer);
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
};

QTEST_MAIN(tst_adatmegnyitas)
#include "tst_adatmegnyitas.moc"
