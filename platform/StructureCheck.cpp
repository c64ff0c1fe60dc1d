#include "platform/StructureCheck.h"

#include <condition_variable>
#include <mutex>
#include <sqlite3.h>
#include <QElapsedTimer>
#include <QFile>
#include <QMetaObject>

namespace platform {

namespace {

// Interrupts a connection when the budget runs out, unless the check ended before.
class Deadline
{
public:
    Deadline(sqlite3* db, int ms)
        : m_thread([this, db, ms] {
            std::unique_lock<std::mutex> lock(m_mutex);
            if (!m_done.wait_for(lock, std::chrono::milliseconds(ms), [this] { return m_over; }))
                sqlite3_interrupt(db);
        })
    {
    }
    ~Deadline()
    {
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_over = true;
        }
        m_done.notify_all();
        m_thread.join();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_done;
    bool m_over = false;
    std::thread m_thread;
};

} // namespace

StructureCheck::StructureCheck(const QString& file, int budgetMs, QObject* parent)
    : QObject(parent), m_thread([this, file, budgetMs] { run(file, budgetMs); })
{
}

StructureCheck::~StructureCheck()
{
    if (m_thread.joinable())
        m_thread.join();
}

void StructureCheck::run(const QString& file, int budgetMs)
{
    QStringList problems;
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(QFile::encodeName(file).constData(), &db, SQLITE_OPEN_READONLY, nullptr)
        == SQLITE_OK) {
        sqlite3_busy_timeout(db, budgetMs);
        Deadline deadline(db, budgetMs);
        sqlite3_stmt* st = nullptr;
        if (sqlite3_prepare_v2(db, "PRAGMA quick_check(10)", -1, &st, nullptr) == SQLITE_OK) {
            int rc;
            while ((rc = sqlite3_step(st)) == SQLITE_ROW)
                problems << QString::fromUtf8(
                        reinterpret_cast<const char*>(sqlite3_column_text(st, 0)));
            const int code = rc & 0xff;
            // Damage that stops the check itself counts as damage; running out of time or
            // meeting a lock does not.
            if (code == SQLITE_CORRUPT || code == SQLITE_NOTADB)
                problems << QString::fromUtf8(sqlite3_errmsg(db));
        }
        sqlite3_finalize(st);
    }
    sqlite3_close(db);
    m_damaged = !problems.isEmpty() && problems != QStringList{QStringLiteral("ok")};
    m_report = problems.join(u' ');
    m_finished = true;
    QMetaObject::invokeMethod(
            this,
            [this] {
                if (m_reported)
                    return;
                m_reported = true;
                emit finished(m_damaged, m_report);
            },
            Qt::QueuedConnection);
}

bool StructureCheck::wait()
{
    if (m_thread.joinable())
        m_thread.join();
    // The caller that waited tells the user itself; the signal is not sent after this.
    m_reported = true;
    return !m_damaged;
}

} // namespace platform
