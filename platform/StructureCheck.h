#pragma once

#include <atomic>
#include <memory>
#include <thread>
#include <QObject>
#include <QString>

namespace platform {

// A look at a data file's structure (SQLite's quick_check) on a connection of its own in a
// thread of its own, so that the program is ready at once however large the register is. It is
// stopped when its budget runs out: what it looked at by then is checked.
class StructureCheck : public QObject
{
    Q_OBJECT
public:
    StructureCheck(const QString& file, int budgetMs, QObject* parent = nullptr);
    ~StructureCheck() override;

    // Waits for the check to end (at most its budget). True when nothing damaged was found.
    // finished() is not sent once somebody has waited.
    bool wait();
    bool isFinished() const { return m_finished; }
    bool damaged() const { return m_damaged; }
    QString report() const { return m_report; }

signals:
    // In the thread that made the check, once it has ended, unless wait() was called first.
    void finished(bool damaged, const QString& report);

private:
    void run(const QString& file, int budgetMs);

    std::atomic<bool> m_finished{false};
    bool m_damaged = false;
    bool m_reported = false;
    QString m_report;
    // Last, so that the thread starts only once every member it writes has been made.
    std::thread m_thread;
};

} // namespace platform
