#include "TestSupport.h"

#include "comm/Telhivo.h"
#include "locale/Uzenet.h"
#include "session/Session.h"

#include <poll.h>
#include <pty.h>
#include <unistd.h>
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

} // namespace

class tst_telhivo : public QObject
{
    Q_OBJECT
private slots:
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
        // A call asks the user to lift the handset; a failure writes one log line and no box.
        const bool failed = sent.isEmpty();
        QCOMPARE(boxes.texts(), failed ? QStringList() : QStringList{uzenetszoveg("telefon")});
        const QByteArray log = testsupport::readFile(folder.programFolder() + "/hiba.txt");
        QCOMPARE(log.count("\r\n"), failed ? 1 : 0);
        QCOMPARE(log.count(" ** Modul: Telhivo ** Helye: telhivo ** Hiba: "), failed ? 1 : 0);
    }
};

QTEST_MAIN(tst_telhivo)
#include "tst_telhivo.moc"
