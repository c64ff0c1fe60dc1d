#include "store/Conflicts.h"

#include "store/Prepare.h"

#include <algorithm>
#include <optional>
#include <tuple>

namespace store {

namespace {

// A name, the column of its match key, and the table both are in.
struct KeyedName
{
    const char* table;
    const char* name;
    const char* key;
};

const QList<KeyedName>& keyedNames()
{
    static const QList<KeyedName> names = {
            {"ugyfelek", "unev1", "unev1egyezo"},
            {"partner", "pnev1", "pnev1egyezo"},
            {"ugyek", "ellnev", "ellnevegyezo"},
            {"ugyek", "ellugyvnev", "ellugyvnevegyezo"},
    };
    return names;
}

QList<ConflictMatch> read(const platform::Database& db, ConflictMatch::Kind kind, const char* sql,
                          const QVariantList& params, QString* error)
{
    QList<ConflictMatch> found;
    QString e;
    for (const platform::Row& row : db.select(QLatin1String(sql), params, &e))
        found << ConflictMatch{kind, row.value(0), row.value(1).toString()};
    if (!e.isEmpty() && error && error->isEmpty())
        *error = e;
    return found;
}

bool hasColumn(platform::Database& db, const QString& table, const QString& column)
{
    for (const platform::ColumnInfo& c : db.columns(table)) {
        if (c.name.compare(column, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

// Gives every name of the column written without its key its key, in one write transaction.
// The keys are written a few hundred rows a statement: an older register gets them at its
// first start, and one statement per row would hold that start up for long.
void fillKeys(platform::Database& db, const KeyedName& n)
{
    // A name that is not there (NULL) needs no key: a NULL key matches nothing either.
    const QString missing
            = QStringLiteral("SELECT rowid, %1 FROM %2 INDEXED BY %2_%3 "
                             "WHERE %3 IS NULL AND %1 IS NOT NULL")
                      .arg(QLatin1String(n.name), QLatin1String(n.table), QLatin1String(n.key));
    // Looked for first through the key's index: a start on an up-to-date file writes nothing.
    if (db.first(missing + QStringLiteral(" LIMIT 1")).isEmpty())
        return;
    // Inside a running transaction (a file being prepared) the keys join it.
    std::optional<platform::Transaction> t;
    if (!db.inTransaction()) {
        t.emplace(db);
        if (!t->isActive())
            return;
    }
    const platform::Rows rows = db.select(missing);
    constexpr int batch = 400;
    for (size_t from = 0; from < rows.size(); from += batch) {
        const size_t to = std::min(rows.size(), from + batch);
        QStringList marks;
        QVariantList values;
        for (size_t i = from; i < to; ++i) {
            marks << QStringLiteral("(?, ?)");
            values << rows[i].value(0) << Conflicts::key(rows[i].value(1).toString());
        }
        const QString update = QStringLiteral("UPDATE %1 SET %2 = v.column2 FROM (VALUES %3) AS v "
                                              "WHERE %1.rowid = v.column1 AND %1.%2 IS NULL")
                                       .arg(QLatin1String(n.table), QLatin1String(n.key),
                                            marks.join(QStringLiteral(", ")));
        if (!db.exec(update, values))
            return;
    }
    // Where the engine keeps statistics of the file, the index's are read again: taken while
    // the keys were empty, they would steer it away from the index.
    if (!db.first(QStringLiteral("SELECT 1 FROM sqlite_master WHERE name = 'sqlite_stat1'"))
                 .isEmpty())
        db.exec(QStringLiteral("ANALYZE %1_%2").arg(QLatin1String(n.table), QLatin1String(n.key)));
    if (t)
        t->commit();
}

} // namespace

const NameMatch& Conflicts::nameMatch()
{
    // The list the program carries, the same on every workstation, so that keys written by
    // any of them compare alike.
    static const NameMatch match(catalogueMessage(QStringLiteral("cegformak"), 1));
    return match;
}

QVariant Conflicts::key(const QString& name)
{
    // A name without a key is stored as an empty key (never NULL, which marks a name not
    // keyed yet); an empty key matches nothing.
    return QVariant(nameMatch().key(name));
}

void addNameKey(QVariantMap& values, const QString& nameColumn, const QString& keyColumn)
{
    const auto name = values.constFind(nameColumn);
    if (name != values.cend())
        values.insert(keyColumn, Conflicts::key(name->toString()));
}

QList<ConflictMatch> Conflicts::matches(const QString& name, const QString& exceptCase,
                                        QString* error) const
{
    const QString k = nameMatch().key(name);
    if (k.isEmpty())
        return {};
    QList<ConflictMatch> found = read(
            m_db, ConflictMatch::Client,
            "SELECT ukod, unev1 FROM ugyfelek WHERE unev1egyezo = ? ORDER BY +ukod", {k}, error);
    found += read(m_db, ConflictMatch::Partner,
                  "SELECT pkod, pnev1 FROM partner WHERE pnev1egyezo = ? ORDER BY +pkod", {k},
                  error);
    found += read(m_db, ConflictMatch::Case,
                  "SELECT ugyszam, ellnev FROM ugyek WHERE ellnevegyezo = ?"
                  " AND ugyszam <> ? COLLATE NOCASE ORDER BY +ugyszamertek, ugyszam COLLATE NOCASE",
                  // A null text would bind as NULL, which no number differs from.
                  {k, exceptCase.isNull() ? QStringLiteral("") : exceptCase}, error);
    return found;
}

QList<ConflictMatch> Conflicts::casesAgainst(const QString& clientName, QString* error) const
{
    const QString k = nameMatch().key(clientName);
    if (k.isEmpty())
        return {};
    return read(m_db, ConflictMatch::Case,
                "SELECT ugyszam, ellnev FROM ugyek WHERE ellnevegyezo = ?"
                " ORDER BY +ugyszamertek, ugyszam COLLATE NOCASE",
                {k}, error);
}

platform::ListQuery Conflicts::list(int language)
{
    // The words of the list (which field, which kind of record) are the catalogue's messages
    // in the language; each is read once per statement.
    const int lang = language >= 1 && language <= 3 ? language : 1;
    auto word = [lang](const char* code) {
        return QStringLiteral("(SELECT uzen%1 FROM uzenetek WHERE uzenkod = '%2' COLLATE NOCASE"
                              " LIMIT 1)")
                .arg(lang)
                .arg(QLatin1String(code));
    };
    // One part per case field and kind of record; each joins through the key's index.
    QStringList parts;
    for (const auto& [field, mezo, code] : {std::tuple{"ellnev", 1, "utkozesellnev"},
                                            std::tuple{"ellugyvnev", 2, "utkozesellugyv"}}) {
        const QString head = QStringLiteral("SELECT u.ugyszamertek AS ertek, u.ugyszam AS ugyszam,"
                                            " %1 AS mezo, %2 AS mezonev, u.%3 AS nev, ")
                                     .arg(mezo)
                                     .arg(word(code), QLatin1String(field));
        const QString on = QStringLiteral("u.%1egyezo").arg(QLatin1String(field));
        parts << head
                         + QStringLiteral("1 AS fajta, %1 AS fajtanev, c.ukod AS kod,"
                                          " c.unev1 AS egyezonev FROM ugyek u JOIN ugyfelek c"
                                          " ON c.unev1egyezo = %2 WHERE %2 <> ''")
                                   .arg(word("utkozesugyfel"), on);
        parts << head
                         + QStringLiteral("2, %1, p.pkod, p.pnev1 FROM ugyek u JOIN partner p"
                                          " ON p.pnev1egyezo = %2 WHERE %2 <> ''")
                                   .arg(word("utkozespartner"), on);
        parts << head
                         + QStringLiteral("3, %1, o.ugyszam, o.ellnev FROM ugyek u JOIN ugyek o"
                                          " ON o.ellnevegyezo = %2 AND o.rowid <> u.rowid"
                                          " WHERE %2 <> ''")
                                   .arg(word("utkozesugy"), on);
    }
    platform::ListQuery q;
    q.columns = QStringLiteral("ugyszam, mezonev, nev, fajtanev || ' ' || kod AS rekord,"
                               " egyezonev, mezo, fajta, kod");
    q.from = QStringLiteral("(%1) AS utkozes").arg(parts.join(QStringLiteral(" UNION ALL ")));
    q.order = QStringList{QStringLiteral("utkozes.ertek"),
                          QStringLiteral("utkozes.ugyszam COLLATE NOCASE"),
                          QStringLiteral("utkozes.mezo"), QStringLiteral("utkozes.fajta"),
                          QStringLiteral("utkozes.kod")};
    return q;
}

QStringList nameKeyIndexes()
{
    QStringList s;
    for (const KeyedName& n : keyedNames())
        s << QStringLiteral("CREATE INDEX IF NOT EXISTS %1_%2 ON %1 (%2)")
                        .arg(QLatin1String(n.table), QLatin1String(n.key));
    return s;
}

void updateNameKeys(platform::Database& db)
{
    if (db.isReadOnly() || db.isDamaged())
        return;
    const QStringList indexes = nameKeyIndexes();
    for (int i = 0; i < keyedNames().size(); ++i) {
        const KeyedName& n = keyedNames().at(i);
        // A table of a file too old to hold the name is left to the steps that add it.
        if (!hasColumn(db, QLatin1String(n.table), QLatin1String(n.name)))
            continue;
        if (!hasColumn(db, QLatin1String(n.table), QLatin1String(n.key)))
            db.addColumn(QLatin1String(n.table),
                         {QLatin1String(n.key), QStringLiteral("TEXT"), -1});
        if (db.first(QStringLiteral(
                             "SELECT 1 FROM sqlite_master WHERE type = 'index' AND name = ?"),
                     {QStringLiteral("%1_%2").arg(QLatin1String(n.table), QLatin1String(n.key))})
                    .isEmpty())
            db.exec(indexes.at(i));
        fillKeys(db, n);
    }
}

} // namespace store
