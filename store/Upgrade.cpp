#include "store/Upgrade.h"

#include "platform/Database.h"
#include "store/Conflicts.h"
#include "store/ErrorLog.h"
#include "store/Prepare.h"
#include "store/Schema.h"

#include <functional>
#include <QRegularExpression>

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

// One step of the upgrade. It runs only while it is missing: looked at first without a lock,
// then again inside its write transaction, in case another workstation has just made it. Its
// statements run in that transaction, so a step that fails half-way leaves the file as it was
// and is tried again at the next start; the failure goes to hiba.txt and the next step runs.
class Step
{
public:
    Step(platform::Database& db, QString name) : m_db(db), m_name(std::move(name)) { }

    bool run(const std::function<bool()>& missing, const std::function<void(Step&)>& change)
    {
        if (!missing())
            return false;
        QString error;
        platform::Transaction t(m_db, &error);
        if (!t.isActive()) {
            log(error);
            return false;
        }
        if (!missing())
            return false;
        change(*this);
        if (m_ok && !t.commit(&m_error))
            m_ok = false;
        if (!m_ok)
            log(m_error);
        return m_ok;
    }

    // Statements of the step; after the first failure the rest are passed over.
    void exec(const QString& sql, const QVariantList& params = {})
    {
        if (m_ok)
            m_ok = m_db.exec(sql, params, &m_error);
    }
    void addText(const QString& table, const QString& column, int size)
    {
        if (m_ok)
            m_ok = m_db.addColumn(table, {column, QStringLiteral("TEXT"), size}, &m_error);
    }
    void dropColumn(const QString& table, const QString& column)
    {
        if (m_ok)
            m_ok = m_db.dropColumn(table, column, &m_error);
    }

private:
    void log(const QString& error) { hibanaplo(QStringLiteral("adatfrissites"), m_name, error); }

    platform::Database& m_db;
    QString m_name;
    bool m_ok = true;
    QString m_error;
};

// A date as an older layout kept it, as text: ISO dates (and date-times) become "yyyy.mm.dd";
// anything else is kept as it stands.
QString dateAsText(const QString& column)
{
    return QStringLiteral("CASE WHEN %1 GLOB '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]*' "
                          "THEN replace(substr(%1, 1, 10), '-', '.') ELSE %1 END")
            .arg(column);
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
        if (filled)
            continue;
        QString error;
        if (!db.exec(QStringLiteral("UPDATE felirat SET [%1] = ? WHERE felirkod = ? COLLATE HU")
                             .arg(column),
                     {text, key}, &error))
            hibanaplo(QStringLiteral("adatfrissites"), QStringLiteral("felirat ") + key, error);
    }
}

// The index or trigger a statement of the layout makes, as (type, name); empty for a table.
QPair<QString, QString> objectOf(const QString& statement)
{
    static const QRegularExpression create(QStringLiteral(
            "^CREATE\\s+(?:UNIQUE\\s+)?(INDEX|TRIGGER)\\s+(?:IF\\s+NOT\\s+EXISTS\\s+)?(\\w+)"));
    const auto m = create.match(statement);
    if (!m.hasMatch())
        return {};
    return {m.captured(1).toLower(), m.captured(2)};
}

bool hasObject(platform::Database& db, const QPair<QString, QString>& object)
{
    return !db.first(QStringLiteral("SELECT 1 FROM sqlite_master WHERE type = ? AND name = ?"),
                     {object.first, object.second})
                    .isEmpty();
}

// The index that serves the case list's order: made anew where an older version defined it
// otherwise (a missing one is made with the other indexes).
void updateCaseOrderIndex(platform::Database& db)
{
    const QString lookup = QStringLiteral(
            "SELECT sql FROM sqlite_master WHERE type = 'index' AND name = 'ugyek_sorrend'");
    auto outdated = [&] {
        const platform::Row existing = db.first(lookup);
        return !existing.isEmpty() && existing.text(QStringLiteral("sql")) != caseOrderIndex();
    };
    Step(db, QStringLiteral("ugyek_sorrend")).run(outdated, [](Step& s) {
        s.exec(QStringLiteral("DROP INDEX ugyek_sorrend"));
        s.exec(caseOrderIndex());
    });
}

// Indexes and triggers of the current layout that the file lacks.
void addMissingObjects(platform::Database& db)
{
    for (const QString& statement : schemaStatements()) {
        const auto object = objectOf(statement);
        if (object.second.isEmpty())
            continue;
        Step(db, object.second)
                .run([&] { return !hasObject(db, object); }, [&](Step& s) { s.exec(statement); });
    }
}

// 1. Free notes on a case.
void addNotes(Step& s)
{
    s.addText(QStringLiteral("Ugyek"), QStringLiteral("feljegyzes"), -1);
}

// 2. Start and end dates as text(15) in the form yyyy.mm.dd. kezdete stays behind as the mark of
// this step; the end dates go through a working column too, so that none is lost.
void datesAsText(Step& s)
{
    const QString ugyek = QStringLiteral("Ugyek");
    s.addText(ugyek, QStringLiteral("kezdete"), 15);
    s.exec(QStringLiteral("UPDATE ugyek SET kezdete = ") + dateAsText(QStringLiteral("kezdet")));
    s.dropColumn(ugyek, QStringLiteral("kezdet"));
    s.addText(ugyek, QStringLiteral("kezdet"), 15);
    s.exec(QStringLiteral("UPDATE ugyek SET kezdet = kezdete"));
    s.addText(ugyek, QStringLiteral("zarasatmeneti"), 15);
    s.exec(QStringLiteral("UPDATE ugyek SET zarasatmeneti = ")
           + dateAsText(QStringLiteral("zaras")));
    s.dropColumn(ugyek, QStringLiteral("zaras"));
    s.addText(ugyek, QStringLiteral("zaras"), 15);
    s.exec(QStringLiteral("UPDATE ugyek SET zaras = zarasatmeneti"));
    s.dropColumn(ugyek, QStringLiteral("zarasatmeneti"));
}

// 3. A user's default lawyer. The lawyer list's triggers name the column, so they are made anew
// with it: a lawyer still some user's default cannot be deleted, and renaming a lawyer renames
// him there too.
void addDefaultLawyer(Step& s)
{
    s.addText(QStringLiteral("Felhasznalo"), QStringLiteral("alapugyv"), 50);
    for (const QString& statement : schemaStatements()) {
        const auto object = objectOf(statement);
        if (object.first != QLatin1String("trigger")
            || !object.second.startsWith(QLatin1String("ugyvedek_")))
            continue;
        s.exec(QStringLiteral("DROP TRIGGER IF EXISTS ") + object.second);
        s.exec(statement);
    }
}

// 4. Case sub-numbers: the table with one row per parameters row, then its columns.
void addSubNumbers(Step& s)
{
    s.exec(QStringLiteral("CREATE TABLE alszamok (xx INTEGER)"));
    s.exec(QStringLiteral("INSERT INTO alszamok (xx) SELECT 1 FROM parameterek"));
}

void addSubNumberColumns(Step& s)
{
    const QString alszamok = QStringLiteral("Alszamok");
    s.addText(alszamok, QStringLiteral("fougyszam"), 10);
    s.addText(alszamok, QStringLiteral("alugyszam"), 15);
    s.addText(alszamok, QStringLiteral("aldatum"), 15);
    s.addText(alszamok, QStringLiteral("almegjegyz"), 250);
}

// 5. Labels 31 to 39 in the three languages.
void addLabels(Step& s)
{
    for (int lang = 1; lang <= 3; ++lang) {
        for (int n = 31; n <= 39; ++n)
            s.addText(QStringLiteral("Felirat"), QStringLiteral("%1sz%2").arg(lang).arg(n), 20);
    }
}

// 6. The message for bad dates; the code is compared exactly, letter case included.
bool lacksBadDataMessage(platform::Database& db)
{
    for (const platform::Row& r : db.select(QStringLiteral("SELECT uzenkod FROM uzenetek"))) {
        if (r.text(QStringLiteral("uzenkod")) == QLatin1String("hibasadat"))
            return false;
    }
    return true;
}

void addBadDataMessage(Step& s)
{
    s.exec(QStringLiteral("INSERT INTO uzenetek (uzenkod, uzen1, uzen2, uzen3) "
                          "SELECT 'hibasadat', ?, ?, ? FROM parameterek"),
           {QStringLiteral("Hibás adat / adatformátum!"), QStringLiteral("Falsche Dateiformat"),
            QStringLiteral("Bad Dataformat")});
}

// A generated column is not listed by table_info, so it is looked for in table_xinfo.
bool lacksCaseNumberValue(platform::Database& db)
{
    return db.scalar(QStringLiteral("SELECT count(*) FROM pragma_table_xinfo('ugyek') "
                                    "WHERE name = 'ugyszamertek'"))
                   .toInt()
           == 0;
}

void addCaseNumberValue(Step& s)
{
    s.exec(QStringLiteral("ALTER TABLE ugyek ADD COLUMN ") + caseNumberValueColumn());
}

void addClientSortKey(Step& s)
{
    s.exec(QStringLiteral("ALTER TABLE ugyfelek ADD COLUMN unev1kulcs BLOB"));
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
    const auto lacks = [&db](const QString& table, const QString& column) {
        return [&db, table, column] { return !hasColumn(db, table, column); };
    };
    const QString ugyek = QStringLiteral("Ugyek");
    const QString felhasznalo = QStringLiteral("Felhasznalo");
    const QString alszamok = QStringLiteral("Alszamok");

    // 1. to 5. The layout's steps, in their order.
    Step(db, QStringLiteral("feljegyzes"))
            .run(lacks(ugyek, QStringLiteral("feljegyzes")), addNotes);
    Step(db, QStringLiteral("kezdete")).run(lacks(ugyek, QStringLiteral("kezdete")), datesAsText);
    Step(db, QStringLiteral("alapugyv"))
            .run(lacks(felhasznalo, QStringLiteral("alapugyv")), addDefaultLawyer);
    Step(db, QStringLiteral("alszamok"))
            .run([&] { return !hasTable(db, alszamok); }, addSubNumbers);
    Step(db, QStringLiteral("fougyszam"))
            .run(lacks(alszamok, QStringLiteral("fougyszam")), addSubNumberColumns);
    Step(db, QStringLiteral("1sz31"))
            .run(lacks(QStringLiteral("Felirat"), QStringLiteral("1sz31")), addLabels);
    // 6. The message for bad dates.
    Step(db, QStringLiteral("hibasadat"))
            .run([&] { return lacksBadDataMessage(db); }, addBadDataMessage);

    // The ordering value of case numbers and the sort key of client names, for files made
    // before they existed.
    Step(db, QStringLiteral("ugyszamertek"))
            .run([&] { return lacksCaseNumberValue(db); }, addCaseNumberValue);
    Step(db, QStringLiteral("unev1kulcs"))
            .run(lacks(QStringLiteral("Ugyfelek"), QStringLiteral("unev1kulcs")), addClientSortKey);

    // Indexes and triggers the file lacks: the lists' order, the sub-numbers' index, and the
    // guards that keep every case with its client.
    updateCaseOrderIndex(db);
    addMissingObjects(db);
    // Sort keys for rows written without one (by another tool, or before the key existed).
    fillClientSortKeys(db);

    // Names' match keys for the conflict check, for files older than the check and rows other
    // tools wrote without them.
    updateNameKeys(db);
    // Messages added to the catalogue since the file was made.
    addMissingMessages(db);

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
    // Screens and controls added since the file was made; after the labels above, which newer
    // files carry in Hungarian only.
    addMissingCaptions(db);
}

} // namespace store
