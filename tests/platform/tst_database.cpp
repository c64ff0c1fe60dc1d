#include "TestSupport.h"

#include "platform/Database.h"
#include "platform/Display.h"
#include "platform/ListSource.h"
#include "platform/SqlFunctions.h"

#include <memory>
#include <QLabel>
#include <QRegularExpression>
#include <QSemaphore>
#include <QTableView>
#include <QTest>
#include <QThread>

using platform::Database;

class tst_Database : public QObject
{
    Q_OBJECT
    std::unique_ptr<testsupport::TestFolder> m_folder;
    Database& db() { return m_folder->db(); }
    QStringList column(const QString& sql)
    {
        QStringList values;
        for (const auto& r : db().select(sql))
            values << r.value(0).toString();
        return values;
    }

private slots:
    void init()
    {
        m_folder = std::make_unique<testsupport::TestFolder>();
        QVERIFY(m_folder->open());
    }
    void cleanup() { m_folder.reset(); }

    void ordersAndComparesAsTheOffice()
    {
        // A case number differing only in letter case is the same case.
        QVERIFY(db().exec("INSERT INTO ugyek (ugyszam) VALUES ('10/A')"));
        QVERIFY(!db().exec("INSERT INTO ugyek (ugyszam) VALUES ('10/a')"));

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
    }

    void newRowKeyIsKnownBeforeStoring()
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

    void usedLookupEntriesCannotBeDeleted_data()
    {
        QTest::addColumn<QString>("lookup"); // table.column
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("use");
        QTest::addColumn<QString>("userTable");
        const char* rows[][5]{{"country of a client", "orszagok.orszagnev", "Szlovénia",
                               "INSERT INTO ugyfelek (uorszag) VALUES (?)", "ugyfelek"},
                              {"country of a postal code", "orszagok.orszagnev", "Szlovénia",
                               "INSERT INTO irsz (orszag) VALUES (?)", "irsz"},
                              {"case type", "tipusok.tipus", "Polgári",
                               "INSERT INTO ugyek (ugyszam, ugytipus) VALUES ('1', ?)", "ugyek"},
                              {"lawyer of a case", "ugyvedek.ugyvednev", "Dr. Kis Anna",
                               "INSERT INTO ugyek (ugyszam, ugyved) VALUES ('1', ?)", "ugyek"},
                              {"lawyer of a user", "ugyvedek.ugyvednev", "Dr. Kis Anna",
                               "INSERT INTO felhasznalo (alapugyv) VALUES (?)", "felhasznalo"}};
        for (const auto& r : rows)
            QTest::newRow(r[0]) << r[1] << r[2] << r[3] << r[4];
    }

    void usedLookupEntriesCannotBeDeleted()
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

    void renamedLookupEntryFollowsIntoItsRows()
    {
        QVERIFY(db().exec("INSERT INTO ugyfelek (unev1, uorszag) VALUES ('A', 'Ausztria')"));
        QVERIFY(db().exec(
                "UPDATE orszagok SET orszagnev = 'Österreich' WHERE orszagnev = 'Ausztria'"));
        QCOMPARE(column("SELECT uorszag FROM ugyfelek"), QStringList{"Österreich"});
        QCOMPARE(db().scalar("SELECT count(*) FROM irsz WHERE orszag = 'Ausztria'").toInt(), 0);
    }

    // Another workstation in the middle of a save: a write and a look at the file (as the start-up
    // takes one) wait for it rather than fail, and the look reads what it committed.
    void aShortLockByAnotherCopyIsWaitedFor()
    {
        QSemaphore locked;
        const std::unique_ptr<QThread> other(QThread::create([&] {
            Database db;
            db.openUnchecked(m_folder->dataFile(), nullptr);
            db.exec("BEGIN EXCLUSIVE");
            db.exec("INSERT INTO tipusok (tipus) VALUES ('Másik gép')");
            locked.release();
            QThread::msleep(700);
            db.exec("COMMIT");
        }));
        other->start();
        QVERIFY(locked.tryAcquire(1, 5000));
        platform::FileLook look(m_folder->dataFile(), false);
        platform::Rows rows;
        QVERIFY2(look.select("SELECT tipus FROM tipusok WHERE tipus = ?", {"Másik gép"}, &rows),
                 qPrintable(look.errorText()));
        QCOMPARE(int(rows.size()), 1);
        QString error;
        QVERIFY2(db().exec("INSERT INTO tipusok (tipus) VALUES ('Ez a gép')", {}, &error),
                 qPrintable(error));
        other->wait();
        QCOMPARE(db().scalar("SELECT count(*) FROM tipusok").toInt(), 2);
    }

    // Only the listed fields show, matched exactly, with the label's text as heading and their
    // widths; a later set-up (another language) still finds each field under its new heading.
    void gridShowsOnlyTheListedColumns()
    {
        platform::ListSource source(db());
        QTableView grid;
        source.bind(&grid);
        platform::ListQuery list;
        list.columns = "ukod, unev1, uorszag, uhely AS UHELY";
        list.from = "ugyfelek";
        list.order = QStringList{"unev1kulcs", "ukod"};
        source.setRecordSource(list);
        QVERIFY(source.refresh());
        QLabel name("Név"), place("Helység");
        platform::gridoszlopok(&grid, {{"unev1", &name, 3000}, {"uhely", &place, 2500}});
        for (int c : {0, 2, 3})
            QVERIFY(grid.isColumnHidden(c));
        QVERIFY(!grid.isColumnHidden(1));
        QCOMPARE(grid.model()->headerData(1, Qt::Horizontal).toString(), QStringLiteral("Név"));
        QCOMPARE(grid.columnWidth(1), platform::twipsToPixels(3000));

        name.setText("Name");
        platform::gridoszlopok(&grid, {{"unev1", &name, 3000}, {"UHELY", &place, 2500}});
        QCOMPARE(grid.model()->headerData(1, Qt::Horizontal).toString(), QStringLiteral("Name"));
        QVERIFY(!grid.isColumnHidden(3));
        QCOMPARE(grid.columnWidth(3), platform::twipsToPixels(2500));
    }
};

QTEST_MAIN(tst_Database)
#include "tst_database.moc"
