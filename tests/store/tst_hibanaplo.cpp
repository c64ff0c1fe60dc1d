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
    void appendsOneLinePerFailure()
    {
        QTemporaryDir dir;
        platform::setProgramFolder(dir.path());
        const QString log = dir.filePath("hiba.txt");
        const QByteArray date = "Dátum: " + QDate::currentDate().toString("yyyy.MM.dd").toUtf8();

        store::hibanaplo("UGYEK", "LOAD", "Disk or network error.");
        const QByteArray first
                = date + " ** Modul: UGYEK ** Helye: LOAD ** Hiba: Disk or network error.\r\n";
        QCOMPARE(testsupport::readFile(log), first);
        // A second failure adds its own line, which ends as any other without a description.
        store::hibanaplo("Emailkuldo", "Emailkuld", QString());
        QCOMPARE(testsupport::readFile(log),
                 first + date + " ** Modul: Emailkuldo ** Helye: Emailkuld ** Hiba: \r\n");
    }

    void unwritableLogIsPassedOverInSilence()
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
};

QTEST_MAIN(tst_hibanaplo)
#include "tst_hibanaplo.moc"
