#include "store/Backup.h"

#include "store/Access.h"
#include "store/Credentials.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace store {

namespace {

Backup::Outcome outcome(Backup::Result result, platform::Failure failure = platform::Failure::None,
                        const QString& text = QString())
{
    return {result, failure, text};
}

Backup::Outcome outcomeOf(const platform::FileOutcome& f)
{
    if (f.done)
        return outcome(Backup::Done);
    if (f.cancelled)
        return outcome(Backup::Cancelled);
    return outcome(Backup::Failed, f.failure, f.text);
}

// Whether the file can take the place of the data file: it opens as the program opens its data
// file, holds its parameters row, and its structure is sound.
Backup::Outcome checkFile(const QString& path, const QString& accountFile)
{
    using platform::Failure;
    {
        platform::Database db;
        QString error;
        if (!openDataFile(db, path, accountFile, databaseAccount(), databasePassword(),
                          connectText(), &error)) {
            switch (db.lastFailure()) {
            case Failure::NotCausora:
            case Failure::Refused: // a file of this program under other credentials
                return outcome(Backup::NotCausora, db.lastFailure(), error);
            case Failure::Damaged:
                return outcome(Backup::Damaged, Failure::Damaged, error);
            default:
                return outcome(Backup::Failed, db.lastFailure(), error);
            }
        }
        if (db.first(QStringLiteral("SELECT * FROM parameterek"), {}, &error).isEmpty()) {
            const Failure why = error.isEmpty() ? Failure::NotCausora : db.lastFailure();
            return outcome(why == Failure::Damaged ? Backup::Damaged : Backup::NotCausora, why,
                           error.isEmpty() ? QStringLiteral("parameterek: no row") : error);
        }
    }
    const platform::FileOutcome sound = platform::checkIntegrity(path);
    if (sound.done)
        return outcome(Backup::Done);
    return outcome(sound.failure == Failure::NotCausora ? Backup::NotCausora : Backup::Damaged,
                   sound.failure, sound.text);
}

// A copy of the file to look at or restore from, so that the file the user chose is never
// written and what is restored is exactly what was checked.
bool copyInto(const QTemporaryDir& dir, const QString& candidate, QString* working,
              Backup::Outcome* failed)
{
    *working = dir.filePath(QStringLiteral("visszatoltes.mdb"));
    if (dir.isValid() && QFile::copy(candidate, *working))
        return true;
    QFile source(candidate);
    *failed = outcome(Backup::Failed, platform::Failure::Unreadable,
                      source.open(QIODevice::ReadOnly)
                              ? QStringLiteral("Cannot copy %1").arg(candidate)
                              : source.errorString() + QStringLiteral(" (") + candidate + u')');
    return false;
}

} // namespace

QString Backup::workingPath(const QString& target)
{
    return target + QStringLiteral(".part");
}

QString Backup::safetyCopyPath(const QString& dataFile, const QDateTime& when)
{
    const QFileInfo data(dataFile);
    const QString stem
            = data.completeBaseName() + u'-' + when.toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString path = data.dir().filePath(stem + QStringLiteral(".bck"));
    // An earlier copy of the same second is kept too.
    for (int n = 2; QFileInfo::exists(path); ++n)
        path = data.dir().filePath(stem + QStringLiteral("-%1.bck").arg(n));
    return path;
}

Backup::Outcome Backup::save(const QString& target, const platform::CopyProgress& progress) const
{
    const QString working = workingPath(target);
    const Outcome copied = outcomeOf(
            platform::copyDatabase(m_dataFile, working, platform::CopyInto::NewFile, progress));
    if (copied.done()) {
        const platform::FileOutcome sound = platform::checkIntegrity(working);
        if (!sound.done) {
            QFile::remove(working);
            return outcome(Damaged, sound.failure, sound.text);
        }
        QString error;
        if (platform::replaceFile(working, target, &error))
            return outcome(Done);
        QFile::remove(working);
        return outcome(Failed, platform::Failure::Other, error);
    }
    QFile::remove(working);
    QFile::remove(working + QStringLiteral("-journal"));
    return copied;
}

Backup::Outcome Backup::check(const QString& candidate) const
{
    QTemporaryDir dir;
    QString working;
    Outcome failed;
    if (!copyInto(dir, candidate, &working, &failed))
        return failed;
    return checkFile(working, m_accountFile);
}

Backup::Outcome Backup::restore(const QString& candidate, const QString& safetyCopy,
                                const platform::CopyProgress& progress) const
{
    QTemporaryDir dir;
    QString working;
    Outcome failed;
    if (!copyInto(dir, candidate, &working, &failed))
        return failed;
    const Outcome sound = checkFile(working, m_accountFile);
    if (!sound.done())
        return sound;

    if (safetyCopy.isEmpty())
        return outcomeOf(platform::copyDatabase(working, m_dataFile, platform::CopyInto::LiveFile,
                                                progress));
    const platform::FileOutcome kept
            = platform::copyDatabase(m_dataFile, safetyCopy, platform::CopyInto::NewFile, progress);
    if (kept.cancelled) {
        QFile::remove(safetyCopy);
        return outcome(Cancelled);
    }
    if (!kept.done) {
        // A data file the engine cannot copy (a damaged one) is kept byte for byte.
        QFile::remove(safetyCopy);
        if (!QFile::copy(m_dataFile, safetyCopy))
            return outcomeOf(kept);
    }
    return outcomeOf(
            platform::copyDatabase(working, m_dataFile, platform::CopyInto::LiveFile, progress));
}

} // namespace store
