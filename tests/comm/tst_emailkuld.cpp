#include "TestSupport.h"

#include "comm/Emailkuld.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class tst_emailkuld : public QObject
{
    Q_OBJECT
private slots:
    void cleanup() { qputenv("PATH", m_path); }
    void handsTheAddressToTheMailHandler_data();
    void handsTheAddressToTheMailHandler();

private:
    const QByteArray m_path = qgetenv("PATH");
};

void tst_emailkuld::handsTheAddressToTheMailHandler_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("handler");
    QTest::newRow("plain") << "kovacs.janos@pelda.hu" << true;
    QTest::newRow("blanks kept") << " Kovács János <kj@pelda.hu> " << true;
    QTest::newRow("quotes kept") << "\"Kis Anna\" <anna@pelda.hu>" << true;
    QTest::newRow("empty") << "" << true;
    QTest::newRow("no handler is logged") << "kovacs.janos@pelda.hu" << false;
}

void tst_emailkuld::handsTheAddressToTheMailHandler()
{
    QFETCH(QString, address);
    QFETCH(bool, handler);
    testsupport::TestFolder folder;
    // A folder of its own heads PATH, alone or with a stand-in handler: an xdg-open that writes
    // the count of its arguments, then each on a line of its own.
    QTemporaryDir bin;
    const QString received = bin.filePath("received.txt");
    QByteArray path = QFile::encodeName(bin.path());
    if (handler) {
        const QByteArray r = received.toUtf8();
        testsupport::writeFile(bin.filePath("xdg-open"),
                               "#!/bin/sh\n{ echo $#; printf '%s\\n' \"$@\"; } > '" + r
                                       + ".tmp'\nmv '" + r + ".tmp' '" + r + "'\n");
        QFile::setPermissions(bin.filePath("xdg-open"), QFile::ReadOwner | QFile::ExeOwner);
        path += ":" + m_path;
    }
    qputenv("PATH", path);

    testsupport::MessageRecorder boxes;
    comm::Emailkuld(address);
    QVERIFY(boxes.shown().isEmpty());
    const QByteArray log = testsupport::readFile(folder.programFolder() + "/hiba.txt");
    if (handler) {
        QTRY_VERIFY(QFile::exists(received));
        QCOMPARE(QString::fromUtf8(testsupport::readFile(received)), "1\nmailto:" + address + "\n");
        QVERIFY(log.isEmpty());
    } else {
        QCOMPARE(log.count("\r\n"), 1);
        QVERIFY(log.contains(" ** Modul: Emailkuldo ** Helye: Emailkuld ** Hiba: "));
        QVERIFY(!log.endsWith("Hiba: \r\n"));
    }
}

QTEST_MAIN(tst_emailkuld)
#include "tst_emailkuld.moc"
