#pragma once

#include "platform/Database.h"

#include <functional>
#include <QString>

namespace platform {

// Pages copied so far and in all; returning false stops the copy.
using CopyProgress = std::function<bool(int done, int total)>;

struct FileOutcome
{
    bool done = false;
    bool cancelled = false;
    Failure failure = Failure::None;
    QString text;
};

enum class CopyInto {
    NewFile, // the target is made (an existing file of that name is replaced)
    LiveFile, // the target is a data file that other workstations may have open
};

// Copies a database file page by page through the engine's online backup. The source is held
// in one read transaction for the whole copy, so the copy is one consistent state of it: a
// workstation that saves meanwhile waits for the copy (up to its busy wait) instead of being
// copied half. A live target is written in one write transaction of its own, so its other
// connections see either the old or the new content and never a mixture, and a copy that fails
// or is stopped leaves it as it was.
FileOutcome copyDatabase(const QString& source, const QString& target, CopyInto into,
                         const CopyProgress& progress = {});

// The engine's full structure check (PRAGMA integrity_check) on a connection of its own, opened
// for reading only. done is true when the file is sound; otherwise failure and text say why.
FileOutcome checkIntegrity(const QString& path);

// Puts a file in the place of another in one step (a rename), replacing it.
bool replaceFile(const QString& from, const QString& to, QString* error);

} // namespace platform
