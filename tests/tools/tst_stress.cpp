#include "TestSupport.h"

#include "platform/Database.h"
#include "store/Access.h"
#include "store/Credentials.h"

#include <QFile>
#include <QMap>
#include <QProcess>
#include <QSet>
#include <QTest>

namespace {

// What a causora-stress log says must be in the file.
struct Confirmed
{
    QMap<qlonglong, QStringList> clients; // key -> name, place, phone
    QSet<qlonglong> deletedClients;
    QMap<QString, QStringList> cases; // number -> client key, note
    QSet<QString> deletedCases;
    QSet<QString> triedNames;
    // The saves a killed run had not seen the end of: each may have happened all the same.
    QList<QStringList> unfinished;
    int saves = 0;

    void read(const QString& path)
    {
        QVERIFY(QFile::exists(path));
        QStringList pending;
        for (const QByteArray& bytes : testsupport::readFile(path).split('\n')) {
            const QStringList fields = QString::fromUtf8(bytes).split(u'\t');
            if (fields.size() < 3)
                continue;
            if (fields[0] == "try") {
                // A try with no outcome before the next one: that run was killed mid-save.
                if (!pending.isEmpty())
                    unfinished << pending;
                pending = fields.mid(1);
                if (fields[1] != "del" && fields[2] == "client")
                    triedNames << fields[4];
                continue;
            }
            pending.clear();
            if (fields[0] == "not")
                continue;
            ++saves;
            const bool del = fields[0] == "del";
            if (fields[1] == "client" && del)
                deletedClients << fields[2].toLongLong();
            else if (fields[1] == "client")
                clients[fields[2].toLongLong()] = fields.mid(3);
            else if (del)
                deletedCases << fields[2];
            else
                cases[fields[2]] = fields.mid(3);
        }
        if (!pending.isEmpty())
            unfinished << pending;
    }
    // True when an unfinished save may have changed or deleted this row.
    bool mayDiffer(const QString& table, const QString& key) const
    {
        const auto touches = [&](const QStringList& save) {
            return save.size() > 2 && save[0] != "add" && save[1] == table && save[2] == key;
        };
        return std::any_of(unfinished.cbegin(), unfinished.cend(), touches);
    }
};

QString runDriver(QProcess& p, const QString& folder, const QString& tag, int saves)
{
    const QString log = folder + "/../" + tag + ".log";
    p.start(STRESS_DRIVER, {folder, "--tag", tag, "--log", log, "--saves", QString::number(saves),
                            "--seed", QString::number(qHash(tag))});
    return log;
}

// Opens the file as the program does and compares it with what the logs confirmed.
void verify(const QString& folder, const Confirmed& c)
{
    platform::Database db;
    QString error;
    QVERIFY2(store::openDataFile(db, folder + "/causora.mdb", folder + "/caujog.mdw",
                                 store::databaseAccount(), store::databasePassword(),
                                 store::connectText(), &error),
             qPrintable(error));
    QCOMPARE(db.scalar("PRAGMA integrity_check").toString(), QStringLiteral("ok"));
    QVERIFY(db.first("SELECT 1 FROM ugyek WHERE ugyfelkod IS NOT NULL AND ugyfelkod NOT IN "
                     "(SELECT ukod FROM ugyfelek)")
                    .isEmpty());
    for (auto it = c.clients.cbegin(); it != c.clients.cend(); ++it) {
        const QString key = QString::number(it.key());
        const platform::Row row
                = db.first("SELECT unev1, uhely, utel1 FROM ugyfelek WHERE ukod = ?", {it.key()});
        if (c.deletedClients.contains(it.key()) || c.mayDiffer("client", key))
            continue;
        QVERIFY2(!row.isEmpty(), qPrintable("client lost: " + key));
        QCOMPARE(QStringList({row.text("unev1"), row.text("uhely"), row.text("utel1")}),
                 it.value());
    }
    for (const qlonglong key : c.deletedClients)
        QVERIFY(db.first("SELECT ukod FROM ugyfelek WHERE ukod = ?", {key}).isEmpty());
    for (auto it = c.cases.cbegin(); it != c.cases.cend(); ++it) {
        const platform::Row row
                = db.first("SELECT ugyfelkod, megjegyzes FROM ugyek WHERE ugyszam = ?", {it.key()});
        if (c.deletedCases.contains(it.key()))
            QVERIFY2(row.isEmpty(), qPrintable("deleted case back: " + it.key()));
        else if (!c.mayDiffer("case", it.key()))
            QCOMPARE(QStringList({row.text("ugyfelkod"), row.text("megjegyzes")}), it.value());
    }
    for (const QString& name : c.triedNames)
        QVERIFY2(db.scalar("SELECT count(*) FROM ugyfelek WHERE unev1 = ?", {name}).toInt() <= 1,
                 qPrintable("doubled: " + name));
}

} // namespace

class tst_stress : public QObject
{
    Q_OBJECT
private slots:
    void twoWorkstationsLoseNothing()
    {
        testsupport::TestFolder folder(true);
        QProcess a, b;
        const QString logA = runDriver(a, folder.dataFolder(), "T1", 150);
        const QString logB = runDriver(b, folder.dataFolder(), "T2", 150);
        for (QProcess* p : {&a, &b}) {
            QVERIFY(p->waitForFinished(60000));
            QVERIFY2(p->exitCode() == 0, p->readAllStandardError().constData());
            const QByteArray report = p->readAllStandardOutput();
            QVERIFY2(report.contains("\"saves\": 150,") && report.contains("\"busy_unhandled\": 0,")
                             && report.contains("\"unexpected\": 0}"),
                     report.constData());
        }
        Confirmed confirmed;
        confirmed.read(logA);
        confirmed.read(logB);
        QCOMPARE(confirmed.saves, 300);
        verify(folder.dataFolder(), confirmed);
    }

    void killedWorkstationLosesNothingConfirmed()
    {
        testsupport::TestFolder folder(true);
        Confirmed confirmed;
        for (int i = 1; i <= 6; ++i) {
            QProcess p;
            const QString log = runDriver(p, folder.dataFolder(), QString("K%1").arg(i), 0);
            QVERIFY(p.waitForStarted());
            QTest::qWait(150 + 40 * i);
            p.kill();
            QVERIFY(p.waitForFinished());
            QCOMPARE(p.exitStatus(), QProcess::CrashExit);
            if (QFile::exists(log))
                confirmed.read(log);
            verify(folder.dataFolder(), confirmed);
            if (QTest::currentTestFailed())
                return;
        }
        QVERIFY(confirmed.saves > 0);
    }
};

QTEST_MAIN(tst_stress)
#include "tst_stress.moc"
