#include "TestSupport.h"

#include "platform/Database.h"
#include "platform/SqlFunctions.h"

#include <limits>
#include <memory>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

using platform::Database;

class tst_Database : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup() { m_folder.reset(); }
    void ordersAndComparesAsTheOffice();
    void valAndLeft_data();
    void valAndLeft();
    void newRowKeyIsKnownBeforeStoring();
    void usedLookupEntriesCannotBeDeleted_data();
    void usedLookupEntriesCannotBeDeleted();
    void renamedLookupEntryFollowsIntoItsRows();
    void aShortLockByAnotherCopyIsWaitedFor();
    void aLookAtAFileWaitsForALockAndBindsItsValues();

private:
    Database& db() { return m_folder->db(); }
    QStringList column(const QString& sql)
    {
        QStringList values;
        for (const auto& r : db().select(sql))
            values << r.value(0).toString();
        return values;
    }
    std::unique_ptr<testsupport::TestFolder> m_folder;
};

void tst_Database::init()
{
    m_folder = std::make_unique<testsupport::TestFolder>();
    QVERIFY(m_folder->open());
}

void tst_Database::ordersAndComparesAsTheOffice()
{
    // Case numbers: numeric value first (0 without a leading number), then the text; the
    // stored ordering value agrees with val().
    for (const char* n : {"10", "9", "9/A", "A1", "10/A", "2019/123"})
        QVERIFY(db().exec("INSERT INTO ugyek (ugyszam) VALUES (?)", {QString(n)}));
    const QStringList cases = {"A1", "9", "9/A", "10", "10/A", "2019/123"};
    // A number differing only in letter case is the same case.
    QVERIFY(!db().exec("INSERT INTO ugyek (ugyszam) VALUES ('10/a')"));
    QCOMPARE(column("SELECT ugyszam FROM ugyek ORDER BY val(ugyszam), ugyszam"), cases);
    QCOMPARE(column("SELECT ugyszam FROM ugyek ORDER BY ugyszamertek, ugyszam"), cases);

    // Names: Hungarian order, letter case ignored; the stored sort key gives the same order.
    for (const QString n :
         {"Zoltán", "Ödön", "Oszkár", "Csaba", "Ábel", "Cecília", "cukor", "Kovács", "kovács",
          "Gyula", "Gábor", "Szabó", "Sándor", "", "Ó", "Kár", "kar"})
        QVERIFY(db().exec("INSERT INTO ugyfelek (unev1, unev1kulcs) VALUES (?, ?)",
                          {n, platform::huSortKey(n)}));
    const QStringList hungarian
            = column("SELECT unev1 FROM ugyfelek ORDER BY unev1 COLLATE HU, unev1");
    QCOMPARE(hungarian.filter(QRegularExpression("^(Zoltán|Ödön|Oszkár|Csaba|Ábel|Cecília)$")),
             QStringList({"Ábel", "Cecília", "Csaba", "Oszkár", "Ödön", "Zoltán"}));
    QCOMPARE(column("SELECT unev1 FROM ugyfelek ORDER BY unev1kulcs, unev1"), hungarian);
    // Names apart only by an accent keep one order: the plain letter first.
    QVERIFY(hungarian.indexOf("kar") + 1 == hungarian.indexOf("Kár"));
    QCOMPARE(db().scalar("SELECT count(*) FROM ugyfelek WHERE unev1kulcs IS NOT hukulcs(unev1)")
                     .toInt(),
             0);

    // Equality ignores letter case, accented letters too, but not the accents themselves.
    QCOMPARE(db().scalar("SELECT 'ÜGYVÉD' = ? COLLATE HU", {QStringLiteral("ügyvéd")}).toInt(), 1);
    QCOMPARE(
            db().scalar("SELECT 'ÁRVÍZTŰRŐ' = ? COLLATE HU", {QStringLiteral("árvíztűrő")}).toInt(),
            1);
    QCOMPARE(db().scalar("SELECT 'kar' = ? COLLATE HU", {QStringLiteral("kár")}).toInt(), 0);
    QCOMPARE(column("SELECT felirkod FROM felirat WHERE felirkod = 'ugyek' COLLATE HU"),
             QStringList{"Ugyek"});
}

void tst_Database::valAndLeft_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    QTest::newRow("number") << "10" << 10.0;
    QTest::newRow("number and letter") << "10/A" << 10.0;
    QTest::newRow("year and number") << "2019/123" << 2019.0;
    QTest::newRow("letter first") << "A1" << 0.0;
    QTest::newRow("blanks") << " 1 2x" << 12.0;
    QTest::newRow("decimal") << "2.5kg" << 2.5;
    QTest::newRow("accents") << "Ödön" << 0.0;
    // Past the integer range the value stays a (finite) number.
    QTest::newRow("beyond integers") << "9223372036854775807" << 9223372036854775807.0;
    QTest::newRow("too long for a number")
            << QString(400, u'9') << std::numeric_limits<double>::max();
}

void tst_Database::valAndLeft()
{
    QFETCH(QString, text);
    QFETCH(double, value);
    QCOMPARE(db().scalar("SELECT val(?)", {text}).toDouble(), value);
    QCOMPARE(db().scalar("SELECT \"left\"(?, 2)", {text}).toString(), text.left(2));
    QCOMPARE(db().scalar("SELECT \"left\"(?, 0)", {text}).toString(), QString());
    QCOMPARE(db().scalar("SELECT \"left\"(?, 9)", {text}).toString(), text.left(9));
    QVERIFY(db().scalar("SELECT \"left\"(NULL, 2)").isNull());
}

void tst_Database::newRowKeyIsKnownBeforeStoring()
{
    QVariant key;
    {
        platform::NewRow row(db(), "ugyfelek", "ukod");
        key = row.key();
        QVERIFY(key.toInt() > 0);
        row.set("unev1", QStringLiteral("Új Ügyfél"));
        QVERIFY(row.update());
    }
    QCOMPARE(db().first("SELECT unev1 FROM ugyfelek WHERE ukod = ?", {key}).text("unev1"),
             QStringLiteral("Új Ügyfél"));
    {
        // A new row that is never stored leaves nothing behind, and its key is not reused.
        platform::NewRow abandoned(db(), "ugyfelek", "ukod");
        QVERIFY(abandoned.key().toInt() > key.toInt());
    }
    QCOMPARE(db().scalar("SELECT count(*) FROM ugyfelek").toInt(), 1);
    QVERIFY(!db().inTransaction());
}

void tst_Database::usedLookupEntriesCannotBeDeleted_data()
{
    QTest::addColumn<QString>("lookup"); // table.column
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("use");
    QTest::addColumn<QString>("userTable");
    QTest::newRow("country of a client") << "orszagok.orszagnev"
                                         << "Szlovénia"
                                         << "INSERT INTO ugyfelek (uorszag) VALUES (?)"
                                         << "ugyfelek";
    QTest::newRow("country of a postal code") << "orszagok.orszagnev"
                                              << "Szlovénia"
                                              << "INSERT INTO irsz (orszag) VALUES (?)"
                                              << "irsz";
    QTest::newRow("case type") << "tipusok.tipus"
                               << "Polgári"
                               << "INSERT INTO ugyek (ugyszam, ugytipus) VALUES ('1', ?)"
                               << "ugyek";
    QTest::newRow("lawyer of a case") << "ugyvedek.ugyvednev"
                                      << "Dr. Kis Anna"
                                      << "INSERT INTO ugyek (ugyszam, ugyved) VALUES ('1', ?)"
                                      << "ugyek";
    QTest::newRow("lawyer of a user") << "ugyvedek.ugyvednev"
                                      << "Dr. Kis Anna"
                                      << "INSERT INTO felhasznalo (alapugyv) VALUES (?)"
                                      << "felhasznalo";
}

void tst_Database::usedLookupEntriesCannotBeDeleted()
{
    QFETCH(QString, lookup);
    QFETCH(QString, value);
    QFETCH(QString, use);
    QFETCH(QString, userTable);
    const QString table = lookup.section('.', 0, 0);
    const QString key = lookup.section('.', 1) + " = ?";
    QVERIFY(db().insert(table, {{lookup.section('.', 1), value}}));
    QVERIFY(db().exec(use, {value}));
    QString error;
    QVERIFY(!db().remove(table, key, {value}, &error));
    QCOMPARE(error, platform::EngineError::relatedRecords(userTable));
    QCOMPARE(db().scalar(QString("SELECT count(*) FROM %1 WHERE %2").arg(table, key), {value})
                     .toInt(),
             1);
    // Once nothing uses it, the entry goes.
    QVERIFY(db().exec("DELETE FROM " + userTable));
    QVERIFY2(db().remove(table, key, {value}, &error), qPrintable(error));
}

void tst_Database::renamedLookupEntryFollowsIntoItsRows()
{
    QVERIFY(db().exec("INSERT INTO ugyfelek (unev1, uorszag) VALUES ('A', 'Ausztria')"));
    QVERIFY(db().exec("UPDATE orszagok SET orszagnev = 'Österreich' WHERE orszagnev = 'Ausztria'"));
    QCOMPARE(column("SELECT uorszag FROM ugyfelek"), QStringList{"Österreich"});
    QCOMPARE(db().scalar("SELECT count(*) FROM irsz WHERE orszag = 'Ausztria'").toInt(), 0);
}

namespace {
// Another workstation: holds the write lock for a moment on its own connection.
class OtherCopy : public QThread
{
    Q_OBJECT
public:
    explicit OtherCopy(QString file) : m_file(std::move(file)) { }
signals:
    void locked();

protected:
    void run() override
    {
        Database db;
        db.openUnchecked(m_file, nullptr);
        db.begin();
        db.exec("INSERT INTO tipusok (tipus) VALUES ('Másik gép')");
        emit locked();
        msleep(700);
        db.commit();
    }

private:
    QString m_file;
};
} // namespace

void tst_Database::aShortLockByAnotherCopyIsWaitedFor()
{
    OtherCopy other(m_folder->dataFile());
    QSignalSpy locked(&other, &OtherCopy::locked);
    other.start();
    QTRY_VERIFY_WITH_TIMEOUT(locked.count() == 1, 5000);
    QString error;
    QVERIFY2(db().exec("INSERT INTO tipusok (tipus) VALUES ('Ez a gép')", {}, &error),
             qPrintable(error));
    other.wait();
    QCOMPARE(db().scalar("SELECT count(*) FROM tipusok").toInt(), 2);
}

void tst_Database::aLookAtAFileWaitsForALockAndBindsItsValues()
{
    QVERIFY(db().exec("INSERT INTO ugyfelek (unev1, utel1) VALUES (?, NULL)", {"O'Brien Ödön"}));
    const QString sql = "SELECT ukod, unev1, utel1 FROM ugyfelek WHERE unev1 = ? AND ukod > ?";
    platform::Rows rows;
    {
        // Another workstation in the middle of a save: the look waits, then tells the lock.
        Database::setDefaultBusyWait(200);
        const auto restore = qScopeGuard([] { Database::setDefaultBusyWait(5000); });
        QVERIFY(db().exec("BEGIN EXCLUSIVE"));
        QVERIFY(db().exec("UPDATE ugyfelek SET utel1 = '1'"));
        platform::FileLook look(m_folder->dataFile(), false);
        QElapsedTimer waited;
        waited.start();
        QVERIFY(!look.select(sql, {"O'Brien Ödön", 0}, &rows));
        QVERIFY(waited.elapsed() >= 150);
        QCOMPARE(look.failure(), platform::Failure::Busy);
        QVERIFY(db().exec("ROLLBACK"));
    }
    platform::FileLook look(m_folder->dataFile(), false);
    QVERIFY2(look.select(sql, {"O'Brien Ödön", 0}, &rows), qPrintable(look.errorText()));
    QCOMPARE(int(rows.size()), 1);
    QCOMPARE(rows.front().names(), QStringList({"ukod", "unev1", "utel1"}));
    QVERIFY(rows.front().value("ukod").toInt() > 0);
    QCOMPARE(rows.front().text("UNEV1"), QStringLiteral("O'Brien Ödön"));
    QVERIFY(rows.front().isNull("utel1"));
    QVERIFY(look.select(sql, {"O'Brien", 0}, &rows));
    QVERIFY(rows.empty());
}

QTEST_MAIN(tst_Database)
#include "tst_database.moc"
