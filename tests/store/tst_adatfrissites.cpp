// The start-up upgrade: on a current file, on a file of the older layout, run twice, and with a
// step that fails.
#include "TestSupport.h"

#include "store/Prepare.h"
#include "store/Upgrade.h"

#include <QDir>
#include <QTest>

namespace {

// A layout as the program sees it: each table's columns with their declared types (generated
// ones too), in any order, and the definition of every index and trigger.
QStringList layout(platform::Database& db)
{
    QStringList lines;
    for (const QString& table : db.tables()) {
        QStringList columns;
        for (const auto& c : db.select("SELECT name, type FROM pragma_table_xinfo(?)", {table}))
            columns << c.text("name") + ' ' + c.text("type").toUpper();
        columns.sort();
        lines << table.toLower() + ": " + columns.join(", ");
    }
    for (const auto& r : db.select("SELECT sql FROM sqlite_master WHERE type IN ('index', "
                                   "'trigger') AND sql IS NOT NULL"))
        lines << r.text("sql");
    lines.sort();
    return lines;
}

QString columnType(platform::Database& db, const QString& table, const QString& column)
{
    for (const auto& c : db.columns(table))
        if (c.name == column)
            return c.size > 0 ? QString("%1(%2)").arg(c.type).arg(c.size) : c.type;
    return QString();
}

} // namespace

class tst_adatfrissites : public QObject
{
    Q_OBJECT
    std::unique_ptr<testsupport::TestFolder> m_folder;
    platform::Database m_old;

    // A demo data file in the older layout, open in m_old.
    void openOldFile()
    {
        const QString folder = m_folder->root() + "/old";
        QString error;
        QVERIFY2(store::prepareDataFolder(folder, true, &error, store::Layout::Old),
                 qPrintable(error));
        QVERIFY(m_old.openExisting(folder + "/causora.mdb", &error));
    }
    QString log() { return testsupport::readFile(m_folder->programFolder() + "/hiba.txt"); }

private slots:
    void init() { m_folder = std::make_unique<testsupport::TestFolder>(true); }
    void cleanup()
    {
        m_old.close();
        m_folder.reset();
    }

    // A current file is only looked at: not a byte of it changes, nothing is logged, and while
    // another desk holds the write lock the upgrade never waits for it.
    void currentFileIsLeftAsItIs()
    {
        const QByteArray before = testsupport::readFile(m_folder->dataFile());
        {
            platform::Database db;
            platform::Database other;
            QVERIFY(db.openExisting(m_folder->dataFile(), nullptr));
            QVERIFY(other.openExisting(m_folder->dataFile(), nullptr));
            QVERIFY(other.begin());
            db.setBusyWait(0);
            store::adatfrissites(db);
            QVERIFY(db.lastFailure() != platform::Failure::Busy);
            other.rollback();
        }
        QVERIFY(testsupport::readFile(m_folder->dataFile()) == before);
        QCOMPARE(log(), QString());
    }

    void olderFileIsBroughtToTheCurrentLayout()
    {
        openOldFile();
        // The older layout as prepared: dates as ISO dates in DATE columns, no sub-numbers.
        QCOMPARE(columnType(m_old, "ugyek", "kezdet"), QString("DATE"));
        QCOMPARE(m_old.scalar("SELECT kezdet FROM ugyek WHERE ugyszam = '10'").toString(),
                 QString("2007-11-05"));
        QVERIFY(!m_old.tables().contains("alszamok"));
        // A message spelt otherwise is not the bad-data message; a caption typed in is kept.
        QVERIFY(m_old.exec("INSERT INTO uzenetek VALUES ('Hibasadat', 'a', 'b', 'c')"));
        QVERIFY(m_old.exec("UPDATE felirat SET [1sz28] = 'Saját szöveg' WHERE felirkod = 'Ugyek'"));

        store::adatfrissites(m_old);
        platform::Database current;
        QVERIFY(current.openExisting(m_folder->dataFile(), nullptr));
        QCOMPARE(layout(m_old), layout(current));
        QCOMPARE(log(), QString());

        // Start and end dates, as text, in the same rows as a current file holds them.
        const QString cases = "SELECT group_concat(ugyszam || '|' || ifnull(kezdet, '') || '|' || "
                              "ifnull(kezdete, '') || '|' || ifnull(zaras, ''), ';') "
                              "FROM (SELECT * FROM ugyek ORDER BY ugyszam)";
        QCOMPARE(m_old.scalar(cases).toString(), current.scalar(cases).toString());
        QVERIFY(current.scalar("SELECT count(*) FROM ugyek WHERE zaras <> ''").toInt() > 0);

        QCOMPARE(m_old.scalar("SELECT count(*) FROM uzenetek WHERE uzenkod = 'hibasadat' "
                              "COLLATE NOCASE")
                         .toInt(),
                 2);
        QCOMPARE(m_old.scalar("SELECT xx FROM alszamok").toInt(), 1);
        // Captions: a text already there is kept; empty ones are filled in Hungarian only.
        const auto caseCaptions = m_old.first("SELECT * FROM felirat WHERE felirkod = 'Ugyek'");
        QCOMPARE(caseCaptions.text("1sz28"), QString("Saját szöveg"));
        QCOMPARE(caseCaptions.text("1sz27"), QString("Megbízás vége:"));
        QCOMPARE(caseCaptions.text("1sz32"), QString("Megjegyzés"));
        QVERIFY(caseCaptions.isNull("2sz27"));
        QCOMPARE(m_old.scalar("SELECT [1sz19] FROM felirat WHERE felirkod = 'users'").toString(),
                 QString("Hozzárendelt ügyvéd:"));
        // A button newer than the file gets its caption in every language.
        QCOMPARE(m_old.scalar("SELECT [2g6] FROM felirat WHERE felirkod = 'keres2'").toString(),
                 QString("Exportieren"));

        // A second run finds the file current and writes nothing at all.
        const QByteArray once = testsupport::readFile(m_old.filePath());
        store::adatfrissites(m_old);
        QVERIFY(testsupport::readFile(m_old.filePath()) == once);
    }

    // A step the engine refuses is logged and left undone as a whole; the other steps run, and
    // the next start does it.
    void failingStepIsLoggedAndTheRestRun()
    {
        openOldFile();
        // The start date cannot be rebuilt while an index uses it.
        QVERIFY(m_old.exec("CREATE INDEX ugyek_kezdet ON ugyek (kezdet)"));
        store::adatfrissites(m_old);
        QVERIFY2(log().contains("Modul: adatfrissites ** Helye: kezdete ** Hiba: "),
                 qPrintable(log()));
        QCOMPARE(columnType(m_old, "ugyek", "kezdete"), QString());
        QCOMPARE(columnType(m_old, "ugyek", "zaras"), QString("DATE"));
        QCOMPARE(m_old.scalar("SELECT kezdet FROM ugyek WHERE ugyszam = '10'").toString(),
                 QString("2007-11-05"));
        QCOMPARE(columnType(m_old, "felhasznalo", "alapugyv"), QString("TEXT(50)"));
        QVERIFY(m_old.tables().contains("alszamok"));

        QVERIFY(m_old.exec("DROP INDEX ugyek_kezdet"));
        store::adatfrissites(m_old);
        QCOMPARE(columnType(m_old, "ugyek", "kezdet"), QString("TEXT(15)"));
        QCOMPARE(m_old.scalar("SELECT kezdet FROM ugyek WHERE ugyszam = '10'").toString(),
                 QString("2007.11.05"));
    }
};

QTEST_MAIN(tst_adatfrissites)
#include "tst_adatfrissites.moc"
