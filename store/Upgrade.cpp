#include "store/Upgrade.h"

#include "platform/Database.h"
#include "store/Conflicts.h"
#include "store/Prepare.h"
#include "store/Schema.h"

namespace store {

namespace {

bool hasColumn(platform::Database& db, const QString& table, const QString& column)
{
    for (const platform::ColumnInfo& c : db.columns(table)) {
        if (c.name == column)
            return true;
    }
    return false;
}

bool hasTable(platform::Database& db, const QString& table)
{
    // The engine's table names ignore letter case, as the office's old engine did.
    for (const QString& t : db.tables()) {
        if (t.compare(table, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

void addText(platform::Database& db, const QString& table, const QString& column, int size)
{
    db.addColumn(table, {column, QStringLiteral("TEXT"), size});
}

// Fills Hungarian captions that no row of the screen's key holds yet.
void fillCaptions(platform::Database& db, const QString& key,
                  const QList<QPair<QString, QString>>& texts)
{
    const platform::Rows rows = db.select(
            QStringLiteral("SELECT * FROM felirat WHERE felirkod = ? COLLATE HU"), {key});
    for (const auto& [column, text] : texts) {
        bool filled = false;
        for (const platform::Row& r : rows)
            filled = filled || !r.text(column).isEmpty();
        if (!filled)
            db.exec(QStringLiteral("UPDATE felirat SET [%1] = ? WHERE felirkod = ? COLLATE HU")
                            .arg(column),
                    {text, key});
    }
}

// The index that serves the case list's order: made where it is missing, made anew where an
// older version defined it otherwise. The definition is looked at first, so that a current
// file is not locked at every start, and again under the write lock, in case another
// workstation has just made it.
void updateCaseOrderIndex(platform::Database& db)
{
    const QString lookup = QStringLiteral(
            "SELECT sql FROM sqlite_master WHERE type = 'index' AND name = 'ugyek_sorrend'");
    if (db.first(lookup).text(QStringLiteral("sql")) == caseOrderIndex())
        return;
    platform::Transaction t(db);
    if (!t.isActive())
        return;
    const platform::Row existing = db.first(lookup);
    if (existing.text(QStringLiteral("sql")) == caseOrderIndex())
        return;
    if (!existing.isEmpty() && !db.exec(QStringLiteral("DROP INDEX ugyek_sorrend")))
        return;
    if (db.exec(caseOrderIndex()))
        t.commit();
}

} // namespace

void fillClientSortKeys(platform::Database& db)
{
    if (db.isReadOnly() || db.isDamaged())
        return;
    // Look first, through the key's index: an UPDATE would take the file's write lock even
    // when it changes nothing, and this runs each time a client list is shown.
    if (db.first(QStringLiteral("SELECT 1 FROM ugyfelek INDEXED BY ugyfelek_sorrend "
                                "WHERE unev1kulcs IS NULL AND unev1 IS NOT NULL LIMIT 1"))
                .isEmpty())
        return;
    db.exec(QStringLiteral("UPDATE ugyfelek SET unev1kulcs = hukulcs(unev1) "
                           "WHERE unev1kulcs IS NULL AND unev1 IS NOT NULL"));
}

void adatfrissites(platform::Database& db)
{
    // A file that may not be written, or is damaged, is left exactly as it is.
    if (db.isReadOnly() || db.isDamaged())
        return;
    // 1. Free notes on a case.
    if (!hasColumn(db, QStringLiteral("Ugyek"), QStringLiteral("feljegyzes")))
        addText(db, QStringLiteral("Ugyek"), QStringLiteral("feljegyzes"), -1);

    // 2. Start and end dates as text. kezdete stays behind as the mark of this step; the end
    // dates go through a working column too, so that none is lost.
    if (!hasColumn(db, QStringLiteral("Ugyek"), QStringLiteral("kezdete"))) {
        addText(db, QStringLiteral("Ugyek"), QStringLiteral("kezdete"), 15);
        db.exec(QStringLiteral("UPDATE ugyek SET kezdete = kezdet"));
        db.dropColumn(QStringLiteral("Ugyek"), QStringLiteral("kezdet"));
        addText(db, QStringLiteral("Ugyek"), QStringLiteral("kezdet"), 15);
        db.exec(QStringLiteral("UPDATE ugyek SET kezdet = kezdete"));
        addText(db, QStringLiteral("Ugyek"), QStringLiteral("zarasatmeneti"), 15);
        db.exec(QStringLiteral("UPDATE ugyek SET zarasatmeneti = zaras"));
        db.dropColumn(QStringLiteral("Ugyek"), QStringLiteral("zaras"));
        addText(db, QStringLiteral("Ugyek"), QStringLiteral("zaras"), 15);
        db.exec(QStringLiteral("UPDATE ugyek SET zaras = zarasatmeneti"));
        db.dropColumn(QStringLiteral("Ugyek"), QStringLiteral("zarasatmeneti"));
    }

    // 3. A user's default lawyer.
    if (!hasColumn(db, QStringLiteral("Felhasznalo"), QStringLiteral("alapugyv")))
        addText(db, QStringLiteral("Felhasznalo"), QStringLiteral("alapugyv"), 50);

    // 4. Case sub-numbers.
    if (!hasTable(db, QStringLiteral("Alszamok")))
        db.exec(QStringLiteral("CREATE TABLE alszamok AS SELECT 1 AS xx FROM parameterek"));
    if (!hasColumn(db, QStringLiteral("Alszamok"), QStringLiteral("fougyszam"))) {
        addText(db, QStringLiteral("Alszamok"), QStringLiteral("fougyszam"), 10);
        addText(db, QStringLiteral("Alszamok"), QStringLiteral("alugyszam"), 15);
        addText(db, QStringLiteral("Alszamok"), QStringLiteral("aldatum"), 15);
        addText(db, QStringLiteral("Alszamok"), QStringLiteral("almegjegyz"), 250);
    }

    // 5. Labels 31 to 39 in the three languages.
    if (!hasColumn(db, QStringLiteral("Felirat"), QStringLiteral("1sz31"))) {
        for (int lang = 1; lang <= 3; ++lang) {
            for (int n = 31; n <= 39; ++n)
                addText(db, QStringLiteral("Felirat"), QStringLiteral("%1sz%2").arg(lang).arg(n),
                        20);
        }
    }

    // 6. The message for bad dates; the code is compared exactly, letter case included.
    bool found = false;
    for (const platform::Row& r : db.select(QStringLiteral("SELECT * FROM uzenetek")))
        found = found || r.text(QStringLiteral("uzenkod")) == QLatin1String("hibasadat");
    if (!found)
        db.exec(QStringLiteral("INSERT INTO uzenetek (uzenkod, uzen1, uzen2, uzen3) "
                               "SELECT 'hibasadat', ?, ?, ? FROM parameterek"),
                {QStringLiteral("Hibás adat / adatformátum!"),
                 QStringLiteral("Falsche Dateiformat"), QStringLiteral("Bad Dataformat")});

    // The ordering value of case numbers and its index, for files made before they existed.
    // A generated column is not listed by table_info, so it is looked for in table_xinfo.
    if (db.scalar(QStringLiteral("SELECT count(*) FROM pragma_table_xinfo('ugyek') "
                                 "WHERE name = 'ugyszamertek'"))
                .toInt()
        == 0)
        db.exec(QStringLiteral("ALTER TABLE ugyek ADD COLUMN ") + caseNumberValueColumn());
    updateCaseOrderIndex(db);

    // The sort key of client names, and keys for rows written without one (by another tool,
    // or before the key existed).
    if (!hasColumn(db, QStringLiteral("Ugyfelek"), QStringLiteral("unev1kulcs")))
        db.addColumn(QStringLiteral("ugyfelek"),
                     {QStringLiteral("unev1kulcs"), QStringLiteral("BLOB"), -1});
    // Looked for first: a start on an up-to-date file writes nothing.
    if (db.first(QStringLiteral("SELECT 1 FROM sqlite_master WHERE type = 'index' "
                                "AND name = 'ugyfelek_sorrend'"))
                .isEmpty())
        db.exec(clientOrderIndex());
    fillClientSortKeys(db);
    // The guards that keep cases with their clients, for files made before they existed.
    if (db.first(QStringLiteral("SELECT 1 FROM sqlite_master WHERE type = 'trigger' "
                                "AND name = 'ugyek_ugyfel_valtozik'"))
                .isEmpty()) {
        for (const QString& guard : clientGuards())
            db.exec(guard);
    }

    updateNameKeys(db);
    // Messages added to the catalogue since the file was made.
    addMissingMessages(db);
    addMissingCaptions(db);

    // 7. and 8. Hungarian captions of newer labels.
    fillCaptions(db, QStringLiteral("ugyek"),
                 {{QStringLiteral("1sz27"), QStringLiteral("Megbízás vége:")},
                  {QStringLiteral("1sz28"), QStringLiteral("Feljegyzés")},
                  {QStringLiteral("1sz29"), QStringLiteral("Alszámok")},
                  {QStringLiteral("1sz30"), QStringLiteral("Alszám")},
                  {QStringLiteral("1sz31"), QStringLiteral("Dátum")},
                  {QStringLiteral("1sz32"), QStringLiteral("Megjegyzés")}});
    fillCaptions(db, QStringLiteral("users"),
                 {{QStringLiteral("1sz17"), QStringLiteral("Partnerek:")},
                  {QStringLiteral("1sz18"), QStringLiteral("Mentés:")},
                  {QStringLiteral("1sz19"), QStringLiteral("Hozzárendelt ügyvéd:")}});
}

} // namespace store
