#include "platform/Database.h"

#include "platform/SqlFunctions.h"

#include <QAtomicInt>
#include <QCryptographicHash>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QUrl>
#include <sqlite3.h>

namespace platform {

namespace {

// 'CAUS' and 'CAUJ': marks that tell a Causora data file and account file from other files.
constexpr int dataFileId = 0x43415553;
constexpr int accountFileId = 0x4341554A;
constexpr int busyTimeoutMs = 10000;

QString nextConnectionName()
{
    static QAtomicInt counter;
    return QStringLiteral("causora-%1").arg(counter.fetchAndAddRelaxed(1));
}

QString errorText(const QSqlError& e)
{
    const QString t = e.databaseText().isEmpty() ? e.text() : e.databaseText();
    return t.trimmed();
}

QString passwordHash(const QString& salt, const QString& password)
{
    return QString::fromLatin1(
            QCryptographicHash::hash((salt + password).toUtf8(), QCryptographicHash::Sha256)
                    .toHex());
}

QString newSalt()
{
    quint64 a = QRandomGenerator::system()->generate64();
    quint64 b = QRandomGenerator::system()->generate64();
    return QString::number(a, 16) + QString::number(b, 16);
}

bool prepareAndExec(QSqlQuery& q, const QString& sql, const QVariantList& params, QString* error)
{
    if (!q.prepare(sql)) {
        if (error)
            *error = errorText(q.lastError());
        return false;
    }
    for (const QVariant& v : params)
        q.addBindValue(v);
    if (!q.exec()) {
        if (error)
            *error = errorText(q.lastError());
        return false;
    }
    return true;
}

Row rowOf(const QSqlQuery& q)
{
    const QSqlRecord rec = q.record();
    QStringList names;
    QVariantList values;
    names.reserve(rec.count());
    values.reserve(rec.count());
    for (int i = 0; i < rec.count(); ++i) {
        names << rec.fieldName(i);
        values << rec.value(i);
    }
    return Row(names, values);
}

// A throw-away native connection, for checking a file before the real connection opens.
class RawFile
{
public:
    RawFile(const QString& path, int flags)
    {
        m_rc = sqlite3_open_v2(QFile::encodeName(path).constData(), &m_db, flags, nullptr);
        if (m_rc == SQLITE_OK)
            sqlite3_busy_timeout(m_db, busyTimeoutMs);
    }
    ~RawFile() { sqlite3_close(m_db); }
    bool ok() const { return m_rc == SQLITE_OK; }
    QString error() const { return QString::fromUtf8(sqlite3_errmsg(m_db)); }
    // Runs a query of one text/int column; returns false on an engine error.
    bool query(const char* sql, const QString& bind, QStringList* out)
    {
        sqlite3_stmt* st = nullptr;
        if (sqlite3_prepare_v2(m_db, sql, -1, &st, nullptr) != SQLITE_OK)
            return false;
        if (!bind.isNull()) {
            const QByteArray b = bind.toUtf8();
            sqlite3_bind_text(st, 1, b.constData(), int(b.size()), SQLITE_TRANSIENT);
        }
        int rc;
        while ((rc = sqlite3_step(st)) == SQLITE_ROW) {
            for (int i = 0; i < sqlite3_column_count(st); ++i)
                *out << QString::fromUtf8(
                        reinterpret_cast<const char*>(sqlite3_column_text(st, i)));
        }
        sqlite3_finalize(st);
        return rc == SQLITE_DONE;
    }
    sqlite3* handle() const { return m_db; }

private:
    sqlite3* m_db = nullptr;
    int m_rc = SQLITE_ERROR;
};

} // namespace

// --- Row ---

Row::Row(QStringList names, QVariantList values)
    : m_names(std::move(names)), m_values(std::move(values))
{
}

int Row::indexOf(const QString& name) const
{
    for (int i = 0; i < m_names.size(); ++i) {
        if (m_names.at(i).compare(name, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

// --- engine texts ---

namespace EngineError {
QString accountOrPassword()
{
    return QStringLiteral("Not a valid account name or password.");
}
QString databasePassword()
{
    return QStringLiteral("Not a valid password.");
}
QString unrecognized(const QString& path)
{
    return QStringLiteral("Unrecognized database format '%1'.").arg(path);
}
QString missingFile(const QString& path)
{
    return QStringLiteral("Could not find file '%1'.").arg(path);
}
QString relatedRecords(const QString& table)
{
    return QStringLiteral("The record cannot be deleted or changed because table '%1' "
                          "includes related records.")
            .arg(table);
}
} // namespace EngineError

// --- Database ---

Database::Database() : m_connectionName(nextConnectionName()) { }

Database::~Database()
{
    close();
}

QSqlDatabase Database::connection() const
{
    return QSqlDatabase::database(m_connectionName, false);
}

bool Database::isOpen() const
{
    return m_registered && connection().isOpen();
}

void Database::close()
{
    // Known without asking Qt SQL, whose registry may already be gone at program exit.
    if (!m_registered)
        return;
    m_registered = false;
    {
        QSqlDatabase db = connection();
        if (db.isOpen())
            db.close();
    }
    QSqlDatabase::removeDatabase(m_connectionName);
    m_inTransaction = false;
    m_filePath.clear();
}

bool Database::openConnection(const QString& dataFile, bool readOnly, bool mustExist,
                              QString* error)
{
    close();
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
    m_registered = true;
    // A URI with mode=rw (or ro) keeps SQLite from creating a missing file.
    QString name = QUrl::fromLocalFile(QFileInfo(dataFile).absoluteFilePath())
                           .toString(QUrl::FullyEncoded);
    if (mustExist)
        name += readOnly ? QStringLiteral("?mode=ro") : QStringLiteral("?mode=rw");
    db.setDatabaseName(name);
    db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=%1%2")
                                 .arg(busyTimeoutMs)
                                 .arg(readOnly ? QStringLiteral(";QSQLITE_OPEN_READONLY")
                                               : QString()));
    if (!db.open()) {
        if (error)
            *error = errorText(db.lastError());
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_connectionName);
        m_registered = false;
        return false;
    }
    sqlite3* handle = nullptr;
    const QVariant v = db.driver()->handle();
    if (qstrcmp(v.typeName(), "sqlite3*") == 0)
        handle = *static_cast<sqlite3* const*>(v.constData());
    QString regError;
    if (!handle || !registerTextRules(handle, &regError)) {
        if (error)
            *error = regError.isEmpty() ? QStringLiteral("No SQLite handle") : regError;
        db.close();
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_connectionName);
        m_registered = false;
        return false;
    }
    // Room for sorting a whole register in memory instead of in temporary files.
    QSqlQuery(db).exec(QStringLiteral("PRAGMA cache_size = -32000"));
    m_filePath = dataFile;
    return true;
}

bool Database::open(const QString& dataFile, const QString& accountFile, const QString& account,
                    const QString& accountPassword, const QString& connect, QString* error)
{
    auto fail = [error](const QString& text) {
        if (error)
            *error = text;
        return false;
    };
    if (!QFileInfo::exists(accountFile))
        return fail(EngineError::missingFile(accountFile));
    if (!QFileInfo::exists(dataFile))
        return fail(EngineError::missingFile(dataFile));

    // The account file: the account and its password.
    {
        RawFile f(accountFile, SQLITE_OPEN_READONLY);
        QStringList id;
        if (!f.ok() || !f.query("PRAGMA application_id", QString(), &id) || id.value(0).toInt() != accountFileId)
            return fail(EngineError::unrecognized(accountFile));
        QStringList acc;
        if (!f.query("SELECT so, hash FROM fiokok WHERE nev = ?", account, &acc))
            return fail(f.error());
        if (acc.size() < 2 || passwordHash(acc.at(0), accountPassword) != acc.at(1))
            return fail(EngineError::accountOrPassword());
    }

    // The data file: a Causora database, and the password of the connect text.
    QString dbPassword;
    const QRegularExpression pwd(QStringLiteral("(?:^|;)\\s*pwd=([^;]*)"),
                                 QRegularExpression::CaseInsensitiveOption);
    const auto m = pwd.match(connect);
    if (m.hasMatch())
        dbPassword = m.captured(1);
    {
        RawFile f(dataFile, SQLITE_OPEN_READONLY);
        QStringList id;
        if (!f.ok() || !f.query("PRAGMA application_id", QString(), &id) || id.value(0).toInt() != dataFileId)
            return fail(EngineError::unrecognized(dataFile));
        QStringList check;
        if (!f.query("SELECT so, hash FROM vedelem", QString(), &check) || check.size() < 2)
            return fail(EngineError::unrecognized(dataFile));
        if (passwordHash(check.at(0), dbPassword) != check.at(1))
            return fail(EngineError::databasePassword());
    }
    return openConnection(dataFile, false, true, error);
}

bool Database::openForReading(const QString& dataFile, QString* error)
{
    return openConnection(dataFile, true, true, error);
}

bool Database::openUnchecked(const QString& dataFile, QString* error)
{
    return openConnection(dataFile, false, false, error);
}

Rows Database::select(const QString& sql, const QVariantList& params, QString* error) const
{
    Rows rows;
    QSqlQuery q(connection());
    q.setForwardOnly(true);
    if (!prepareAndExec(q, sql, params, error))
        return rows;
    while (q.next())
        rows.push_back(rowOf(q));
    return rows;
}

Row Database::first(const QString& sql, const QVariantList& params, QString* error) const
{
    QSqlQuery q(connection());
    q.setForwardOnly(true);
    if (!prepareAndExec(q, sql, params, error) || !q.next())
        return Row();
    return rowOf(q);
}

QVariant Database::scalar(const QString& sql, const QVariantList& params, QString* error) const
{
    QSqlQuery q(connection());
    q.setForwardOnly(true);
    if (!prepareAndExec(q, sql, params, error) || !q.next())
        return QVariant();
    return q.value(0);
}

bool Database::exec(const QString& sql, const QVariantList& params, QString* error)
{
    QSqlQuery q(connection());
    return prepareAndExec(q, sql, params, error);
}

QString Database::quoteName(const QString& name)
{
    QString n = name;
    n.replace(u'"', QStringLiteral("\"\""));
    return u'"' + n + u'"';
}

bool Database::insert(const QString& table, const QVariantMap& values, QVariant* newKey,
                      QString* error)
{
    QStringList cols;
    QStringList marks;
    QVariantList params;
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        cols << quoteName(it.key());
        marks << QStringLiteral("?");
        params << it.value();
    }
    const QString sql = cols.isEmpty()
            ? QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(quoteName(table))
            : QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                      .arg(quoteName(table), cols.join(u", "), marks.join(u", "));
    QSqlQuery q(connection());
    if (!prepareAndExec(q, sql, params, error))
        return false;
    if (newKey)
        *newKey = q.lastInsertId();
    return true;
}

bool Database::update(const QString& table, const QVariantMap& values, const QString& where,
                      const QVariantList& whereParams, QString* error)
{
    if (values.isEmpty())
        return true;
    QStringList sets;
    QVariantList params;
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        sets << quoteName(it.key()) + QStringLiteral(" = ?");
        params << it.value();
    }
    params += whereParams;
    return exec(QStringLiteral("UPDATE %1 SET %2 WHERE %3")
                        .arg(quoteName(table), sets.join(u", "), where),
                params, error);
}

bool Database::remove(const QString& table, const QString& where, const QVariantList& whereParams,
                      QString* error)
{
    return exec(QStringLiteral("DELETE FROM %1 WHERE %2").arg(quoteName(table), where),
                whereParams, error);
}

QStringList Database::tables() const
{
    QStringList names;
    for (const Row& r : select(QStringLiteral(
                 "SELECT name FROM sqlite_master WHERE type = 'table' "
                 "AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY rowid")))
        names << r.text(QStringLiteral("name"));
    return names;
}

QList<ColumnInfo> Database::columns(const QString& table) const
{
    QList<ColumnInfo> cols;
    static const QRegularExpression typeRe(QStringLiteral("^\\s*([A-Za-z ]*?)\\s*(?:\\((\\d+)\\))?\\s*$"));
    for (const Row& r : select(QStringLiteral("SELECT name, type FROM pragma_table_info(?)"),
                               {table})) {
        ColumnInfo c;
        c.name = r.text(QStringLiteral("name"));
        const auto m = typeRe.match(r.text(QStringLiteral("type")));
        c.type = m.hasMatch() ? m.captured(1).toUpper() : r.text(QStringLiteral("type"));
        c.size = m.hasMatch() && !m.captured(2).isEmpty() ? m.captured(2).toInt() : -1;
        cols << c;
    }
    return cols;
}

bool Database::addColumn(const QString& table, const ColumnInfo& column, QString* error)
{
    QString type = column.type.isEmpty() ? QStringLiteral("TEXT") : column.type;
    if (column.size > 0)
        type += QStringLiteral("(%1)").arg(column.size);
    return exec(QStringLiteral("ALTER TABLE %1 ADD COLUMN %2 %3")
                        .arg(quoteName(table), quoteName(column.name), type),
                {}, error);
}

bool Database::dropColumn(const QString& table, const QString& column, QString* error)
{
    return exec(QStringLiteral("ALTER TABLE %1 DROP COLUMN %2")
                        .arg(quoteName(table), quoteName(column)),
                {}, error);
}

bool Database::begin(QString* error)
{
    if (m_inTransaction) {
        if (error)
            *error = QStringLiteral("A transaction is already running.");
        return false;
    }
    m_inTransaction = exec(QStringLiteral("BEGIN IMMEDIATE"), {}, error);
    return m_inTransaction;
}

bool Database::commit(QString* error)
{
    if (!m_inTransaction)
        return false;
    if (!exec(QStringLiteral("COMMIT"), {}, error)) {
        rollback();
        return false;
    }
    m_inTransaction = false;
    return true;
}

void Database::rollback()
{
    if (!m_inTransaction)
        return;
    exec(QStringLiteral("ROLLBACK"));
    m_inTransaction = false;
}

// --- NewRow ---

NewRow::NewRow(Database& db, const QString& table, const QString& keyColumn)
    : m_db(db), m_table(table), m_keyColumn(keyColumn)
{
    if (!m_db.begin(&m_error))
        return;
    m_open = true;
    if (!m_db.insert(table, {}, &m_key, &m_error)) {
        m_key = QVariant();
        m_db.rollback();
        m_open = false;
    }
}

NewRow::~NewRow()
{
    if (m_open)
        m_db.rollback();
}

bool NewRow::update(QString* error)
{
    if (!m_open) {
        if (error)
            *error = m_error;
        return false;
    }
    m_open = false;
    QString e;
    if (!m_db.update(m_table, m_values, Database::quoteName(m_keyColumn) + QStringLiteral(" = ?"),
                     {m_key}, &e)
        || !m_db.commit(&e)) {
        m_db.rollback();
        if (error)
            *error = e;
        return false;
    }
    return true;
}

// --- set-up of new files ---

bool createAccountFile(const QString& path, const QString& account, const QString& password,
                       QString* error)
{
    RawFile f(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    if (!f.ok()) {
        if (error)
            *error = f.error();
        return false;
    }
    const QString salt = newSalt();
    const QByteArray sql = QStringLiteral(
            "PRAGMA application_id = %1;"
            "CREATE TABLE IF NOT EXISTS fiokok (nev TEXT(50) NOT NULL, so TEXT(40), hash TEXT(64));"
            "DELETE FROM fiokok;")
            .arg(accountFileId).toUtf8();
    char* msg = nullptr;
    if (sqlite3_exec(f.handle(), sql.constData(), nullptr, nullptr, &msg) != SQLITE_OK) {
        if (error)
            *error = QString::fromUtf8(msg);
        sqlite3_free(msg);
        return false;
    }
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(f.handle(), "INSERT INTO fiokok (nev, so, hash) VALUES (?, ?, ?)", -1, &st,
                       nullptr);
    const QByteArray a = account.toUtf8();
    const QByteArray s = salt.toUtf8();
    const QByteArray h = passwordHash(salt, password).toUtf8();
    sqlite3_bind_text(st, 1, a.constData(), int(a.size()), SQLITE_TRANSIENT);
    sqlite3_bind_text(st, 2, s.constData(), int(s.size()), SQLITE_TRANSIENT);
    sqlite3_bind_text(st, 3, h.constData(), int(h.size()), SQLITE_TRANSIENT);
    const int rc = sqlite3_step(st);
    sqlite3_finalize(st);
    if (rc != SQLITE_DONE) {
        if (error)
            *error = f.error();
        return false;
    }
    return true;
}

bool setDatabasePassword(Database& db, const QString& password, QString* error)
{
    const QString salt = newSalt();
    return db.exec(QStringLiteral("PRAGMA application_id = %1").arg(dataFileId), {}, error)
            && db.exec(QStringLiteral("CREATE TABLE IF NOT EXISTS vedelem (so TEXT(40), hash TEXT(64))"),
                       {}, error)
            && db.exec(QStringLiteral("DELETE FROM vedelem"), {}, error)
            && db.exec(QStringLiteral("INSERT INTO vedelem (so, hash) VALUES (?, ?)"),
                       {salt, passwordHash(salt, password)}, error);
}

} // namespace platform
