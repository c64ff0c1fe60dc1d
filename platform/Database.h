#pragma once

#include <vector>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <QVariantMap>

#include <memory>

class QSqlDatabase;
class QSqlError;
class QSqlQuery;
struct sqlite3;

namespace platform {

class StructureCheck;

// One row read from the database. Column names are matched without regard to letter case,
// as the office's database has always compared names.
class Row
{
public:
    Row() = default;
    Row(QStringList names, QVariantList values);

    bool isEmpty() const { return m_names.isEmpty(); }
    int count() const { return int(m_values.size()); }
    const QStringList& names() const { return m_names; }
    bool contains(const QString& name) const { return indexOf(name) >= 0; }
    int indexOf(const QString& name) const;
    QVariant value(int index) const { return m_values.value(index); }
    QVariant value(const QString& name) const { return m_values.value(indexOf(name)); }
    // Text of a column; a Null value reads as an empty text.
    QString text(const QString& name) const { return value(name).toString(); }
    bool isNull(const QString& name) const { return value(name).isNull(); }

private:
    QStringList m_names;
    QVariantList m_values;
};

using Rows = std::vector<Row>;

// Why the engine refused a step, so that callers can tell the user what it means for him.
enum class Failure {
    None,
    Busy, // another workstation holds the file longer than the program waits
    ReadOnly, // the file or its folder may not be written
    Damaged, // the engine found the file's structure broken
    NotCausora, // not a database, or somebody else's
    Unreadable, // the file or its folder may not be read
    Missing, // no such file
    Refused, // a rule of the database refused the change (a unique key, a related record)
    Other,
};

// What an engine result code (SQLITE_BUSY, SQLITE_CORRUPT, ...) means for the program.
Failure failureOfCode(int code);

// A column as the table declares it: TEXT(15) gives type "TEXT" and size 15.
struct ColumnInfo
{
    QString name;
    QString type;
    int size = -1;
    bool operator==(const ColumnInfo& o) const
    {
        return name == o.name && type == o.type && size == o.size;
    }
};

// The one open database of a session. It owns a Qt SQL connection to a SQLite file on which
// the office's text rules are registered: the collation HU (Hungarian order, letter case
// ignored, accents kept) and the functions val() and "left"(). Every value is bound.
class Database
{
public:
    Database();
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    // Opens an existing file for reading only; isReadOnly() then tells so.
    bool openForReading(const QString& dataFile, QString* error);
    // Opens an existing file read-write.
    bool openExisting(const QString& dataFile, QString* error);
    // Opens a file read-write, making it when it is not there; used when new files are made.
    bool openUnchecked(const QString& dataFile, QString* error);
    // Ends an open that the caller's own checks of the file refused: the database stays
    // closed, lastFailure() tells the failure and error receives the text. Always false.
    bool refuse(Failure failure, const QString& text, QString* error);
    void close();
    bool isOpen() const;
    QString filePath() const { return m_filePath; }
    QString connectionName() const { return m_connectionName; }
    QSqlDatabase connection() const;

    // What the last failed step ran into.
    Failure lastFailure() const { return m_failure; }
    // True when the file was opened for reading only because it or its folder may not be
    // written; every write is then refused before it starts.
    bool isReadOnly() const { return m_readOnly; }
    // True once the engine reported the file damaged: nothing more is written into it.
    bool isDamaged() const { return m_damaged; }
    // False, with the reason, when no write may start: the file is read-only or damaged.
    bool writable(QString* error = nullptr) const { return writeAllowed(error); }
    // What an error reported by Qt SQL on this connection means; a damaged file is noted.
    Failure failureOf(const QSqlError& e) const;
    // A quick look at the file's structure (SQLite's quick_check), stopped after about budgetMs
    // milliseconds, made in the background on a connection of its own so that the program
    // is ready at once. Writes wait for it to end; when it finds damage the file is marked
    // damaged (no write starts) and the check's finished() signal says so.
    StructureCheck* startStructureCheck(int budgetMs);

    // How long a step waits for another workstation's lock before giving up with Busy. While
    // it waits, the windows keep painting but take no input.
    void setBusyWait(int ms) { m_busyWaitMs = ms; }
    int busyWait() const { return m_busyWaitMs; }
    // The wait new connections start with (tests shorten it).
    static void setDefaultBusyWait(int ms);
    static int defaultBusyWait();

    // Queries. Values are bound to ? placeholders in order.
    Rows select(const QString& sql, const QVariantList& params = {},
                QString* error = nullptr) const;
    // The same, also giving the result's column names (known even when no row is found).
    Rows select(const QString& sql, const QVariantList& params, QStringList* columnNames,
                QString* error) const;
    // The first row of the result, or an empty row.
    Row first(const QString& sql, const QVariantList& params = {}, QString* error = nullptr) const;
    QVariant scalar(const QString& sql, const QVariantList& params = {},
                    QString* error = nullptr) const;
    bool exec(const QString& sql, const QVariantList& params = {}, QString* error = nullptr);

    // Rows. Table and column names come from the program, never from the user.
    bool insert(const QString& table, const QVariantMap& values, QVariant* newKey = nullptr,
                QString* error = nullptr);
    // changed, when given, receives the number of rows the statement changed.
    bool update(const QString& table, const QVariantMap& values, const QString& where,
                const QVariantList& whereParams, QString* error = nullptr, int* changed = nullptr);
    bool remove(const QString& table, const QString& where, const QVariantList& whereParams,
                QString* error = nullptr, int* changed = nullptr);

    // Table definitions.
    QStringList tables() const;
    QList<ColumnInfo> columns(const QString& table) const;
    bool addColumn(const QString& table, const ColumnInfo& column, QString* error = nullptr);
    bool dropColumn(const QString& table, const QString& column, QString* error = nullptr);

    // Write transactions take the file's write lock at once (BEGIN IMMEDIATE), so that two
    // workstations never interleave a read-then-write sequence.
    bool begin(QString* error = nullptr);
    bool commit(QString* error = nullptr);
    void rollback();
    bool inTransaction() const { return m_inTransaction; }

    static QString quoteName(const QString& name);

private:
    bool openConnection(const QString& dataFile, bool readOnly, bool mustExist, QString* error);
    bool fail(Failure failure, const QString& text, QString* error) const;
    bool failOn(const QSqlError& e, QString* error) const;
    // Refuses a write before it starts when the file may not or must not be written.
    bool writeAllowed(QString* error) const;
    bool run(QSqlQuery& q, const QString& sql, const QVariantList& params, QString* error) const;
    static int onBusy(void* self, int count);

    QString m_connectionName;
    QString m_filePath;
    bool m_registered = false;
    bool m_inTransaction = false;
    bool m_readOnly = false;
    mutable bool m_damaged = false;
    mutable Failure m_failure = Failure::None;
    int m_busyWaitMs;
    std::unique_ptr<StructureCheck> m_check;
    qint64 m_busySinceMs = 0;
    bool m_waiting = false;
};

// Rolls back unless committed.
class Transaction
{
public:
    explicit Transaction(Database& db, QString* error = nullptr) : m_db(db)
    {
        m_active = db.begin(error);
    }
    ~Transaction()
    {
        if (m_active)
            m_db.rollback();
    }
    bool isActive() const { return m_active; }
    bool commit(QString* error = nullptr)
    {
        if (!m_active)
            return false;
        m_active = false;
        return m_db.commit(error);
    }

private:
    Database& m_db;
    bool m_active = false;
};

// A new row whose counter key is known before the row is stored: the row is inserted at once
// inside a write transaction, the columns set afterwards are written by update(), and the
// whole row disappears again if update() is never called.
class NewRow
{
public:
    NewRow(Database& db, const QString& table, const QString& keyColumn);
    ~NewRow();
    bool isValid() const { return m_key.isValid(); }
    QString error() const { return m_error; }
    QVariant key() const { return m_key; }
    void set(const QString& column, const QVariant& value) { m_values.insert(column, value); }
    bool update(QString* error = nullptr);

private:
    Database& m_db;
    QString m_table;
    QString m_keyColumn;
    QVariant m_key;
    QVariantMap m_values;
    QString m_error;
    bool m_open = false;
};

// Engine texts for the failures the program reports itself.
namespace EngineError {
QString unrecognized(const QString& path);
QString missingFile(const QString& path);
QString relatedRecords(const QString& table);
QString relatedRecordRequired(const QString& table);
QString busy();
QString readOnly();
QString damaged();
QString locked(const QString& path);
QString unreadable(const QString& path);
} // namespace EngineError

// What the file system lets the program do with a file. The permission bits count as well: a
// file they let nobody read (or write) is treated so even under an account the system would
// let through, as the office marks a file it wants left alone.
struct FileAccess
{
    bool exists = false;
    // The file may be read and its folder searched.
    bool readable = false;
    // The file and its folder may be written. The engine keeps its journal beside the file, so
    // a file in a folder it may not write is one to open for reading only.
    bool writable = false;
};
FileAccess fileAccess(const QString& path);

// True when the file starts as every SQLite database does; an empty file counts, as a new one.
bool looksLikeDatabase(const QString& path);

// A short-lived connection of its own to an existing file, for reading a few values before the
// session's connection opens the file, or without opening it at all. It waits for another
// workstation's lock as long as a new connection does.
class FileLook
{
public:
    // A writable look is opened read-write: a journal that a workstation left when it stopped
    // in the middle of a save is then rolled back by the first read, as the engine does for
    // whoever opens the file next. A look for reading only cannot roll it back; its reads are
    // then refused.
    FileLook(const QString& path, bool writable);
    ~FileLook();
    FileLook(const FileLook&) = delete;
    FileLook& operator=(const FileLook&) = delete;

    bool isOpen() const { return m_open; }
    // The rows of a query, values bound to ? placeholders in order. False on an engine error,
    // which failure() and errorText() then tell.
    bool select(const QString& sql, const QVariantList& params, Rows* rows);
    Failure failure() const;
    QString errorText() const;

private:
    sqlite3* m_db = nullptr;
    bool m_open = false;
};

// The name of the office's collation: Hungarian alphabetical order, letter case ignored.
constexpr const char* collation = "HU";

} // namespace platform
