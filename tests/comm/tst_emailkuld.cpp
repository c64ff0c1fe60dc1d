#include "TestSupport.h"

#include "comm/Emailkuld.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

// Runs with a stand-in mail handler: an xdg-open on PATH that writes each argument it gets on
// a line of its own, after the count of arguments.
class tst_emailkuld : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void handsTheAddressOverAsOneArgument_data();
    void handsTheAddressOverAsOneArgument();
    void missingHandlerIsLogged();

private:
    QByteArray m_path;
};

void tst_emailkuld::init()
{
    m_path = qgetenv("PATH");
}

void tst_emailkuld::cleanup()
{
    qputenv("PATH", m_path);
}

void tst_emailkuld::handsTheAddressOverAsOneArgument_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("plain") << "kovacs.janos@pelda.hu";
    QTest::newRow("blanks kept") << " Kovács János <kj@pelda.hu> ";
    QTest::newRow("quotes kept") << "\"Kis Anna\" <anna@pelda.hu>";
    QTest::newRow("empty") << "";
}

void tst_emailkuld::handsTheAddressOverAsOneArgument()
{
    QFETCH(QString, address);
    testsupport::TestFolder folder;
    QTemporaryDir bin;
    const QString received = bin.filePath("received.txt");
    testsupport::writeFile(bin.filePath("xdg-open"),
                           "#!/bin/sh\n{ echo $#; printf '%s\\n' \"$@\"; } > '" + received.toUtf8()
                                   + ".tmp'\nmv '" + received.toUtf8() + ".tmp' '"
                                   + received.toUtf8() + "'\n");
    QFile::setPermissions(bin.filePath("xdg-open"),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("PATH", QFile::encodeName(bin.path()) + ":" + m_path);

    testsupport::MessageRecorder boxes;
    comm::Emailkuld(address);
    QTRY_VERIFY(QFile::exists(received));
    QCOMPARE(QString::fromUtf8(testsupport::readFile(received)), "1\nmailto:" + address + "\n");
    QVERIFY(boxes.shown().isEmpty());
    QVERIFY(!QFile::exists(folder.programFolder() + "/hiba.txt"));
}

void tst_emailkuld::missingHandlerIsLogged()
{
    testsupport::TestFolder folder;
    QTemporaryDir emptyBin;
    qputenv("PATH", QFile::encodeName(emptyBin.path()));

    testsupport::MessageRecorder boxes;
    comm::Emailkuld("kovacs.janos@pelda.hu");
    QVERIFY(boxes.shown().isEmpty());
    const QByteArray log = testsupport::readFile(folder.programFolder() + "/hiba.txt");
    QCOMPARE(log.count("\r\n"), 1);
    QVERIFY(log.contains(" ** Modul: Emailkuldo ** Helye: Emailkuld ** Hiba: "));
    QVERIFY(!log.endsWith("Hiba: \r\n"));
}

QTEST_MAIN(tst_emailkuld)
#include "tst_emailkuld.moc"
