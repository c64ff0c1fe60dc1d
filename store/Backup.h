#pragma once

#include "platform/Backup.h"

#include <QDateTime>
#include <QString>

namespace store {

// Backup files of the data file (*.bck) and their restore, while other workstations keep
// working on the register.
class Backup
{
public:
    enum Result {
        Done,
        Cancelled,
        Failed, // the engine or the file system failed; failure and text say how
        NotCausora, // the file is no data file of this program (or not one of this office)
        Damaged, // the file's structure is broken
    };
    struct Outcome
    {
        Result result = Failed;
        platform::Failure failure = platform::Failure::None;
        QString text;
        bool done() const { return result == Done; }
    };

    Backup(const QString& dataFile, const QString& accountFile)
        : m_dataFile(dataFile), m_accountFile(accountFile)
    {
    }

    // Copies the data file to target as one consistent state of the register, written under a
    // working name beside it, checked, and renamed to target only when the check finds it sound.
    Outcome save(const QString& target, const platform::CopyProgress& progress = {}) const;

    // Whether the file can be restored: a data file of this program, opened with the office's
    // credentials, whose structure is sound. Nothing is written into it.
    Outcome check(const QString& candidate) const;

    // Restores candidate into the data file: a checked copy of it is written into the data file
    // through the engine, after a copy of the current data file has been kept at safetyCopy.
    // When anything fails the data file is left as it was. An empty safetyCopy keeps no copy
    // (for putting a kept copy back).
    Outcome restore(const QString& candidate, const QString& safetyCopy,
                    const platform::CopyProgress& progress = {}) const;

    // Where the copy of the data file made before a restore is kept: beside it, named with the
    // date and time, so that it is offered among the backup files.
    static QString safetyCopyPath(const QString& dataFile, const QDateTime& when);

    // The working name a backup is written under until it is complete and checked.
    static QString workingPath(const QString& target);

private:
    QString m_dataFile;
    QString m_accountFile;
};

} // namespace store
