#include "TestSupport.h"

#include "platform/Display.h"
#include "store/ErrorLog.h"

#include <QDate>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

class tst_hibanaplo : public QObject
{
    Q_OBJECT
private slots:
    void cleanup() { platform::setProgramFolder(QString()); }
    void appendsOneLinePerFailure();
    void emptyDescriptionStillEndsTheLine();
    void unwritableLogIsPassedOverInSilence();
};

void tst_hibanaplo::appendsOneLinePerFailure()
{
    QTemporaryDir dir;
    platform::setProgramFolder(dir.path());
    const QString today = QDate::currentDate().toString("yyyy.MM.dd");

    store::hibanaplo("UGYEK", "LOAD", "Disk or network error.");
    const QString log = dir.filePath("hiba.txt");
    const QByteArray first
            = "Dátum: " + today.toUtf8()
              + " ** Modul: UGYEK ** Helye: LOAD ** Hiba: Disk or network error.\r\n";
    QCOMPARE(testsupport::readFile(log), first);

    store::hibanaplo("Telhivo", "telhivo", "Nincs ilyen eszköz");
    QCOMPARE(testsupport::readFile(log),
             first + "Dátum: " + today.toUtf8()
                     + " ** Modul: Telhivo ** Helye: telhivo ** Hiba: Nincs ilyen eszköz\r\n");
}

void tst_hibanaplo::emptyDescriptionStillEndsTheLine()
{
    QTemporaryDir dir;
    platform::setProgramFolder(dir.path());
    store::hibanaplo("Emailkuldo", "Emailkuld", QString());
    const QByteArray log = testsupport::readFile(dir.filePath("hiba.txt"));
    QVERIFY(log.endsWith(" ** Modul: Emailkuldo ** Helye: Emailkuld ** Hiba: \r\n"));
    QCOMPARE(log.count('\n'), 1);
}

void tst_hibanaplo::unwritableLogIsPassedOverInSilence()
{
    // A folder that does not exist, and a log name taken by a folder: neither can be written
    // (the tests may run as root, for whom permissions do not stop a write).
    platform::setProgramFolder("/nonexistent/causora");
    store::hibanaplo("UGYEK", "g5", "x");
    QVERIFY(!QFile::exists("/nonexistent/causora/hiba.txt"));

    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir("hiba.txt"));
    platform::setProgramFolder(dir.path());
    store::hibanaplo("UGYEK", "g6", "y");
    QVERIFY(QFileInfo(dir.filePath("hiba.txt")).isDir());
}

QTEST_MAIN(tst_hibanaplo)
#include "tst_hibanaplo.moc"
