#include "TestSupport.h"

#include "comm/Emailkuld.h"
#include "comm/Telhivo.h"
#include "locale/Uzenet.h"
#include "platform/SerialPort.h"
#include "session/Session.h"

#include <poll.h>
#include <pty.h>
#include <unistd.h>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace std::chrono_literals;

namespace {

// A modem stand-in: the program writes to the slave side of a pseudo-terminal; the test reads
// what arrived on the master side.
struct PseudoModem
{
    int master = -1, slave = -1;
    char name[256] = {};
    const bool opened = openpty(&master, &slave, name, nullptr, nullptr) == 0;
    ~PseudoModem() { ::close(master), ::close(slave); }
    QByteArray received() const
    {
        QByteArray bytes;
        pollfd p{master, POLLIN, 0};
        char buffer[256];
        for (ssize_t n; ::poll(&p, 1, 200) > 0 && (n = ::read(master, buffer, sizeof buffer)) > 0;)
            bytes.append(buffer, int(n));
        return bytes;
    }
};

// A failure writes one line to hiba.txt, naming its module and place; success writes none.
void checkLog(const testsupport::TestFolder& folder, const QByteArray& where, bool failed)
{
    const QByteArray log = testsupport::readFile(folder.programFolder() + "/hiba.txt");
    QCOMPARE(log.count("\r\n"), failed ? 1 : 0);
    QCOMPARE(log.count(" ** Modul: " + where + " ** Hiba: "), failed ? 1 : 0);
}

} // namespace

// The dialer and the e-mail hand-off: neither shows a box for its failures.
class tst_comm : public QObject
{
    Q_OBJECT
    const QByteArray m_path = qgetenv("PATH");

private slots:
    void cleanup() { qputenv("PATH", m_path); }

    void dialsOrLogsTheFailure_data()
    {
        QTest::addColumn<QString>("port"); // empty: the pseudo-modem
        QTest::addColumn<QVariant>("tonepulse");
        QTest::addColumn<QVariant>("elotag");
        QTest::addColumn<QString>("number");
        QTest::addColumn<QByteArray>("sent"); // empty: the failure is only logged
        const auto row = [](const char* name, const QVariant& elotag, const QString& number,
                            const char* sent, int tonepulse = -1, const QString& port = {}) {
            QTest::newRow(name) << port << QVariant(tonepulse) << elotag << number
                                << QByteArray(sent);
        };
        row("tone, prefix 0", "0", "3612345678", "ATDT,03612345678\r");
        row("pulse", "0", "3612345678", "ATDP,03612345678\r", 0);
        row("null prefix", QVariant(QMetaType(QMetaType::QString)), "123", "ATDT,123\r");
        row("empty prefix", "", "123", "ATDT,123\r");
        row("empty number", "9", "", "ATDT,9\r");
        row("number as stored", "", "06-1 234/567", "ATDT,06-1 234/567\r");
        row("missing device", "0", "123", "", -1, "/dev/causora-no-such-modem");
    }
    void dialsOrLogsTheFailure()
    {
        QFETCH(QString, port);
        QFETCH(QVariant, tonepulse);
        QFETCH(QVariant, elotag);
        QFETCH(QString, number);
        QFETCH(QByteArray, sent);
        testsupport::TestFolder folder;
        QVERIFY(folder.open());
        PseudoModem modem;
        QVERIFY(modem.opened);
        QVERIFY(folder.db().exec("update parameterek set modemport = ?, tonepulse = ?, elotag = ?",
                                 {port.isEmpty() ? modem.name : port, tonepulse, elotag}));
        testsupport::MessageRecorder boxes;
        comm::telefonhiv(testsupport::database(), number, 0ms);
        QCOMPARE(modem.received(), sent);
        // A call asks the user to lift the handset.
        QCOMPARE(boxes.texts(),
                 sent.isEmpty() ? QStringList() : QStringList{uzenetszoveg("telefon")});
        checkLog(folder, "Telhivo ** Helye: telhivo", sent.isEmpty());
    }

    // A port stored as a number names the serial device of that number, counted from 1.
    void numberedPortNamesItsDevice()
    {
        QCOMPARE(platform::serialDevice(" 3 "), QStringLiteral("/dev/ttyS2"));
    }

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
        checkLog(folder, "Emailkuldo ** Helye: Emailkuld", !handler);
        if (handler) // it runs on its own, so what it received is awaited
            QTRY_COMPARE(QString::fromUtf8(testsupport::readFile(got)),
                         "1\nmailto:" + address + "\n");
    }
};

QTEST_MAIN(tst_comm)
#include "tst_comm.moc"
