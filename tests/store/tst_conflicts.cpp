// The conflict-of-interest check: names compared by their match key, the keys written with the
// names by every write and filled for rows written without them, and the register-wide list.
#include "TestSupport.h"

#include "store/Cases.h"
#include "store/Clients.h"
#include "store/Conflicts.h"
#include "store/NameMatch.h"
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
        QVERIFY(store::Cases(db())
                        .add({{"ugyszam", number}, {"ellnev", opponent}, {"ellugyvnev", lawyer}})
                        .stored());
    }

private slots:
    void init()
    {
        m_folder = std::make_unique<testsupport::TestFolder>();
        QVERIFY(m_folder->open());
    }
    void cleanup() { m_folder.reset(); }

    // Ways of writing one name that the register's cases below do not show.
    void sameNameWrittenDifferently()
    {
        const store::NameMatch match;
        const QList<QPair<QString, QString>> pairs = {{"Nagy-Szabó, Anna", "nagy szabo anna"},
                                                      {"Alpha S.A.", "Alpha SA"},
                                                      {"Kovács & Társa", "Kovács és Társa Zrt."},
                                                      {"Straße GmbH", "STRASSE"},
                                                      {"Őri Ödön", "ori odon"},
                                                      {"Kft.", "KFT"}};
        for (const auto& [a, b] : pairs)
            QVERIFY2(!match.key(a).isEmpty() && match.key(a) == match.key(b), qPrintable(a));
    }

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
        // The office's own list decides what a legal form is.
        QCOMPARE(store::NameMatch("Társa").key("Kovács és Társa Kft."), QString("kft kovacs"));
    }

    void keysAreWrittenWithTheNamesOrAtStart()
    {
        const QVariant c = client("Alfa Kft.");
        const QVariant p = partner("Béta Bt.");
        addCase("5", "Gamma GmbH", "Dr. Delta");
        const auto keys = [&] {
            return db()
                    .scalar("SELECT (SELECT unev1egyezo FROM ugyfelek WHERE ukod = ?) || '|' "
                            "|| (SELECT pnev1egyezo FROM partner WHERE pkod = ?) || '|' || "
                            "ellnevegyezo || '|' || ifnull(ellugyvnevegyezo, '') FROM ugyek "
                            "WHERE ugyszam = '5'",
                            {c, p})
                    .toString();
        };
        QCOMPARE(keys(), QString("alfa|beta|gamma|delta dr"));
        QVERIFY(store::Clients(db()).change(c, {{"unev1", "Omega"}}).stored());
        QVERIFY(store::Partners(db()).change(p, {{"pnev1", "Szigma"}}).stored());
        QVERIFY(store::Cases(db()).change("5", {{"ellnev", "Kappa"}, {"ellugyvnev", ""}}).stored());
        QCOMPARE(keys(), QString("omega|szigma|kappa|"));

        // Rows as the sqlite3 tool, or an older version, writes them get their keys at start.
        QVERIFY(db().exec("INSERT INTO ugyfelek (unev1) VALUES ('Kovács Béla')"));
        QVERIFY(db().exec("INSERT INTO partner (pnev1) VALUES ('Béla Kovács')"));
        QVERIFY(db().exec("INSERT INTO ugyek (ugyszam, ellnev, ellugyvnev) "
                          "VALUES ('7', 'KOVACS BELA', NULL)"));
        QVERIFY(store::Conflicts(db()).matches("Kovács Béla").isEmpty());
        store::adatfrissites(db());
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
        QCOMPARE(pager.count(nullptr), 5);
    }
};

QTEST_MAIN(tst_conflicts)
#include "tst_conflicts.moc"
