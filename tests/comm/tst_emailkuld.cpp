#include "TestSupport.h"

#include "comm/Emailkuld.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class tst_emailkuld : public QObject
{
    Q_OBJECT
    const QByteArray m_path = qgetenv("PATH");

private slots:
    void cleanup() { qputenv("PATH", m_path); }
    void handsTheAddressToTheMailHandler_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("handler");
        QTest::newRow("blanks kept") << " Kovács János <kj@pelda.hu> " << true;
        QTest::newRow("no handler is logged") << "kovacs.janos@pelda.hu" << false;
    }
    void handsTheAddressToTheMailHandler()
    {
        QFETCH(QString, address);
        QFETCH(bool, handler);
        testsupport::TestFolder folder;
        // PATH starts with a folder of its own: empty, or with an xdg-open writing $# and each arg.
        QTemporaryDir bin;
        const QString xdg = bin.filePath("xdg-open"), got = bin.filePath("received.txt");
        if (handler) {
            testsupport::writeFile(xdg, "#!/bin/sh\nprintf '%s\\n' $# \"$@\" > '" + got.toUtf8()
                                                + "'\n");
            QFile::setPermissions(xdg, QFile::ReadOwner | QFile::ExeOwner);
        }
        qputenv("PATH", QFile::encodeName(bin.path()) + (handler ? ":" + m_path : QByteArray()));
        testsupport::MessageRecorder boxes;
        comm::Emailkuld(address);
        QVERIFY(boxes.shown().isEmpty());
        const QByteArray log = testsupport::readFile(folder.programFolder() + "/hiba.txt");
        QCOMPARE(log.count("\r\n"), handler ? 0 : 1);
        QCOMPARE(log.count(" ** Modul: Emailkuldo ** Helye: Emailkuld ** Hiba: "), handler ? 0 : 1);
        if (handler) // it runs on its own, so what it received is awaited
            QTRY_COMPARE(QString::fromUtf8(testsupport::readFile(got)),
                         "1\nmailto:" + address + "\n");
    }
};

QTEST_MAIN(tst_emailkuld)
#include "tst_emailkuld.moc"
