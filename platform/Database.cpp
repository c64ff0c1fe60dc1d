#include "platform/Database.h"

#include "platform/SqlFunctions.h"
#include "platform/StructureCheck.h"

#include <atomic>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>
#include <QAtomicInt>
#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QThread>
#include <QUrl>

namespace platform {

namespace {

std::atomic<int> defaultBusyWaitMs{5000};

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

// Access as the office sets it on the file: a file whose permission bits allow nobody to
// write (or read) it is treated so even for an account the system would let through.
bool allowed(const QString& path, int mode)
{
    const QByteArray native = QFile::encodeName(path);
    if (::access(native.constData(), mode) != 0)
        return false;
    struct stat st;
    if (::stat(native.constData(), &st) != 0)
        return false;
    const mode_t bits = mode == R_OK   ? (S_IRUSR | S_IRGRP | S_IROTH)
                        : mode == W_OK ? (S_IWUSR | S_IWGRP | S_IWOTH)
                                       : (S_IXUSR | S_IXGRP | S_IXOTH);
    return (st.st_mode & bits) != 0;
}

// Keeps the windows painted while a step waits for another workstation's lock. Input is left
// in the queue, so nothing the user does runs in the middle of the step.
void keepPainting()
{
    if (QCoreApplication::instance()
        && QThread::currentThread() == QCoreApplication::instance()->thread())
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, 20);
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

} // namespace

Failure failureOfCode(int code)
{
    switch (code & 0xff) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
        return Failure::None;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return Failure::Busy;
    case SQLITE_READONLY:
        return Failure::ReadOnly;
    case SQLITE_CORRUPT:
        return Failure::Damaged;
    case SQLITE_NOTADB:
        return Failure::NotCausora;
    case SQLITE_PERM:
    case SQLITE_AUTH:
    case SQLITE_CANTOPEN:
        return Failure::Unreadable;
    case SQLITE_CONSTRAINT:
        return Failure::Refused;
    default:
        return Failure::Other;
    }
}

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
QString relatedRecordRequired(const QString& table)
{
    return QStringLiteral("You cannot add or change a record because a related record is "
                          "required in table '%1'.")
            .arg(table);
}
QString busy()
{
    return QStringLiteral("The database is locked by another workstation.");
}
QString readOnly()
{
    return QStringLiteral("The database is opened read-only.");
}
QString damaged()
{
    return QStringLiteral("The database disk image is malformed.");
}
QString locked(const QString& path)
{
    return QStringLiteral("The file '%1' is locked by another program.").arg(path);
}
QString unreadable(const QString& path)
{
    return QStringLiteral("The file '%1' or its folder may not be read.").arg(path);
}
} // namespace EngineError

// --- Database ---

void Database::setDefaultBusyWait(int ms)
{
    defaultBusyWaitMs = ms;
}

int Database::defaultBusyWait()
{
    return defaultBusyWaitMs;
}

Database::Database()
    : m_connectionName(nextConnectionName()), m_busyWaitMs(defaultBusyWaitMs.load())
{
}

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
    m_check.reset();
    {
        QSqlDatabase db = connection();
        if (db.isOpen())
            db.close();
    }
    QSqlDatabase::removeDatabase(m_connectionName);
    m_inTransaction = false;
    m_readOnly = false;
    m_damaged = false;
    m_filePath.clear();
}

bool Database::fail(Failure failure, const QString& text, QString* error) const
{
    m_failure = failure;
    if (failure == Failure::Damaged)
        m_damaged = true;
    if (error)
        *error = text;
    return false;
}

bool Database::failOn(const QSqlError& e, QString* error) const
{
    bool ok = false;
    const int code = e.nativeErrorCode().toInt(&ok);
    return fail(ok ? failureOfCode(code) : Failure::Other, errorText(e), error);
}

bool Database::refuse(Failure failure, const QString& text, QString* error)
{
    close();
    return fail(failure, text, error);
}

Failure Database::failureOf(const QSqlError& e) const
{
    failOn(e, nullptr);
    return m_failure;
}

bool Database::writeAllowed(QString* error) const
{
    // A write waits for the look at the file's structure, so nothing is written into a file
    // that turns out to be damaged.
    if (m_check && !m_check->wait())
        m_damaged = true;
    if (m_damaged)
        return fail(Failure::Damaged, EngineError::damaged(), error);
    if (m_readOnly)
        return fail(Failure::ReadOnly, EngineError::readOnly(), error);
    return true;
}

int Database::onBusy(void* self, int count)
{
    auto* db = static_cast<Database*>(self);
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (count == 0)
        db->m_busySinceMs = now;
    if (now - db->m_busySinceMs >= db->m_busyWaitMs)
        return 0;
    // Anything that runs while the windows paint must not use this connection meanwhile.
    db->m_waiting = true;
    keepPainting();
    QThread::msleep(10);
    db->m_waiting = false;
    return 1;
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
    db.setConnectOptions(
            QStringLiteral("QSQLITE_OPEN_URI%1")
                    .arg(readOnly ? QStringLiteral(";QSQLITE_OPEN_READONLY") : QString()));
    auto drop = [&] {
        db.close();
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_connectionName);
        m_registered = false;
    };
    if (!db.open()) {
        failOn(db.lastError(), error);
        drop();
        return false;
    }
    sqlite3* handle = nullptr;
    const QVariant v = db.driver()->handle();
    if (qstrcmp(v.typeName(), "sqlite3*") == 0)
        handle = *static_cast<sqlite3* const*>(v.constData());
    QString regError;
    if (!handle || !registerTextRules(handle, &regError)) {
        fail(Failure::Other, regError.isEmpty() ? QStringLiteral("No SQLite handle") : regError,
             error);
        drop();
        return false;
    }
    sqlite3_busy_handler(handle, &Database::onBusy, this);
    // Room for sorting a whole register in memory instead of in temporary files.
    QSqlQuery(db).exec(QStringLiteral("PRAGMA cache_size = -32000"));
    m_filePath = dataFile;
    m_readOnly = readOnly;
    m_failure = Failure::None;
    return true;
}

bool Database::openForReading(const QString& dataFile, QString* error)
{
    return openConnection(dataFile, true, true, error);
}

bool Database::openExisting(const QString& dataFile, QString* error)
{
    return openConnection(dataFile, false, true, error);
}

bool Database::openUnchecked(const QString& dataFile, QString* error)
{
    return openConnection(dataFile, false, false, error);
}

StructureCheck* Database::startStructureCheck(int budgetMs)
{
    m_check = std::make_unique<StructureCheck>(m_filePath, budgetMs);
    QObject::connect(m_check.get(), &StructureCheck::finished,
                     [this](bool damaged) { m_damaged = m_damaged || damaged; });
    return m_check.get();
}

bool Database::run(QSqlQuery& q, const QString& sql, const QVariantList& params,
                   QString* error) const
{
    if (m_waiting)
        return fail(Failure::Busy, EngineError::busy(), error);
    if (!q.prepare(sql))
        return failOn(q.lastError(), error);
    for (const QVariant& v : params)
        q.addBindValue(v);
    if (!q.exec())
        return failOn(q.lastError(), error);
    return true;
}

Rows Database::select(const QString& sql, const QVariantList& params, QString* error) const
{
    return select(sql, params, nullptr, error);
}

Rows Database::select(const QString& sql, const QVariantList& params, QStringList* columnNames,
                      QString* error) const
{
    Rows rows;
    QSqlQuery q(connection());
    q.setForwardOnly(true);
    if (!run(q, sql, params, error))
        return rows;
    // The names are read once for the statement and shared by its rows.
    const QSqlRecord rec = q.record();
    QStringList names;
    names.reserve(rec.count());
    for (int i = 0; i < rec.count(); ++i)
        names << rec.fieldName(i);
    if (columnNames)
        *columnNames = names;
    while (q.next()) {
        QVariantList values;
        values.reserve(names.size());
        for (int i = 0; i < names.size(); ++i)
            values << q.value(i);
        rows.emplace_back(names, std::move(values));
    }
    // A step that ended in an error (a page found damaged half-way) is a failure too.
    if (q.lastError().isValid()) {
        failOn(q.lastError(), error);
        rows.clear();
    }
    return rows;
}

Row Database::first(const QString& sql, const QVariantList& params, QString* error) const
{
    QSqlQuery q(connection());
    q.setForwardOnly(true);
    if (!run(q, sql, params, error))
        return Row();
    if (!q.next()) {
        if (q.lastError().isValid())
            failOn(q.lastError(), error);
        return Row();
    }
    return rowOf(q);
}

QVariant Database::scalar(const QString& sql, const QVariantList& params, QString* error) const
{
    return first(sql, params, error).value(0);
}

bool Database::exec(const QString& sql, const QVariantList& params, QString* error)
{
    if (!writeAllowed(error))
        return false;
    QSqlQuery q(connection());
    return run(q, sql, params, error);
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
    if (!writeAllowed(error))
        return false;
    QStringList cols;
    QStringList marks;
    QVariantList params;
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        cols << quoteName(it.key());
        marks << QStringLiteral("?");
        params << it.value();
    }
    const QString sql
            = cols.isEmpty() ? QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(quoteName(table))
                             : QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                                       .arg(quoteName(table), cols.join(u", "), marks.join(u", "));
    QSqlQuery q(connection());
    if (!run(q, sql, params, error))
        return false;
    if (newKey)
        *newKey = q.lastInsertId();
    return true;
}

bool Database::update(const QString& table, const QVariantMap& values, const QString& where,
                      const QVariantList& whereParams, QString* error, int* changed)
{
    if (changed)
        *changed = 0;
    if (values.isEmpty())
        return true;
    if (!writeAllowed(error))
        return false;
    QStringList sets;
    QVariantList params;
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        sets << quoteName(it.key()) + QStringLiteral(" = ?");
        params << it.value();
    }
    params += whereParams;
    QSqlQuery q(connection());
    if (!run(q,
             QStringLiteral("UPDATE %1 SET %2 WHERE %3")
                     .arg(quoteName(table), sets.join(u", "), where),
             params, error))
        return false;
    if (changed)
        *changed = q.numRowsAffected();
    return true;
}

bool Database::remove(const QString& table, const QString& where, const QVariantList& whereParams,
                      QString* error, int* changed)
{
    if (changed)
        *changed = 0;
    if (!writeAllowed(error))
        return false;
    QSqlQuery q(connection());
    if (!run(q, QStringLiteral("DELETE FROM %1 WHERE %2").arg(quoteName(table), where), whereParams,
             error))
        return false;
    if (changed)
        *changed = q.numRowsAffected();
    return true;
}

QStringList Database::tables() const
{
    QStringList names;
    for (const Row& r :
         select(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' "
                               "AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY rowid")))
        names << r.text(QStringLiteral("name"));
    return names;
}

QList<ColumnInfo> Database::columns(const QString& table) const
{
    QList<ColumnInfo> cols;
    static const QRegularExpression typeRe(
            QStringLiteral("^\\s*([A-Za-z ]*?)\\s*(?:\\((\\d+)\\))?\\s*$"));
    for (const Row& r :
         select(QStringLiteral("SELECT name, type FROM pragma_table_info(?)"), {table})) {
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
    if (m_inTransaction)
        return fail(Failure::Other, QStringLiteral("A transaction is already running."), error);
    m_inTransaction = exec(QStringLiteral("BEGIN IMMEDIATE"), {}, error);
    return m_inTransaction;
}

bool Database::commit(QString* error)
{
    if (!m_inTransaction)
        return false;
    QSqlQuery q(connection());
    if (!run(q, QStringLiteral("COMMIT"), {}, error)) {
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
    QSqlQuery q(connection());
    q.exec(QStringLiteral("ROLLBACK"));
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

// --- files before they are opened ---

FileAccess fileAccess(const QString& path)
{
    FileAccess a;
    a.exists = QFileInfo::exists(path);
    if (!a.exists)
        return a;
    const QString folder = QFileInfo(path).absolutePath();
    a.readable = allowed(path, R_OK) && allowed(folder, X_OK);
    a.writable = allowed(path, W_OK) && allowed(folder, W_OK);
    return a;
}

bool looksLikeDatabase(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = f.read(16);
    return head.isEmpty() || head == QByteArray("SQLite format 3", 16);
}

FileLook::FileLook(const QString& path, bool writable)
{
    const int flags = writable ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY;
    m_open = sqlite3_open_v2(QFile::encodeName(path).constData(), &m_db, flags, nullptr)
             == SQLITE_OK;
    if (m_open)
        sqlite3_busy_timeout(m_db, defaultBusyWaitMs.load());
}

FileLook::~FileLook()
{
    sqlite3_close(m_db);
}

Failure FileLook::failure() const
{
    return m_db ? failureOfCode(sqlite3_errcode(m_db)) : Failure::Other;
}

QString FileLook::errorText() const
{
    return QString::fromUtf8(sqlite3_errmsg(m_db));
}

bool FileLook::select(const QString& sql, const QVariantList& params, Rows* rows)
{
    rows->clear();
    if (!m_open)
        return false;
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(m_db, sql.toUtf8().constData(), -1, &st, nullptr) != SQLITE_OK) {
        sqlite3_finalize(st);
        return false;
    }
    for (int i = 0; i < params.size(); ++i) {
        const QVariant& v = params.at(i);
        if (v.isNull()) {
            sqlite3_bind_null(st, i + 1);
        } else if (v.typeId() == QMetaType::Int || v.typeId() == QMetaType::LongLong
                   || v.typeId() == QMetaType::Bool) {
            sqlite3_bind_int64(st, i + 1, v.toLongLong());
        } else if (v.typeId() == QMetaType::Double) {
            sqlite3_bind_double(st, i + 1, v.toDouble());
        } else if (v.typeId() == QMetaType::QByteArray) {
            const QByteArray b = v.toByteArray();
            sqlite3_bind_blob(st, i + 1, b.constData(), int(b.size()), SQLITE_TRANSIENT);
        } else {
            const QByteArray b = v.toString().toUtf8();
            sqlite3_bind_text(st, i + 1, b.constData(), int(b.size()), SQLITE_TRANSIENT);
        }
    }
    QStringList names;
    for (int c = 0; c < sqlite3_column_count(st); ++c)
        names << QString::fromUtf8(sqlite3_column_name(st, c));
    int rc;
    while ((rc = sqlite3_step(st)) == SQLITE_ROW) {
        QVariantList values;
        for (int c = 0; c < names.size(); ++c) {
            switch (sqlite3_column_type(st, c)) {
            case SQLITE_INTEGER:
                values << QVariant(qlonglong(sqlite3_column_int64(st, c)));
                break;
            case SQLITE_FLOAT:
                values << QVariant(sqlite3_column_double(st, c));
                break;
            case SQLITE_NULL:
                values << QVariant();
                break;
            case SQLITE_BLOB:
                values << QVariant(QByteArray(static_cast<const char*>(sqlite3_column_blob(st, c)),
                                              sqlite3_column_bytes(st, c)));
                break;
            default:
                values << QVariant(
                        QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, c)),
                                          sqlite3_column_bytes(st, c)));
                break;
            }
        }
        rows->push_back(Row(names, values));
    }
    sqlite3_finalize(st);
    if (rc != SQLITE_DONE) {
        rows->clear();
        return false;
    }
    return true;
}

} // namespace platform
