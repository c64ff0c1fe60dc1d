#include "store/Prepare.h"

#include "store/Access.h"
#include "store/Conflicts.h"
#include "store/Credentials.h"
#include "store/Schema.h"
#include "version.h"

#include <algorithm>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>

// The catalogue and postal code lists are compiled into this static library; its resources
// have to be registered by hand.
static void initStoreResources()
{
    Q_INIT_RESOURCE(store);
}

namespace store {

namespace {

// Lines of a tab- or comma-separated resource, without its header line.
QList<QStringList> readTable(const QString& resource, QChar separator, QString* error)
{
    initStoreResources();
    QList<QStringList> rows;
    QFile f(resource);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text)) {
        if (error)
            *error = QStringLiteral("Cannot read %1").arg(resource);
        return rows;
    }
    const QStringList lines = QString::fromUtf8(f.readAll()).split(u'\n');
    for (int i = 1; i < lines.size(); ++i) {
        const QString line = lines.at(i).trimmed();
        if (!line.isEmpty())
            rows << line.split(separator);
    }
    return rows;
}

// The rows of a catalogue: every "<name>*.tsv" of the catalogue folder, in name order, so each
// part of the program ships its own captions and messages.
QList<QStringList> readCatalogue(const QString& name, QString* error)
{
    initStoreResources();
    QList<QStringList> rows;
    const QDir folder(QStringLiteral(":/store/catalogue"));
    for (const QString& file :
         folder.entryList({name + QStringLiteral("*.tsv")}, QDir::Files, QDir::Name))
        rows << readTable(folder.filePath(file), u'\t', error);
    return rows;
}

bool fillBase(platform::Database& db, QString* error)
{
    return db.insert(QStringLiteral("parameterek"),
                     {{QStringLiteral("alapnyelv"), 1},
                      {QStringLiteral("verzio"), QStringLiteral(CAUSORA_VERSION)},
                      {QStringLiteral("kelllogon"), 0},
                      {QStringLiteral("utolsoment"), QVariant()},
                      {QStringLiteral("modemport"), QStringLiteral("1")},
                      // No dialling prefix: the dial command then carries none.
                      {QStringLiteral("elotag"), QVariant()},
                      {QStringLiteral("tonepulse"), -1}},
                     nullptr, error)
           && db.insert(QStringLiteral("nyelvek"),
                        {{QStringLiteral("nyelvkod"), 1},
                         {QStringLiteral("nyelvnev"), QStringLiteral("Magyar")}},
                        nullptr, error)
           && db.insert(QStringLiteral("nyelvek"),
                        {{QStringLiteral("nyelvkod"), 2},
                         {QStringLiteral("nyelvnev"), QStringLiteral("Deutsch")}},
                        nullptr, error)
           && db.insert(QStringLiteral("nyelvek"),
                        {{QStringLiteral("nyelvkod"), 3},
                         {QStringLiteral("nyelvnev"), QStringLiteral("English")}},
                        nullptr, error)
           && db.insert(QStringLiteral("orszagok"),
                        {{QStringLiteral("orszagnev"), QStringLiteral("Magyarország")}}, nullptr,
                        error)
           && db.insert(QStringLiteral("orszagok"),
                        {{QStringLiteral("orszagnev"), QStringLiteral("Ausztria")}}, nullptr, error)
           // The first administrator; the office changes the password on the users screen.
           && db.insert(QStringLiteral("felhasznalo"),
                        {{QStringLiteral("felhnev"), QStringLiteral("Rendszergazda")},
                         {QStringLiteral("loginnev"), QStringLiteral("ADMIN")},
                         {QStringLiteral("jelszo"), QStringLiteral("admin")},
                         {QStringLiteral("felhnyelv"), 1},
                         {QStringLiteral("felhjog"), QStringLiteral("11111111111111111111")},
                         {QStringLiteral("alapugyv"), QString()}},
                        nullptr, error);
}

} // namespace

namespace {

// The caption rows of the catalogue by screen key: felirkod and one column per language and
// control.
QMap<QString, QVariantMap> catalogueCaptions(QString* error)
{
    QMap<QString, QVariantMap> captions;
    for (const QStringList& f : readCatalogue(QStringLiteral("felirat"), error)) {
        if (f.size() < 5)
            continue;
        QVariantMap& row = captions[f.at(0)];
        row.insert(QStringLiteral("felirkod"), f.at(0));
        for (int lang = 1; lang <= 3; ++lang)
            row.insert(QString::number(lang) + f.at(1), f.at(1 + lang));
    }
    return captions;
}

} // namespace

bool fillCatalogue(platform::Database& db, QString* error)
{
    const QMap<QString, QVariantMap> captions = catalogueCaptions(error);
    if (captions.isEmpty())
        return false;
    for (const QVariantMap& row : captions) {
        if (!db.insert(QStringLiteral("felirat"), row, nullptr, error))
            return false;
    }

    const auto messageLines = readCatalogue(QStringLiteral("uzenetek"), error);
    if (messageLines.isEmpty())
        return false;
    for (const QStringList& f : messageLines) {
        if (f.size() < 4)
            continue;
        if (!db.insert(QStringLiteral("uzenetek"),
                       {{QStringLiteral("uzenkod"), f.at(0)},
                        {QStringLiteral("uzen1"), f.at(1)},
                        {QStringLiteral("uzen2"), f.at(2)},
                        {QStringLiteral("uzen3"), f.at(3)}},
                       nullptr, error))
            return false;
    }
    return true;
}

QString catalogueMessage(const QString& code, int language)
{
    static const QList<QStringList> lines = readCatalogue(QStringLiteral("uzenetek"), nullptr);
    for (const QStringList& f : lines) {
        if (f.size() >= 4 && f.at(0).compare(code, Qt::CaseInsensitive) == 0)
            return language >= 1 && language <= 3 ? f.at(language) : QString();
    }
    return code;
}

void addMissingCaptions(platform::Database& db)
{
    // A screen the office's file has no row for gets the program's row. In a row the office has
    // (and may have edited), only a control with no caption in any language (one newer than the
    // file, such as a later button) gets the program's three texts; every text there is kept.
    for (const QVariantMap& row : catalogueCaptions(nullptr)) {
        const QVariant key = row.value(QStringLiteral("felirkod"));
        const platform::Row existing = db.first(
                QStringLiteral("SELECT * FROM felirat WHERE felirkod = ? COLLATE HU"), {key});
        if (existing.isEmpty()) {
            db.insert(QStringLiteral("felirat"), row);
            continue;
        }
        QVariantMap missing;
        for (auto it = row.cbegin(); it != row.cend(); ++it) {
            if (!it.key().startsWith(u'1'))
                continue;
            const QString control = it.key().mid(1);
            const QStringList cells = {it.key(), u'2' + control, u'3' + control};
            if (std::all_of(cells.cbegin(), cells.cend(), [&](const QString& cell) {
                    return existing.contains(cell) && existing.isNull(cell);
                })) {
                for (const QString& cell : cells)
                    missing.insert(cell, row.value(cell));
            }
        }
        if (!missing.isEmpty())
            db.update(QStringLiteral("felirat"), missing, QStringLiteral("felirkod = ? COLLATE HU"),
                      {key});
    }
}

void addMissingMessages(platform::Database& db)
{
    QStringList known;
    for (const platform::Row& r : db.select(QStringLiteral("SELECT uzenkod FROM uzenetek")))
        known << r.text(QStringLiteral("uzenkod")).toLower();
    for (const QStringList& f : readCatalogue(QStringLiteral("uzenetek"), nullptr)) {
        if (f.size() < 4 || known.contains(f.at(0).toLower()))
            continue;
        db.insert(QStringLiteral("uzenetek"), {{QStringLiteral("uzenkod"), f.at(0)},
                                               {QStringLiteral("uzen1"), f.at(1)},
                                               {QStringLiteral("uzen2"), f.at(2)},
                                               {QStringLiteral("uzen3"), f.at(3)}});
    }
}

bool fillPostalCodes(platform::Database& db, QString* error)
{
    const QList<QPair<QString, QString>> lists = {
            {QStringLiteral(":/store/data/postal-codes-hu.csv"), QStringLiteral("Magyarország")},
            {QStringLiteral(":/store/data/postal-codes-at.csv"), QStringLiteral("Ausztria")},
    };
    for (const auto& list : lists) {
        const auto rows = readTable(list.first, u',', error);
        if (rows.isEmpty())
            return false;
        for (const QStringList& f : rows) {
            if (f.size() < 2)
                continue;
            if (!db.exec(QStringLiteral("INSERT INTO irsz (orszag, irsz, hely) VALUES (?, ?, ?)"),
                         {list.second, f.at(0), f.at(1)}, error))
                return false;
        }
    }
    return true;
}

bool prepareDataFolder(const QString& folder, bool demo, QString* error, Layout layout)
{
    QDir dir(folder);
    if (!dir.exists() && !QDir().mkpath(folder)) {
        if (error)
            *error = QStringLiteral("Cannot create the folder %1").arg(folder);
        return false;
    }
    const QString dataPath = dir.filePath(dataFileName());
    const QString accountPath = dir.filePath(workgroupFileName());
    if (QFileInfo::exists(dataPath) || QFileInfo::exists(accountPath)) {
        if (error)
            *error = QStringLiteral("%1 already holds a data file; nothing was changed.")
                             .arg(folder);
        return false;
    }

    // Build under a working name and rename at the end, so that a failure leaves no half-made
    // data file behind for the program to open.
    const QString workPath = dataPath + QStringLiteral(".new");
    QFile::remove(workPath);
    bool ok;
    {
        platform::Database db;
        ok = db.openUnchecked(workPath, error);
        if (ok) {
            platform::Transaction t(db, error);
            ok = t.isActive();
            for (const QString& statement : schemaStatements()) {
                if (ok)
                    ok = db.exec(statement, {}, error);
            }
            ok = ok && fillBase(db, error) && fillCatalogue(db, error) && fillPostalCodes(db, error)
                 && (!demo || fillDemoData(db, error))
                 && db.exec(QStringLiteral("UPDATE ugyfelek SET unev1kulcs = hukulcs(unev1)"), {},
                            error)
                 && (layout == Layout::Current ? (updateNameKeys(db), true)
                                               : makeOldLayout(db, error))
                 && setDatabasePassword(db, databasePassword(), error) && t.commit(error);
        }
        db.close();
    }
    ok = ok && createAccountFile(accountPath, databaseAccount(), databasePassword(), error)
         && QFile::rename(workPath, dataPath);
    if (!ok) {
        QFile::remove(workPath);
        QFile::remove(accountPath);
    }
    return ok;
}

} // namespace store
