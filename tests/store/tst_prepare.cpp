// The data file as prepared: every table and column as the sqlite3 tool sees them, the starting
// rows, an existing file never overwritten, and the case list's order with the index serving it.
#include "TestSupport.h"

#include "platform/ListQuery.h"
#include "store/Cases.h"
#include "store/Prepare.h"
#include "store/Schema.h"
#include "store/Upgrade.h"

#include <optional>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

// Runs the standard sqlite3 tool on a file, as an office's support person would.
QString sqliteTool(const QString& file, const QString& sql)
{
    QProcess p;
    p.start("sqlite3", {"-batch", "-noheader", "-separator", "|", file, sql});
    p.waitForFinished(30000);
    return QString::fromUtf8(p.readAllStandardOutput())
           + QString::fromUtf8(p.readAllStandardError());
}

// How the engine reads the list's first page, or a page after a given row.
QString plan(platform::Database& db, const platform::ListQuery& q, bool after)
{
    const QString order = q.order.join(QStringLiteral(", "));
    QString sql = QStringLiteral("EXPLAIN QUERY PLAN SELECT %1, %2 FROM %3")
                          .arg(q.columns, order, q.from);
    if (after)
        sql += QStringLiteral(" WHERE (%1) > (?, ?)").arg(order);
    sql += QStringLiteral(" ORDER BY %1 LIMIT 256").arg(order);
    QStringList steps;
    const QVariantList values = after ? QVariantList{10, QStringLiteral("10/b")} : QVariantList();
    for (const platform::Row& r : db.select(sql, values))
        steps << r.text(QStringLiteral("detail"));
    return steps.join(QStringLiteral("; "));
}

} // namespace

class tst_prepare : public QObject
{
    Q_OBJECT
    std::optional<testsupport::TestFolder> m_folder;
    platform::Database& db() { return m_folder->db(); }

private slots:
    void init() { QVERIFY(m_folder.emplace().open()); }

    // Every table and column as the sqlite3 tool sees them; prepared again, the file is kept.
    void sqliteToolSeesEveryTableAndColumn()
    {
        QTemporaryDir dir;
        QString error;
        QVERIFY2(store::prepareDataFolder(dir.filePath("adat"), false, &error), qPrintable(error));
        const QString file = dir.filePath("adat/causora.mdb");

        // Each table with its columns in their order.
        const QStringList expected = {
                "alszamok: xx fougyszam alugyszam aldatum almegjegyz",
                "felhasznalo: felhnev loginnev jelszo felhnyelv felhjog alapugyv",
                "irsz: irszsorszam orszag irsz hely",
                "nyelvek: nyelvkod nyelvnev",
                "orszagok: orszagnev",
                "parameterek: alapnyelv verzio kelllogon utolsoment modemport elotag tonepulse",
                "partner: pkod pnev1 pnev2 porszag pirsz phely putca ptel1 ptel2 pfax pemail "
                "pnev1egyezo",
                "tipusok: tipus",
                "ugyek: ugyszam ugyfelkod ugytipus ugyved kezdet zaras megjegyzes ellnev ellorszag "
                "ellhely ellutca ellirsz elltelefon ellugyvnev ellugyvorsz ellugyvhely ellugyvutca "
                "ellugyvirsz ellugyvtel1 ellugyvtel2 ellugyvfax ellugyvemail feljegyzes kezdete "
                "ellnevegyezo ellugyvnevegyezo",
                "ugyfelek: ukod unev1 unev2 uorszag uirsz uhely uutca utel1 utel2 ufax uemail "
                "ucegprivat uanyja uszemszam uadoszam ucegszam unev1kulcs unev1egyezo",
                "ugyvedek: ugyvednev",
                "uzenetek: uzenkod uzen1 uzen2 uzen3"};
        QStringList tables;
        for (const QString& t : expected)
            tables << t.section(':', 0, 0);
        const QString listed = sqliteTool(
                file, "SELECT name || ': ' || (SELECT group_concat(name, ' ') FROM "
                      "pragma_table_info(m.name)) FROM sqlite_master m WHERE name IN ('"
                              + tables.join("', '") + "') ORDER BY name");
        QCOMPARE(listed.split('\n', Qt::SkipEmptyParts), expected);
        // The caption table: the key and 147 text columns.
        QCOMPARE(sqliteTool(file,
                            "SELECT count(*) || ': ' || group_concat(name || ' ' || type, ', ') "
                            "FILTER (WHERE cid = 0 OR name IN ('1sz1', '1sz39', '1g10', "
                            "'2sz31', '3g1', '3sz39')) FROM pragma_table_info('felirat')"),
                 QString("148: felirkod TEXT(50), 1sz1 TEXT(100), 1sz39 TEXT(20), 1g10 TEXT(100), "
                         "2sz31 TEXT(20), 3sz39 TEXT(20), 3g1 TEXT(100)\n"));

        const QString indexes
                = sqliteTool(file, "SELECT name FROM sqlite_master WHERE type = 'index'");
        QVERIFY(indexes.contains("uzenind"));
        for (const char* t :
             {"ugyek", "partner", "orszagok", "tipusok", "ugyvedek", "irsz", "felirat"})
            QVERIFY2(indexes.contains(QString("%1_primarykey").arg(t)), t);
        QCOMPARE(sqliteTool(file, "PRAGMA integrity_check").trimmed(), QStringLiteral("ok"));

        const QByteArray before = testsupport::readFile(file);
        QVERIFY(!store::prepareDataFolder(dir.filePath("adat"), true, &error));
        QVERIFY(error.contains("already"));
        QCOMPARE(testsupport::readFile(file), before);
    }

    void startingRowsArePresent()
    {
        QCOMPARE(db().scalar("SELECT group_concat(nyelvkod) FROM nyelvek").toString(),
                 QStringLiteral("1,2,3"));
        // The whole Hungarian postal code list, codes that serve several places included.
        QCOMPARE(db().scalar("SELECT count(*) FROM irsz WHERE orszag = 'Magyarország'").toInt(),
                 3574);
        QVERIFY(db().scalar("SELECT count(*) FROM irsz WHERE irsz = '3882'").toInt() > 1);
        QCOMPARE(db().scalar("SELECT hely FROM irsz WHERE orszag = 'Ausztria' AND irsz = '1010'")
                         .toString(),
                 QStringLiteral("Wien"));
    }

    // The number's value, then its text with letter case ignored; read in pages of two, each
    // starting right after the last row of the one before.
    void caseListPagesFollowTheOrder()
    {
        QVERIFY(db().exec("INSERT INTO ugyfelek (ukod, unev1) VALUES (1, 'Ügyfél')"));
        for (const char* n : {"11/B", "11/a", "100", "11", "9", "11/c", "10/b", "10/A", "x/1"})
            QVERIFY(db().exec("INSERT INTO ugyek (ugyszam, ugyfelkod) VALUES (?, 1)", {n}));
        const platform::ListPager pager(db(), store::Cases::list());
        QStringList numbers;
        QVariantList after;
        platform::Rows rows;
        do {
            QString error;
            QVERIFY2(pager.page(after, 2, &rows, nullptr, &error), qPrintable(error));
            for (const platform::Row& r : rows)
                numbers << r.text("ugyszam");
            if (!rows.empty())
                after = pager.orderValues(rows.back());
        } while (rows.size() == 2);
        QCOMPARE(numbers,
                 (QStringList{"x/1", "9", "10/A", "10/b", "11", "11/a", "11/B", "11/c", "100"}));
    }

    // The index gives the rows in the list's order, so the first rows come without sorting the
    // whole register; an older file's index of that name is made anew at start-up.
    void theIndexServesTheCaseOrder_data()
    {
        QTest::addColumn<bool>("olderIndex");
        QTest::newRow("new file") << false;
        QTest::newRow("file with the older index") << true;
    }
    void theIndexServesTheCaseOrder()
    {
        QFETCH(bool, olderIndex);
        if (olderIndex) {
            QVERIFY(db().exec("DROP INDEX ugyek_sorrend"));
            QVERIFY(db().exec("CREATE INDEX ugyek_sorrend ON ugyek (ugyszamertek, ugyszam)"));
            store::adatfrissites(db());
        }
        QCOMPARE(db().scalar("SELECT sql FROM sqlite_master WHERE name = 'ugyek_sorrend'")
                         .toString(),
                 store::caseOrderIndex());
        for (const bool after : {false, true}) {
            const QString steps = plan(db(), store::Cases::list(), after);
            QVERIFY2(steps.contains("USING INDEX ugyek_sorrend") && !steps.contains("TEMP B-TREE"),
                     qPrintable(steps));
        }
    }
};

QTEST_MAIN(tst_prepare)
#include "tst_prepare.moc"
