// The case list's order: the number's value, then its text with letter case ignored; read page
// by page without a row lost or repeated, and served by its index in new and upgraded files.
#include "TestSupport.h"

#include "platform/ListQuery.h"
#include "store/Cases.h"
#include "store/Schema.h"
#include "store/Upgrade.h"

#include <memory>
#include <QTest>

namespace {

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

class tst_caselist : public QObject
{
    Q_OBJECT
    std::unique_ptr<testsupport::TestFolder> m_folder;
    platform::Database& db() { return m_folder->db(); }

private slots:
    void init()
    {
        m_folder = std::make_unique<testsupport::TestFolder>();
        QVERIFY(m_folder->open());
        QVERIFY(db().exec("INSERT INTO ugyfelek (ukod, unev1, unev1kulcs, unev1egyezo) "
                          "VALUES (1, 'Ügyfél', hukulcs('Ügyfél'), 'ugyfel')"));
    }
    void cleanup() { m_folder.reset(); }

    // Pages of two: each page starts right after the last row of the one before.
    void pagesFollowTheOrder()
    {
        const int pageSize = 2;
        for (const char* n : {"11/B", "11/a", "100", "11", "9", "11/c", "10/b", "10/A", "x/1"})
            QVERIFY(db().exec("INSERT INTO ugyek (ugyszam, ugyfelkod) VALUES (?, 1)", {n}));
        const platform::ListPager pager(db(), store::Cases::list());
        QStringList numbers;
        QVariantList after;
        platform::Rows rows;
        do {
            QString error;
            QVERIFY2(pager.page(after, pageSize, &rows, nullptr, &error), qPrintable(error));
            for (const platform::Row& r : rows)
                numbers << r.text("ugyszam");
            if (!rows.empty())
                after = pager.orderValues(rows.back());
        } while (int(rows.size()) == pageSize);
        QCOMPARE(numbers,
                 (QStringList{"x/1", "9", "10/A", "10/b", "11", "11/a", "11/B", "11/c", "100"}));
    }

    // The index gives the rows in the list's order, so the first rows come without sorting the
    // whole register; an older file's index of that name is made anew at start-up.
    void theIndexServesTheOrder_data()
    {
        QTest::addColumn<bool>("olderIndex");
        QTest::newRow("new file") << false;
        QTest::newRow("file with the older index") << true;
    }
    void theIndexServesTheOrder()
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

        // A current file is only looked at: while another desk holds the write lock, the
        // upgrade never waits for it.
        platform::Database other;
        QVERIFY(other.openExisting(m_folder->dataFile(), nullptr));
        QVERIFY(other.begin());
        db().setBusyWait(0);
        store::adatfrissites(db());
        QVERIFY(db().lastFailure() != platform::Failure::Busy);
        other.rollback();
    }
};

QTEST_MAIN(tst_caselist)
#include "tst_caselist.moc"
