// The conflict-of-interest check: names compared by their match key, the keys written with the
// names by every write and filled for rows written without them, and the register-wide list.
#include "TestSupport.h"

#include "store/Cases.h"
#include "store/Clients.h"
#include "store/Conflicts.h"
#include "store/Partners.h"
#include "store/Upgrade.h"

#include <memory>
#include <QTest>

namespace {

QStringList described(const QList<store::ConflictMatch>& matches)
{
    QStringList out;
    for (const store::ConflictMatch& m : matches)
        out << QStringLiteral("%1 %2 %3").arg(m.kind).arg(m.key.toString(), m.name);
    return out;
}

} // namespace

class tst_conflicts : public QObject
{
    Q_OBJECT
    std::unique_ptr<testsupport::TestFolder> m_folder;
    platform::Database& db() { return m_folder->db(); }

    QVariant client(const QString& name) { return store::Clients(db()).add({{"unev1", name}}).key; }
    QVariant partner(const QString& name)
    {
        return store::Partners(db()).add({{"pnev1", name}}).key;
    }
    void addCase(const QString& number, const QString& opponent, const QString& lawyer = {})
    {
        QCOMPARE(store::Cases(db())
                         .add({{"ugyszam", number}, {"ellnev", opponent}, {"ellugyvnev", lawyer}})
                         .result,
                 store::Written::Stored);
    }

private slots:
    void init()
    {
        m_folder = std::make_unique<testsupport::TestFolder>();
        QVERIFY(m_folder->open());
    }
    void cleanup() { m_folder.reset(); }

    void namesMatchWhateverTheirWriting()
    {
        const QVariant kovacsTarsa = client("KOVÁCS ÉS TÁRSA");
        const QVariant kovacs = client("Kovács");
        client("Nagy Béla");
        const QVariant partnerKey = partner("Kovacs es Tarsa Bt");
        addCase("1", "Társa és Kovács Zrt.");
        addCase("2", "Béla Kovács");
        const store::Conflicts check(db());

        // The case being entered (number 2) does not match itself.
        QCOMPARE(described(check.matches("Kovács és Társa Kft.", "3")),
                 QStringList({QString("1 %1 KOVÁCS ÉS TÁRSA").arg(kovacsTarsa.toString()),
                              QString("2 %1 Kovacs es Tarsa Bt").arg(partnerKey.toString()),
                              "3 1 Társa és Kovács Zrt."}));
        QCOMPARE(described(check.matches("KOVACS BELA", "2")), QStringList());
        QCOMPARE(described(check.matches("KOVACS BELA", "9")), QStringList({"3 2 Béla Kovács"}));
        QVERIFY(check.matches("Kovácsné").isEmpty());
        QCOMPARE(described(check.matches("kovacs")),
                 QStringList({QString("1 %1 Kovács").arg(kovacs.toString())}));
        QVERIFY(check.matches("--").isEmpty());

        // A client's name against the cases' opponents.
        QCOMPARE(described(check.casesAgainst("Kovács Társa")),
                 QStringList({"3 1 Társa és Kovács Zrt."}));
    }

    void keysAreWrittenWithTheNames()
    {
        const QVariant c = client("Alfa Kft.");
        const QVariant p = partner("Béta Bt.");
        addCase("5", "Gamma GmbH", "Dr. Delta");
        auto key = [&](const char* sql, const QVariant& k) {
            return db().scalar(sql, {k}).toString();
        };
        QCOMPARE(key("SELECT unev1egyezo FROM ugyfelek WHERE ukod = ?", c), QString("alfa"));
        QCOMPARE(key("SELECT pnev1egyezo FROM partner WHERE pkod = ?", p), QString("beta"));
        QCOMPARE(key("SELECT ellnevegyezo FROM ugyek WHERE ugyszam = ?", "5"), QString("gamma"));
        QCOMPARE(key("SELECT ellugyvnevegyezo FROM ugyek WHERE ugyszam = ?", "5"),
                 QString("delta dr"));

        QCOMPARE(store::Clients(db()).change(c, {{"unev1", "Omega"}}).result,
                 store::Written::Stored);
        QCOMPARE(store::Partners(db()).change(p, {{"pnev1", "Szigma"}}).result,
                 store::Written::Stored);
        QCOMPARE(store::Cases(db()).change("5", {{"ellnev", "Kappa"}, {"ellugyvnev", ""}}).result,
                 store::Written::Stored);
        QCOMPARE(key("SELECT unev1egyezo FROM ugyfelek WHERE ukod = ?", c), QString("omega"));
        QCOMPARE(key("SELECT pnev1egyezo FROM partner WHERE pkod = ?", p), QString("szigma"));
        QCOMPARE(key("SELECT ellnevegyezo FROM ugyek WHERE ugyszam = ?", "5"), QString("kappa"));
        QCOMPARE(key("SELECT ellugyvnevegyezo FROM ugyek WHERE ugyszam = ?", "5"), QString(""));
    }

    void rowsWrittenWithoutKeysGetThemAtStart()
    {
        // As the sqlite3 tool, or an older version, writes them.
        QVERIFY(db().exec("INSERT INTO ugyfelek (unev1) VALUES ('Kovács Béla')"));
        QVERIFY(db().exec("INSERT INTO partner (pnev1) VALUES ('Béla Kovács')"));
        QVERIFY(db().exec("INSERT INTO ugyek (ugyszam, ellnev, ellugyvnev) "
                          "VALUES ('7', 'KOVACS BELA', NULL)"));
        QVERIFY(store::Conflicts(db()).matches("Kovács Béla").isEmpty());
        store::adatfrissites(db());
        QCOMPARE(db().scalar("SELECT count(*) FROM ugyfelek WHERE unev1egyezo = 'bela kovacs'")
                         .toInt(),
                 1);
        QCOMPARE(store::Conflicts(db()).matches("Kovács Béla").size(), 3);
        // A name that is not there needs no key.
        QVERIFY(db().scalar("SELECT ellugyvnevegyezo FROM ugyek WHERE ugyszam = '7'").isNull());
    }

    void theRegisterListHoldsEveryConflict()
    {
        const QVariant c = client("Kovács és Társa");
        const QVariant p = partner("Nagy Bt.");
        client("Senki");
        addCase("10", "Kovacs es Tarsa Kft.", "Nagy");
        addCase("2", "Tarsa Kovacs");
        addCase("3", "Más", "Valaki");
        QStringList rows;
        const platform::ListPager pager(db(), store::Conflicts::list());
        QVariantList after;
        platform::Rows page;
        do {
            QString error;
            QVERIFY2(pager.page(after, 2, &page, nullptr, &error), qPrintable(error));
            for (const platform::Row& r : page)
                rows << QStringList{r.text("ugyszam"), r.text("mezonev"), r.text("nev"),
                                    r.text("rekord"), r.text("egyezonev")}
                                .join('|');
            if (!page.empty())
                after = pager.orderValues(page.back());
        } while (!page.empty());
        const QString ck = c.toString();
        QCOMPARE(rows,
                 QStringList({"2|Ellenfél|Tarsa Kovacs|ügyfél " + ck + "|Kovács és Társa",
                              "2|Ellenfél|Tarsa Kovacs|ügy 10|Kovacs es Tarsa Kft.",
                              "10|Ellenfél|Kovacs es Tarsa Kft.|ügyfél " + ck + "|Kovács és Társa",
                              "10|Ellenfél|Kovacs es Tarsa Kft.|ügy 2|Tarsa Kovacs",
                              "10|Ellenfél ügyvédje|Nagy|partner " + p.toString() + "|Nagy Bt."}));
        // In English.
        platform::Rows english;
        QVERIFY(platform::ListPager(db(), store::Conflicts::list(3))
                        .page({}, 1, &english, nullptr, nullptr));
        QCOMPARE(english.front().text("rekord"), "client " + ck);
        QCOMPARE(pager.count(nullptr), 5);
    }
};

QTEST_MAIN(tst_conflicts)
#include "tst_conflicts.moc"
