#include "TestSupport.h"

#include "comm/Telhivo.h"
#include "locale/Uzenet.h"
#include "platform/SerialPort.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <unistd.h>
#include <QElapsedTimer>
#include <QTest>

using namespace std::chrono_literals;

// A modem stand-in: the program writes to the slave side of a pseudo-terminal and the test
// reads what arrived on the master side.
class PseudoModem
{
public:
    PseudoModem()
    {
        char name[256] = {};
        if (openpty(&m_master, &m_slave, name, nullptr, nullptr) == 0)
            m_device = QString::fromLocal8Bit(name);
    }
    ~PseudoModem()
    {
        if (m_master >= 0)
            ::close(m_master);
        if (m_slave >= 0)
            ::close(m_slave);
    }
    QString device() const { return m_device; }
    QByteArray received() const
    {
        QByteArray bytes;
        pollfd p{m_master, POLLIN, 0};
        while (::poll(&p, 1, 200) > 0 && (p.revents & POLLIN)) {
            char buffer[256];
            const ssize_t n = ::read(m_master, buffer, sizeof buffer);
            if (n <= 0)
                break;
            bytes.append(buffer, int(n));
        }
        return bytes;
    }

private:
    int m_master = -1;
    int m_slave = -1;
    QString m_device;
};

class tst_telhivo : public QObject
{
    Q_OBJECT
private slots:
    void portNumbersNameSerialDevices_data();
    void portNumbersNameSerialDevices();
    void sendsTheDialCommand_data();
    void sendsTheDialCommand();
    void waitsBeforeTellingTheUser();
    void failureIsLoggedWithoutABox_data();
    void failureIsLoggedWithoutABox();
};

void tst_telhivo::portNumbersNameSerialDevices_data()
{
    QTest::addColumn<QString>("setting");
    QTest::addColumn<QString>("device");
    QTest::newRow("first port") << "1"
                                << "/dev/ttyS0";
    QTest::newRow("fourth port") << " 4"
                                 << "/dev/ttyS3";
    QTest::newRow("usb modem path") << "/dev/ttyUSB0"
                                    << "/dev/ttyUSB0";
    QTest::newRow("zero") << "0"
                          << "";
    QTest::newRow("not a number") << "COM1"
                                  << "";
}

void tst_telhivo::portNumbersNameSerialDevices()
{
    QFETCH(QString, setting);
    QFETCH(QString, device);
    QCOMPARE(platform::serialDevice(setting), device);
}

void tst_telhivo::sendsTheDialCommand_data()
{
    QTest::addColumn<QVariant>("tonepulse");
    QTest::addColumn<QVariant>("elotag");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QByteArray>("command");
    const QVariant null(QMetaType(QMetaType::QString));
    QTest::newRow("tone, prefix 0")
            << QVariant(-1) << QVariant("0") << "3612345678" << QByteArray("ATDT,03612345678\r");
    QTest::newRow("pulse") << QVariant(0) << QVariant("0") << "3612345678"
                           << QByteArray("ATDP,03612345678\r");
    QTest::newRow("null prefix") << QVariant(-1) << null << "123" << QByteArray("ATDT,123\r");
    QTest::newRow("empty prefix") << QVariant(-1) << QVariant("") << "123"
                                  << QByteArray("ATDT,123\r");
    QTest::newRow("empty number") << QVariant(-1) << QVariant("9") << "" << QByteArray("ATDT,9\r");
    QTest::newRow("number as stored")
            << QVariant(-1) << QVariant("") << "06-1 234/567" << QByteArray("ATDT,06-1 234/567\r");
}

void tst_telhivo::sendsTheDialCommand()
{
    QFETCH(QVariant, tonepulse);
    QFETCH(QVariant, elotag);
    QFETCH(QString, number);
    QFETCH(QByteArray, command);

    testsupport::TestFolder folder;
    QVERIFY(folder.open());
    PseudoModem modem;
    QVERIFY(!modem.device().isEmpty());
    QVERIFY(folder.db().exec("update parameterek set modemport = ?, tonepulse = ?, elotag = ?",
                             {modem.device(), tonepulse, elotag}));

    testsupport::MessageRecorder boxes;
    comm::telefonhiv(number, 0ms);
    QCOMPARE(modem.received(), command);
    // The user is told to pick up the handset; nothing went to the log.
    QCOMPARE(boxes.shown().size(), 1);
    QCOMPARE(boxes.shown().first().style, int(platform::Notice));
    QCOMPARE(boxes.texts(), QStringList{uzenetszoveg("telefon")});
    QVERIFY(!QFile::exists(folder.programFolder() + "/hiba.txt"));
}

void tst_telhivo::waitsBeforeTellingTheUser()
{
    testsupport::TestFolder folder;
    QVERIFY(folder.open());
    PseudoModem modem;
    QVERIFY(folder.db().exec("update parameterek set modemport = ?", {modem.device()}));
    QElapsedTimer clock;
    qint64 noticeAfter = -1;
    platform::setMessageHandler([&](const platform::ShownMessage&) {
        noticeAfter = clock.elapsed();
        return int(platform::AnswerOk);
    });
    clock.start();
    comm::telefonhiv("123", 300ms);
    QVERIFY2(noticeAfter >= 300, qPrintable(QString::number(noticeAfter)));
    testsupport::installUnexpectedMessageHandler();
}

void tst_telhivo::failureIsLoggedWithoutABox_data()
{
    QTest::addColumn<QString>("modemport");
    QTest::addColumn<bool>("parametersRow");
    QTest::newRow("missing device") << "/dev/causora-no-such-modem" << true;
    QTest::newRow("no such port number") << "0" << true;
    QTest::newRow("no parameters row") << "1" << false;
}

void tst_telhivo::failureIsLoggedWithoutABox()
{
    QFETCH(QString, modemport);
    QFETCH(bool, parametersRow);

    testsupport::TestFolder folder;
    QVERIFY(folder.open());
    QVERIFY(folder.db().exec("update parameterek set modemport = ?", {modemport}));
    if (!parametersRow)
        QVERIFY(folder.db().exec("delete from parameterek"));

    testsupport::MessageRecorder boxes;
    comm::telefonhiv("123", 0ms);
    QVERIFY(boxes.shown().isEmpty());
    const QByteArray log = testsupport::readFile(folder.programFolder() + "/hiba.txt");
    QCOMPARE(log.count("\r\n"), 1);
    QVERIFY(log.contains(" ** Modul: Telhivo ** Helye: telhivo ** Hiba: "));
    QVERIFY(!log.endsWith("Hiba: \r\n"));
}

QTEST_MAIN(tst_telhivo)
#include "tst_telhivo.moc"
