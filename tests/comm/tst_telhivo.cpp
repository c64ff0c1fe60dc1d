#include "TestSupport.h"

#include "comm/Telhivo.h"
#include "locale/Uzenet.h"
#include "platform/SerialPort.h"

#include <poll.h>
#include <pty.h>
#include <unistd.h>
#include <QTest>

using namespace std::chrono_literals;

namespace {

// A modem stand-in: the program writes to the slave side of a pseudo-terminal and the test
// reads what arrived on the master side.
struct PseudoModem
{
    int master = -1;
    int slave = -1;
    QString device;

    PseudoModem()
    {
        char name[256] = {};
        if (openpty(&master, &slave, name, nullptr, nullptr) == 0)
            device = QString::fromLocal8Bit(name);
    }
    ~PseudoModem()
    {
        ::close(master);
        ::close(slave);
    }
    QByteArray received() const
    {
        QByteArray bytes;
        pollfd p{master, POLLIN, 0};
        char buffer[256];
        ssize_t n = 0;
        while (::poll(&p, 1, 200) > 0 && (p.revents & POLLIN)
               && (n = ::read(master, buffer, sizeof buffer)) > 0)
            bytes.append(buffer, int(n));
        return bytes;
    }
};

} // namespace

class tst_telhivo : public QObject
{
    Q_OBJECT
private slots:
    void dialsOrLogsTheFailure_data();
    void dialsOrLogsTheFailure();
};

void tst_telhivo::dialsOrLogsTheFailure_data()
{
    QTest::addColumn<QString>("modemport"); // empty: the pseudo-modem
    QTest::addColumn<QVariant>("tonepulse");
    QTest::addColumn<QVariant>("elotag");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QByteArray>("sent"); // empty: the failure is only logged
    const QString modem;
    const QVariant tone(-1);
    const QVariant null(QMetaType(QMetaType::QString));
    QTest::newRow("tone, prefix 0")
            << modem << tone << QVariant("0") << "3612345678" << QByteArray("ATDT,03612345678\r");
    QTest::newRow("pulse") << modem << QVariant(0) << QVariant("0") << "3612345678"
                           << QByteArray("ATDP,03612345678\r");
    QTest::newRow("null prefix") << modem << tone << null << "123" << QByteArray("ATDT,123\r");
    QTest::newRow("empty prefix") << modem << tone << QVariant("") << "123"
                                  << QByteArray("ATDT,123\r");
    QTest::newRow("empty number") << modem << tone << QVariant("9") << "" << QByteArray("ATDT,9\r");
    QTest::newRow("number as stored")
            << modem << tone << QVariant("") << "06-1 234/567" << QByteArray("ATDT,06-1 234/567\r");
    QTest::newRow("missing device") << QString("/dev/causora-no-such-modem") << tone
                                    << QVariant("0") << "123" << QByteArray();
    QTest::newRow("no such port number")
            << QString("0") << tone << QVariant("0") << "123" << QByteArray();
}

void tst_telhivo::dialsOrLogsTheFailure()
{
    QFETCH(QString, modemport);
    QFETCH(QVariant, tonepulse);
    QFETCH(QVariant, elotag);
    QFETCH(QString, number);
    QFETCH(QByteArray, sent);

    testsupport::TestFolder folder;
    QVERIFY(folder.open());
    PseudoModem modem;
    QVERIFY(!modem.device.isEmpty());
    QVERIFY(folder.db().exec("update parameterek set modemport = ?, tonepulse = ?, elotag = ?",
                             {modemport.isEmpty() ? modem.device : modemport, tonepulse, elotag}));

    testsupport::MessageRecorder boxes;
    comm::telefonhiv(number, 0ms);
    QCOMPARE(modem.received(), sent);
    const QByteArray log = testsupport::readFile(folder.programFolder() + "/hiba.txt");
    if (!sent.isEmpty()) {
        // The user is told to pick up the handset; nothing went to the log.
        QCOMPARE(boxes.texts(), QStringList{uzenetszoveg("telefon")});
        QCOMPARE(boxes.shown().first().style, int(platform::Notice));
        QVERIFY(!QFile::exists(folder.programFolder() + "/hiba.txt"));
    } else {
        // A failure writes one line to the log and shows no box.
        QVERIFY(boxes.shown().isEmpty());
        QCOMPARE(log.count("\r\n"), 1);
        QVERIFY(log.contains(" ** Modul: Telhivo ** Helye: telhivo ** Hiba: "));
        QVERIFY(!log.endsWith("Hiba: \r\n"));
    }
}

QTEST_MAIN(tst_telhivo)
#include "tst_telhivo.moc"
