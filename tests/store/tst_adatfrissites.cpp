#include "TestSupport.h"

#include "store/Upgrade.h"

#include <QTemporaryDir>
#include <QTest>

namespace {

// Everything a file holds: its layout and every row of every table.
QStringList dump(platform::Database& db)
{
    QStringList lines;
    for (const auto& r : db.select("SELECT type, name, sql FROM sqlite_master ORDER BY name"))
        lines << r.text("sql");
    for (const QString& table : db.tables()) {
        for (const auto& r :
             db.select(QString("SELECT * FROM %1").arg(platform::Database::quoteName(table)))) {
            QStringList values;
            for (int i = 0; i < r.count(); ++i)
                values << r.value(i).toString();
            lines << table + ": " + values.join('|');
        }
    }
    return lines;
}

// A data file as an older version of the program left it.
void makeOldFile(platform::Database& db, const QString& messageCode)
{
    QStringList captionCols;
    for (int lang = 1; lang <= 3; ++lang)
        for (int n = 1; n <= 30; ++n)
            captionCols << QString("[%1sz%2] TEXT(100)").arg(lang).arg(n);
    for (const QString& sql :
         {QString("CREATE TABLE ugyek (ugyszam TEXT(10), kezdet TEXT, zaras TEXT, megjegyzes "
                  "TEXT)"),
          QString("CREATE TABLE felhasznalo (felhnev TEXT, loginnev TEXT)"),
          QString("CREATE TABLE parameterek (alapnyelv INTEGER)"),
          QString("CREATE TABLE uzenetek (uzenkod TEXT, uzen1 TEXT, uzen2 TEXT, uzen3 TEXT)"),
          "CREATE TABLE felirat (felirkod TEXT, " + captionCols.join(", ") + ")",
          QString("INSERT INTO parameterek VALUES (1)"),
          QString("INSERT INTO ugyek VALUES ('9', '2007.10.26', '2008.01.31', 'x')"),
          QString("INSERT INTO felirat (felirkod, [1sz28]) VALUES ('ugyek', 'Saját szöveg')"),
          QString("INSERT INTO felirat (felirkod) VALUES ('USERS')")})
        QVERIFY2(db.exec(sql), qPrintable(sql));
    QVERIFY(db.exec("INSERT INTO uzenetek VALUES (?, 'a', 'b', 'c')", {messageCode}));
}

QStringList columnNames(platform::Database& db, const QString& table)
{
    QStringList names;
    for (const auto& c : db.columns(table))
        names << c.name;
    return names;
}

} // namespace

class tst_adatfrissites : public QObject
{
    Q_OBJECT
private slots:
    void currentFileIsLeftAsItIs();
    void olderFileIsBroughtToTheCurrentLayout_data();
    void olderFileIsBroughtToTheCurrentLayout();
};

void tst_adatfrissites::currentFileIsLeftAsItIs()
{
    testsupport::TestFolder folder(true);
    platform::Database db;
    QVERIFY(db.openUnchecked(folder.dataFile(), nullptr));
    const QStringList before = dump(db);
    store::adatfrissites(db);
    QCOMPARE(dump(db), before);
}

void tst_adatfrissites::olderFileIsBroughtToTheCurrentLayout_data()
{
    // The bad-data message is looked for by its exact code: one spelt otherwise gets a second row.
    QTest::addColumn<QString>("messageCode");
    QTest::addColumn<int>("messages");
    QTest::newRow("message there") << "hibasadat" << 1;
    QTest::newRow("message spelt with a capital") << "Hibasadat" << 2;
}

void tst_adatfrissites::olderFileIsBroughtToTheCurrentLayout()
{
    QFETCH(QString, messageCode);
    QFETCH(int, messages);
    QTemporaryDir dir;
    platform::Database db;
    QVERIFY(db.openUnchecked(dir.filePath("old.mdb"), nullptr));
    makeOldFile(db, messageCode);
    store::adatfrissites(db);
    QCOMPARE(db.scalar("SELECT count(*) FROM uzenetek WHERE uzenkod = 'hibasadat' COLLATE NOCASE")
                     .toInt(),
             messages);
    QCOMPARE(db.scalar("SELECT uzen1 FROM uzenetek WHERE uzenkod = 'hibasadat'").toString(),
             messages == 2 ? QStringLiteral("Hibás adat / adatformátum!") : QStringLiteral("a"));

    QCOMPARE(columnNames(db, "ugyek"),
             QStringList({"ugyszam", "megjegyzes", "feljegyzes", "kezdete", "kezdet", "zaras"}));
    for (const auto& c : db.columns("ugyek"))
        if (c.name.startsWith("kezdet") || c.name == "zaras")
            QCOMPARE(c.size, 15);
    // Start and end dates survive the rebuild.
    const auto row = db.first("SELECT * FROM ugyek");
    QCOMPARE(row.text("kezdet"), QStringLiteral("2007.10.26"));
    QCOMPARE(row.text("kezdete"), QStringLiteral("2007.10.26"));
    QCOMPARE(row.text("zaras"), QStringLiteral("2008.01.31"));

    QVERIFY(columnNames(db, "felhasznalo").contains("alapugyv"));
    QCOMPARE(columnNames(db, "alszamok"),
             QStringList({"xx", "fougyszam", "alugyszam", "aldatum", "almegjegyz"}));
    QCOMPARE(db.scalar("SELECT count(*) FROM alszamok").toInt(), 1);
    QCOMPARE(columnNames(db, "felirat").size(), 1 + 90 + 27);

    // Captions: a text already there is kept; empty ones are filled in Hungarian only.
    const auto cases = db.first("SELECT * FROM felirat WHERE felirkod = 'ugyek'");
    QCOMPARE(cases.text("1sz28"), QStringLiteral("Saját szöveg"));
    QCOMPARE(cases.text("1sz27"), QStringLiteral("Megbízás vége:"));
    QCOMPARE(cases.text("1sz32"), QStringLiteral("Megjegyzés"));
    QVERIFY(cases.isNull("2sz27"));
    QCOMPARE(db.scalar("SELECT [1sz19] FROM felirat WHERE felirkod = 'USERS'").toString(),
             QStringLiteral("Hozzárendelt ügyvéd:"));

    // Running it again changes nothing.
    const QStringList once = dump(db);
    store::adatfrissites(db);
    QCOMPARE(dump(db), once);
}

QTEST_MAIN(tst_adatfrissites)
#include "tst_adatfrissites.moc"
