#include "platform/Backup.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sqlite3.h>
#include <QFile>

namespace platform {

namespace {

// Pages copied in one step: small enough for a moving progress bar on a large register.
constexpr int pagesPerStep = 512;

// A connection of the engine's own, closed when it goes.
struct Connection
{
    sqlite3* db = nullptr;
    ~Connection() { sqlite3_close(db); }

    bool open(const QString& path, int flags)
    {
        const int rc = sqlite3_open_v2(QFile::encodeName(path).constData(), &db, flags, nullptr);
        if (rc == SQLITE_OK)
            sqlite3_busy_timeout(db, Database::defaultBusyWait());
        return rc == SQLITE_OK;
    }
    bool exec(const char* sql)
    {
        return sqlite3_exec(db, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
    }
};

FileOutcome failed(sqlite3* db, const QString& path)
{
    FileOutcome out;
    if (!db) {
        out.failure = Failure::Other;
        out.text = QStringLiteral("Out of memory");
        return out;
    }
    const int code = sqlite3_extended_errcode(db);
    out.failure = failureOfCode(code);
    if (out.failure == Failure::None)
        out.failure = Failure::Other;
    out.text = QString::fromUtf8(sqlite3_errmsg(db)) + QStringLiteral(" (") + path
               + QStringLiteral(")");
    return out;
}

} // namespace

FileOutcome copyDatabase(const QString& source, const QString& target, CopyInto into,
                         const CopyProgress& progress)
{
    Connection from;
    // Read-write, so that a save another workstation left half done is rolled back first.
    if (!from.open(source, SQLITE_OPEN_READWRITE))
        return failed(from.db, source);
    // The read transaction keeps every workstation's commit out until the copy is complete.
    if (!from.exec("BEGIN") || !from.exec("SELECT count(*) FROM sqlite_master"))
        return failed(from.db, source);

    if (into == CopyInto::NewFile) {
        // A journal left beside an old file of that name would be played into the new one.
        QFile::remove(target);
        QFile::remove(target + QStringLiteral("-journal"));
    }
    Connection to;
    const int flags = into == CopyInto::NewFile ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE
                                                : SQLITE_OPEN_READWRITE;
    if (!to.open(target, flags))
        return failed(to.db, target);

    sqlite3_backup* backup = sqlite3_backup_init(to.db, "main", from.db, "main");
    if (!backup)
        return failed(to.db, target);
    FileOutcome out;
    int rc = SQLITE_OK;
    while (rc == SQLITE_OK) {
        rc = sqlite3_backup_step(backup, pagesPerStep);
        if (rc != SQLITE_OK && rc != SQLITE_DONE)
            break;
        const int total = sqlite3_backup_pagecount(backup);
        if (progress && !progress(total - sqlite3_backup_remaining(backup), total)
            && rc != SQLITE_DONE) {
            out.cancelled = true;
            break;
        }
    }
    // Ending the copy before it is done rolls the target back to what it held.
    sqlite3_backup_finish(backup);
    from.exec("COMMIT");
    if (out.cancelled)
        return out;
    if (rc != SQLITE_DONE || sqlite3_errcode(to.db) != SQLITE_OK) {
        out = failed(to.db, target);
        if (rc != SQLITE_DONE && out.failure == Failure::Other)
            out.failure = failureOfCode(rc);
        return out;
    }
    out.done = true;
    return out;
}

FileOutcome checkIntegrity(const QString& path)
{
    Connection c;
    if (!c.open(path, SQLITE_OPEN_READONLY))
        return failed(c.db, path);
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(c.db, "PRAGMA integrity_check", -1, &st, nullptr) != SQLITE_OK) {
        sqlite3_finalize(st);
        return failed(c.db, path);
    }
    QStringList report;
    int rc;
    while ((rc = sqlite3_step(st)) == SQLITE_ROW)
        report << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)));
    sqlite3_finalize(st);
    if (rc != SQLITE_DONE)
        return failed(c.db, path);
    FileOutcome out;
    out.done = report == QStringList{QStringLiteral("ok")};
    if (!out.done) {
        out.failure = Failure::Damaged;
        out.text = report.join(u'\n');
    }
    return out;
}

bool replaceFile(const QString& from, const QString& to, QString* error)
{
    if (std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0)
        return true;
    if (error)
        *error = QString::fromLocal8Bit(std::strerror(errno)) + QStringLiteral(" (") + to
                 + QStringLiteral(")");
    return false;
}

} // namespace platform
