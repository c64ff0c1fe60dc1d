#include "store/Schema.h"

#include "store/Conflicts.h"

namespace store {

namespace {

// A lookup list and the columns of other tables that hold its values.
struct LookupUse
{
    const char* table;
    const char* key;
    QList<QPair<const char*, const char*>> users; // table, column
};

const QList<LookupUse>& lookupUses()
{
    static const QList<LookupUse> uses = {
            {"orszagok",
             "orszagnev",
             {{"ugyfelek", "uorszag"},
              {"partner", "porszag"},
              {"irsz", "orszag"},
              {"ugyek", "ellorszag"},
              {"ugyek", "ellugyvorsz"}}},
            {"tipusok", "tipus", {{"ugyek", "ugytipus"}}},
            {"ugyvedek", "ugyvednev", {{"ugyek", "ugyved"}, {"felhasznalo", "alapugyv"}}},
    };
    return uses;
}

QString deleteGuard(const LookupUse& use, const QPair<const char*, const char*>& user)
{
    // One trigger per referring table, so the refusal names the table as the engine always has.
    return QStringLiteral("CREATE TRIGGER %1_%2_%3_kapcsolat BEFORE DELETE ON %1 "
                          "WHEN EXISTS (SELECT 1 FROM %2 WHERE %3 = OLD.%4 COLLATE NOCASE) "
                          "BEGIN SELECT RAISE(ABORT, '%5'); END")
            .arg(QLatin1String(use.table), QLatin1String(user.first), QLatin1String(user.second),
                 QLatin1String(use.key),
                 platform::EngineError::relatedRecords(QLatin1String(user.first))
                         .replace(u'\'', QStringLiteral("''")));
}

QString renameCascade(const LookupUse& use)
{
    // A renamed entry is renamed wherever it is used, so no row is left pointing at nothing.
    QStringList updates;
    for (const auto& user : use.users)
        updates << QStringLiteral("UPDATE %1 SET %2 = NEW.%3 WHERE %2 = OLD.%3 COLLATE NOCASE;")
                           .arg(QLatin1String(user.first), QLatin1String(user.second),
                                QLatin1String(use.key));
    return QStringLiteral("CREATE TRIGGER %1_atnevezes AFTER UPDATE OF %2 ON %1 "
                          "WHEN OLD.%2 IS NOT NEW.%2 BEGIN %3 END")
            .arg(QLatin1String(use.table), QLatin1String(use.key), updates.join(u' '));
}

} // namespace

QStringList clientGuards()
{
    auto quoted = [](QString text) { return text.replace(u'\'', QStringLiteral("''")); };
    const QString required
            = quoted(platform::EngineError::relatedRecordRequired(QStringLiteral("ugyfelek")));
    const QString clientCheck
            = QStringLiteral("NOT EXISTS (SELECT 1 FROM ugyfelek WHERE ukod = NEW.ugyfelkod)");
    return {
            // A client stays while cases name it, whoever deletes it.
            QStringLiteral("CREATE TRIGGER IF NOT EXISTS ugyfelek_ugyek_kapcsolat BEFORE DELETE ON "
                           "ugyfelek WHEN EXISTS (SELECT 1 FROM ugyek WHERE ugyfelkod = OLD.ukod) "
                           "BEGIN SELECT RAISE(ABORT, '%1'); END")
                    .arg(quoted(platform::EngineError::relatedRecords(QStringLiteral("ugyek")))),
            // A case names a client that exists, so a case never loses its client to a delete
            // made at the same moment on another workstation.
            QStringLiteral("CREATE TRIGGER IF NOT EXISTS ugyek_ugyfel_kell BEFORE INSERT ON ugyek "
                           "WHEN NEW.ugyfelkod IS NOT NULL AND %1 "
                           "BEGIN SELECT RAISE(ABORT, '%2'); END")
                    .arg(clientCheck, required),
            QStringLiteral("CREATE TRIGGER IF NOT EXISTS ugyek_ugyfel_valtozik BEFORE UPDATE OF "
                           "ugyfelkod ON ugyek WHEN NEW.ugyfelkod IS NOT OLD.ugyfelkod AND "
                           "NEW.ugyfelkod IS NOT NULL AND %1 "
                           "BEGIN SELECT RAISE(ABORT, '%2'); END")
                    .arg(clientCheck, required),
    };
}

QString caseNumberValueColumn()
{
    return QStringLiteral("ugyszamertek REAL GENERATED ALWAYS AS (CAST(ugyszam AS REAL)) VIRTUAL");
}

QString caseOrderIndex()
{
    // Written as the engine keeps it in sqlite_master, so the start-up upgrade can tell an
    // index of an older definition by its text.
    return QStringLiteral(
            "CREATE INDEX ugyek_sorrend ON ugyek (ugyszamertek, ugyszam COLLATE NOCASE)");
}

QString clientOrderIndex()
{
    return QStringLiteral("CREATE INDEX IF NOT EXISTS ugyfelek_sorrend ON ugyfelek (unev1kulcs)");
}

QStringList captionColumns()
{
    QStringList cols;
    for (int lang = 1; lang <= 3; ++lang) {
        for (int n = 1; n <= 39; ++n)
            cols << QStringLiteral("%1sz%2").arg(lang).arg(n);
        for (int n = 1; n <= 10; ++n)
            cols << QStringLiteral("%1g%2").arg(lang).arg(n);
    }
    return cols;
}

QStringList schemaStatements()
{
    QStringList s;
    s << QStringLiteral(
            "CREATE TABLE ugyfelek ("
            " ukod INTEGER PRIMARY KEY AUTOINCREMENT,"
            " unev1 TEXT(100), unev2 TEXT(100), uorszag TEXT(50), uirsz TEXT(10),"
            " uhely TEXT(50), uutca TEXT(100), utel1 TEXT(30), utel2 TEXT(30), ufax TEXT(30),"
            " uemail TEXT(100), ucegprivat BOOLEAN, uanyja TEXT(100), uszemszam TEXT(30),"
            " uadoszam TEXT(30), ucegszam TEXT(30), unev1kulcs BLOB, unev1egyezo TEXT)");
    s << QStringLiteral("CREATE INDEX ugyfelek_unev1 ON ugyfelek (unev1)");
    s << clientOrderIndex();

    s << QStringLiteral(
                 "CREATE TABLE ugyek ("
                 " ugyszam TEXT(10) NOT NULL, ugyfelkod INTEGER, ugytipus TEXT(50), ugyved "
                 "TEXT(50),"
                 " kezdet TEXT(15), zaras TEXT(15), megjegyzes TEXT(250),"
                 " ellnev TEXT(100), ellorszag TEXT(50), ellhely TEXT(50), ellutca TEXT(100),"
                 " ellirsz TEXT(10), elltelefon TEXT(30),"
                 " ellugyvnev TEXT(100), ellugyvorsz TEXT(50), ellugyvhely TEXT(50),"
                 " ellugyvutca TEXT(100), ellugyvirsz TEXT(10), ellugyvtel1 TEXT(30),"
                 " ellugyvtel2 TEXT(30), ellugyvfax TEXT(30), ellugyvemail TEXT(100),"
                 " feljegyzes TEXT, kezdete TEXT(15), ellnevegyezo TEXT, ellugyvnevegyezo TEXT,"
                 " %1)")
                    .arg(caseNumberValueColumn());
    // Case numbers are unique whatever their letter case ("10/A" and "10/a" are one case).
    s << QStringLiteral("CREATE UNIQUE INDEX ugyek_primarykey ON ugyek (ugyszam COLLATE NOCASE)");
    s << QStringLiteral("CREATE INDEX ugyek_ugyfelkod ON ugyek (ugyfelkod)");
    s << caseOrderIndex();

    s << QStringLiteral(
            "CREATE TABLE partner ("
            " pkod INTEGER PRIMARY KEY AUTOINCREMENT,"
            " pnev1 TEXT(100), pnev2 TEXT(100), porszag TEXT(50), pirsz TEXT(10), phely TEXT(50),"
            " putca TEXT(100), ptel1 TEXT(30), ptel2 TEXT(30), pfax TEXT(30), pemail TEXT(100),"
            " pnev1egyezo TEXT)");
    s << QStringLiteral("CREATE UNIQUE INDEX partner_primarykey ON partner (pkod)");

    s << QStringLiteral("CREATE TABLE orszagok (orszagnev TEXT(50) NOT NULL)");
    s << QStringLiteral(
            "CREATE UNIQUE INDEX orszagok_primarykey ON orszagok (orszagnev COLLATE NOCASE)");
    s << QStringLiteral("CREATE TABLE tipusok (tipus TEXT(50) NOT NULL)");
    s << QStringLiteral("CREATE UNIQUE INDEX tipusok_primarykey ON tipusok (tipus COLLATE NOCASE)");
    s << QStringLiteral("CREATE TABLE ugyvedek (ugyvednev TEXT(50) NOT NULL)");
    s << QStringLiteral(
            "CREATE UNIQUE INDEX ugyvedek_primarykey ON ugyvedek (ugyvednev COLLATE NOCASE)");

    s << QStringLiteral("CREATE TABLE irsz ("
                        " irszsorszam INTEGER PRIMARY KEY AUTOINCREMENT,"
                        " orszag TEXT(50), irsz TEXT(10), hely TEXT(50))");
    s << QStringLiteral("CREATE UNIQUE INDEX irsz_primarykey ON irsz (irszsorszam)");
    s << QStringLiteral("CREATE INDEX irsz_orszag_irsz ON irsz (orszag, irsz)");

    s << QStringLiteral("CREATE TABLE felhasznalo ("
                        " felhnev TEXT(50), loginnev TEXT(20), jelszo TEXT(20), felhnyelv INTEGER,"
                        " felhjog TEXT(20), alapugyv TEXT(50))");

    s << QStringLiteral("CREATE TABLE nyelvek (nyelvkod INTEGER, nyelvnev TEXT(20))");

    s << QStringLiteral(
            "CREATE TABLE parameterek ("
            " alapnyelv INTEGER, verzio TEXT(20), kelllogon BOOLEAN, utolsoment TEXT(20),"
            " modemport TEXT(50), elotag TEXT(20), tonepulse BOOLEAN)");

    // Labels 31 to 39 came later and are 20 characters wide; the others take 100.
    QStringList captionCols;
    for (const QString& c : captionColumns()) {
        const int sz = c.indexOf(QStringLiteral("sz"));
        const bool narrow = sz > 0 && c.mid(sz + 2).toInt() >= 31;
        captionCols << QStringLiteral("[%1] TEXT(%2)").arg(c).arg(narrow ? 20 : 100);
    }
    s << QStringLiteral("CREATE TABLE felirat (felirkod TEXT(50) NOT NULL, %1)")
                    .arg(captionCols.join(QStringLiteral(", ")));
    s << QStringLiteral(
            "CREATE UNIQUE INDEX felirat_primarykey ON felirat (felirkod COLLATE NOCASE)");

    s << QStringLiteral("CREATE TABLE uzenetek (uzenkod TEXT(20), uzen1 TEXT(255), uzen2 TEXT(255),"
                        " uzen3 TEXT(255))");
    s << QStringLiteral("CREATE INDEX uzenind ON uzenetek (uzenkod COLLATE NOCASE)");

    s << QStringLiteral("CREATE TABLE alszamok (xx INTEGER, fougyszam TEXT(10), alugyszam TEXT(15),"
                        " aldatum TEXT(15), almegjegyz TEXT(250))");
    s << QStringLiteral("CREATE INDEX alszamok_fougyszam ON alszamok (fougyszam COLLATE NOCASE)");

    for (const LookupUse& use : lookupUses()) {
        for (const auto& user : use.users)
            s << deleteGuard(use, user);
        s << renameCascade(use);
    }
    s << clientGuards();
    // The match keys of the names the conflict check compares.
    s << nameKeyIndexes();
    return s;
}

bool createSchema(platform::Database& db, QString* error)
{
    platform::Transaction t(db, error);
    if (!t.isActive())
        return false;
    for (const QString& statement : schemaStatements()) {
        if (!db.exec(statement, {}, error))
            return false;
    }
    return t.commit(error);
}

} // namespace store
