#include "TestSupport.h"

#include "platform/Database.h"
#include "platform/SqlFunctions.h"
#include "session/Session.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

using platform::Database;

class tst_Database : public QObject
{
    Q_OBJECT
private slots:
    void refusesBadCredentialsAndForeignFiles_data();
    void refusesBadCredentialsAndForeignFiles();
    void caseNumbersSortByValueThenText();
    void lookupsIgnoreLetterCaseWithAccents();
    void sortKeysOrderAsTheCollation();
    void valAndLeft_data();
    void valAndLeft();
    void newRowKeyIsKnownBeforeStoring();
    void usedLookupEntriesCannotBeDeleted_data();
    void usedLookupEntriesCannotBeDeleted();
    void renamedLookupEntryFollowsIntoItsRows();
    void aShortLockByAnotherCopyIsWaitedFor();
};

void tst_Database::refusesBadCredentialsAndForeignFiles_data()
{
    QTest::addColumn<QString>("account");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("connect");
    QTest::addColumn<QByteArray>("replaceDataFile");
    QTest::addColumn<QString>("expected");
    const QString account = QStringLiteral("Vida Márton");
    QTest::newRow("wrong account") << "Kiss Béla" << "vm4817" << "pwd=vm4817" << QByteArray()
                                   << "Not a valid account name or password.";
    QTest::newRow("wrong account password") << account << "vm4818" << "pwd=vm4817"
                                            << QByteArray() << "Not a valid account name or password.";
    QTest::newRow("wrong database password") << account << "vm4817" << "pwd=xx" << QByteArray()
                                             << "Not a valid password.";
    QTest::newRow("text file") << account << "vm4817" << "pwd=vm4817"
                               << QByteArray("path=C:\\IRODA\r\n") << "Unrecognized database format";
    QTest::newRow("empty file") << account << "vm4817" << "pwd=vm4817" << QByteArray("")
                                << "Unrecognized database format";
}

void tst_Database::refusesBadCredentialsAndForeignFiles()
{
    QFETCH(QString, account);
    QFETCH(QString, password);
    QFETCH(QString, connect);
    QFETCH(QByteArray, replaceDataFile);
    QFETCH(QString, expected);
    testsupport::TestFolder folder;
    if (!replaceDataFile.isNull())
        testsupport::writeFile(folder.dataFile(), replaceDataFile);
    const QByteArray before = testsupport::readFile(folder.dataFile());
    const QDateTime modified = QFileInfo(folder.dataFile()).lastModified();

    Database db;
    QString error;
    QVERIFY(!db.open(folder.dataFile(), folder.dataFolder() + "/caujog.mdw", account, password,
                     connect, &error));
    QVERIFY2(error.startsWith(expected), qPrintable(error));
    QVERIFY(!db.isOpen());
    QCOMPARE(testsupport::readFile(folder.dataFile()), before);
    QCOMPARE(QFileInfo(folder.dataFile()).lastModified(), modified);
    QVERIFY(!QFileInfo::exists(folder.dataFile() + "-journal"));
}

void tst_Database::caseNumbersSortByValueThenText()
{
    testsupport::TestFolder folder;
    QVERIFY(folder.open());
    Database& db = folder.db();
    for (const char* n : {"10", "9", "9/A", "A1", "10/A", "2019/123"})
        QVERIFY(db.exec("INSERT INTO ugyek (ugyszam, ugyfelkod) VALUES (?, 1)", {QString::fromLatin1(n)}));
    const QStringList expected = {"A1", "9", "9/A", "10", "10/A", "2019/123"};
    for (const char* order : {"val(ugyek.ugyszam), ugyek.ugyszam", "ugyek.ugyszamertek, ugyek.ugyszam"}) {
        QStringList listed;
        for (const auto& r : db.select(QString("SELECT ugyszam FROM ugyek ORDER BY ") + order))
            listed << r.text("ugyszam");
        QCOMPARE(listed, expected);
    }
}

void tst_Database::lookupsIgnoreLetterCaseWithAccents()
{
    testsupport::TestFolder folder;
    QVERIFY(folder.open());
    Database& db = folder.db();
    QCOMPARE(db.scalar("SELECT 'ÜGYVÉD' = ? COLLATE HU", {QStringLiteral("ügyvéd")}).toInt(), 1);
    QCOMPARE(db.scalar("SELECT 'ÁRVÍZTŰRŐ' = ? COLLATE HU", {QStringLiteral("árvíztűrő")}).toInt(), 1);
    // Accents still count: a and á are different letters for a key.
    QCOMPARE(db.scalar("SELECT 'kar' = ? COLLATE HU", {QStringLiteral("kár")}).toInt(), 0);
    QCOMPARE(db.first("SELECT felirkod FROM felirat WHERE felirkod = ? COLLATE HU", {"ugyek"})
                     .text("felirkod"),
             QStringLiteral("Ugyek"));
    QCOMPARE(db.scalar("SELECT count(*) FROM uzenetek WHERE uzenkod = ? COLLATE HU", {"NINCSJOG"}).toInt(), 1);
}

void tst_Database::sortKeysOrderAsTheCollation()
{
    testsupport::TestFolder folder;
    QVERIFY(folder.open());
    Database& db = folder.db();
    const QStringList names = {"Zoltán", "Ödön", "Oszkár", "Csaba", "Ábel", "Cecília", "cukor",
                               "Kovács", "kovács", "Gyula", "Gábor", "Szabó", "Sándor", "", "Ó"};
    for (const QString& n : names)
        QVERIFY(db.exec("INSERT INTO ugyfelek (unev1, unev1kulcs) VALUES (?, ?)",
                        {n, platform::huSortKey(n)}));
    auto order = [&](const QString& by) {
        QStringList list;
        for (const auto& r : db.select("SELECT unev1 FROM ugyfelek ORDER BY " + by + ", unev1"))
            list << r.text("unev1");
        return list;
    };
    const QStringList hungarian = order("unev1 COLLATE HU");
    QCOMPARE(hungarian.filter(QRegularExpression("^(Zoltán|Ödön|Oszkár|Csaba|Ábel|Cecília)$")),
             QStringList({"Ábel", "Cecília", "Csaba", "Oszkár", "Ödön", "Zoltán"}));
    // The stored key gives the same order, and the SQL function the same key as the program.
    QCOMPARE(order("unev1kulcs"), hungarian);
    QCOMPARE(db.scalar("SELECT count(*) FROM ugyfelek WHERE unev1kulcs IS NOT hukulcs(unev1)").toInt(), 0);
}

void tst_Database::valAndLeft_data()
{
    QTest::addColumn<QVariant>("text");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("number") << QVariant("10") << QVariant(10);
    QTest::newRow("number and letter") << QVariant("10/A") << QVariant(10);
    QTest::newRow("year and number") << QVariant("2019/123") << QVariant(2019);
    QTest::newRow("letter first") << QVariant("A1") << QVariant(0);
    QTest::newRow("blanks") << QVariant(" 1 2x") << QVariant(12);
    QTest::newRow("decimal") << QVariant("2.5kg") << QVariant(2.5);
    QTest::newRow("empty") << QVariant("") << QVariant(0);
}

void tst_Database::valAndLeft()
{
    QFETCH(QVariant, text);
    QFETCH(QVariant, value);
    testsupport::TestFolder folder;
    QVERIFY(folder.open());
    Database& db = folder.db();
    QCOMPARE(db.scalar("SELECT val(?)", {text}).toDouble(), value.toDouble());
    QCOMPARE(db.scalar("SELECT \"left\"(?, 2)", {text}).toString(), text.toString().left(2));
    QVERIFY(db.scalar("SELECT \"left\"(NULL, 2)").isNull());
    QCOMPARE(db.scalar("SELECT \"left\"('Ödön', 0)").toString(), QString());
    QCOMPARE(db.scalar("SELECT \"left\"('Ödön', 9)").toString(), QStringLiteral("Ödön"));
}

void tst_Database::newRowKeyIsKnownBeforeStoring()
{
    testsupport::TestFolder folder;
    QVERIFY(folder.open());
    Database& db = folder.db();
    const int before = db.scalar("SELECT count(*) FROM ugyfelek").toInt();
    QVariant key;
    {
        platform::NewRow row(db, "ugyfelek", "ukod");
        QVERIFY(row.isValid());
        key = row.key();
        QVERIFY(key.toInt() > 0);
        row.set("unev1", QStringLiteral("Új Ügyfél"));
        QVERIFY(row.update());
    }
    QCOMPARE(db.first("SELECT unev1 FROM ugyfelek WHERE ukod = ?", {key}).text("unev1"),
             QStringLiteral("Új Ügyfél"));
    {
        // A new row that is never stored leaves nothing behind, and its key is not reused.
        platform::NewRow abandoned(db, "ugyfelek", "ukod");
        QVERIFY(abandoned.key().toInt() > key.toInt());
    }
    QCOMPARE(db.scalar("SELECT count(*) FROM ugyfelek").toInt(), before + 1);
    QVERIFY(!db.inTransaction());
}

void tst_Database::usedLookupEntriesCannotBeDeleted_data()
{
    QTest::addColumn<QString>("insertUser");
    QTest::addColumn<QString>("lookupTable");
    QTest::addColumn<QString>("keyColumn");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("userTable");
    QTest::newRow("country of a client") << "INSERT INTO ugyfelek (unev1, uorszag) VALUES ('X', ?)"
                                         << "orszagok" << "orszagnev" << "Szlovénia" << "ugyfelek";
    QTest::newRow("country of a postal code") << "INSERT INTO irsz (orszag, irsz, hely) VALUES (?, '1', 'X')"
                                              << "orszagok" << "orszagnev" << "Szlovénia" << "irsz";
    QTest::newRow("case type") << "INSERT INTO ugyek (ugyszam, ugytipus) VALUES ('1', ?)"
                               << "tipusok" << "tipus" << "Polgári" << "ugyek";
    QTest::newRow("lawyer of a case") << "INSERT INTO ugyek (ugyszam, ugyved) VALUES ('1', ?)"
                                      << "ugyvedek" << "ugyvednev" << "Dr. Kis Anna" << "ugyek";
    QTest::newRow("lawyer of a user") << "INSERT INTO felhasznalo (loginnev, alapugyv) VALUES ('X', ?)"
                                      << "ugyvedek" << "ugyvednev" << "Dr. Kis Anna" << "felhasznalo";
}

void tst_Database::usedLookupEntriesCannotBeDeleted()
{
    QFETCH(QString, insertUser);
    QFETCH(QString, lookupTable);
    QFETCH(QString, keyColumn);
    QFETCH(QString, value);
    QFETCH(QString, userTable);
    testsupport::TestFolder folder;
    QVERIFY(folder.open());
    Database& db = folder.db();
    QVERIFY(db.insert(lookupTable, {{keyColumn, value}}));
    QVERIFY(db.exec(insertUser, {value}));
    QString error;
    QVERIFY(!db.remove(lookupTable, keyColumn + " = ?", {value}, &error));
    QCOMPARE(error, platform::EngineError::relatedRecords(userTable));
    QCOMPARE(db.scalar(QString("SELECT count(*) FROM %1 WHERE %2 = ?").arg(lookupTable, keyColumn), {value}).toInt(), 1);

    // Once nothing uses it, the entry goes.
    QVERIFY(db.exec(QString("DELETE FROM %1").arg(userTable)));
    QVERIFY2(db.remove(lookupTable, keyColumn + " = ?", {value}, &error), qPrintable(error));
}

void tst_Database::renamedLookupEntryFollowsIntoItsRows()
{
    testsupport::TestFolder folder;
    QVERIFY(folder.open());
    Database& db = folder.db();
    QVERIFY(db.exec("INSERT INTO ugyfelek (unev1, uorszag) VALUES ('A', 'Ausztria')"));
    QVERIFY(db.exec("UPDATE orszagok SET orszagnev = 'Österreich' WHERE orszagnev = 'Ausztria'"));
    QCOMPARE(db.scalar("SELECT uorszag FROM ugyfelek WHERE unev1 = 'A'").toString(), QStringLiteral("Österreich"));
    QCOMPARE(db.scalar("SELECT count(*) FROM irsz WHERE orszag = 'Ausztria'").toInt(), 0);
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
    testsupport::TestFolder folder;
    QVERIFY(folder.open());
    OtherCopy other(folder.dataFile());
    QSignalSpy locked(&other, &OtherCopy::locked);
    other.start();
    QTRY_VERIFY_WITH_TIMEOUT(locked.count() == 1, 5000);
    QString error;
    QVERIFY2(folder.db().exec("INSERT INTO tipusok (tipus) VALUES ('Ez a gép')", {}, &error),
             qPrintable(error));
    other.wait();
    QCOMPARE(folder.db().scalar("SELECT count(*) FROM tipusok").toInt(), 2);
}

QTEST_MAIN(tst_Database)
#include "tst_database.moc"
