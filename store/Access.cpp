#include "store/Access.h"

#include <optional>
#include <QCryptographicHash>
#include <QRandomGenerator>
#include <QRegularExpression>

namespace store {

namespace {

// 'CAUS' and 'CAUJ' in the files' application_id: the data file and the account file.
constexpr int dataFileId = 0x43415553;
constexpr int accountFileId = 0x4341554A;

QString passwordHash(const QString& salt, const QString& password)
{
    return QString::fromLatin1(
            QCryptographicHash::hash((salt + password).toUtf8(), QCryptographicHash::Sha256)
                    .toHex());
}

QString newSalt()
{
    const quint64 a = QRandomGenerator::system()->generate64();
    const quint64 b = QRandomGenerator::system()->generate64();
    return QString::number(a, 16) + QString::number(b, 16);
}

// The data file's password in a connect text such as "pwd=secret;other=value".
QString passwordOfConnect(const QString& connect)
{
    static const QRegularExpression pwd(QStringLiteral("(?:^|;)\\s*pwd=([^;]*)"),
                                        QRegularExpression::CaseInsensitiveOption);
    const auto m = pwd.match(connect);
    return m.hasMatch() ? m.captured(1) : QString();
}

// The file's mark, or nothing when it cannot be read.
std::optional<int> markOf(platform::FileLook& file)
{
    platform::Rows rows;
    if (!file.select(QStringLiteral("PRAGMA application_id"), {}, &rows))
        return std::nullopt;
    return rows.empty() ? 0 : rows.front().value(0).toInt();
}

// True when the password hashes with the row's salt to the row's hash.
bool matches(const platform::Row& row, const QString& password)
{
    return !row.isEmpty()
           && passwordHash(row.text(QStringLiteral("so")), password)
                      == row.text(QStringLiteral("hash"));
}

} // namespace

QString accountOrPasswordError()
{
    return QStringLiteral("Not a valid account name or password.");
}

QString databasePasswordError()
{
    return QStringLiteral("Not a valid password.");
}

bool openDataFile(platform::Database& db, const QString& dataFile, const QString& accountFile,
                  const QString& account, const QString& accountPassword, const QString& connect,
                  QString* error)
{
    using platform::Failure;
    using platform::EngineError::unrecognized;
    db.close();
    const platform::FileAccess accountAccess = platform::fileAccess(accountFile);
    if (!accountAccess.exists)
        return db.refuse(Failure::Missing, platform::EngineError::missingFile(accountFile), error);
    const platform::FileAccess access = platform::fileAccess(dataFile);
    if (!access.exists)
        return db.refuse(Failure::Missing, platform::EngineError::missingFile(dataFile), error);
    if (!access.readable || !accountAccess.readable)
        return db.refuse(Failure::Unreadable, platform::EngineError::unreadable(dataFile), error);

    // The account file: the account and its password.
    {
        platform::FileLook f(accountFile, false);
        const std::optional<int> mark = markOf(f);
        if (!mark && f.isOpen() && f.failure() == Failure::Busy)
            return db.refuse(Failure::Busy, platform::EngineError::locked(accountFile), error);
        if (mark.value_or(0) != accountFileId)
            return db.refuse(Failure::NotCausora, unrecognized(accountFile), error);
        platform::Rows rows;
        if (!f.select(QStringLiteral("SELECT so, hash FROM fiokok WHERE nev = ?"), {account},
                      &rows))
            return db.refuse(f.failure(), f.errorText(), error);
        if (rows.empty() || !matches(rows.front(), accountPassword))
            return db.refuse(Failure::Refused, accountOrPasswordError(), error);
    }

    // The data file: the register's, and the password of the connect text.
    if (!platform::looksLikeDatabase(dataFile))
        return db.refuse(Failure::NotCausora, unrecognized(dataFile), error);
    {
        // A look that may write, where the file may be written, so that a save a workstation
        // left half done is rolled back before anything is read.
        platform::FileLook f(dataFile, access.writable);
        // What stops the first reads tells a lock, damage and a foreign file apart.
        auto refused = [&] {
            const Failure why = f.isOpen() ? f.failure() : Failure::Other;
            switch (why) {
            case Failure::Busy:
                return db.refuse(why, platform::EngineError::locked(dataFile), error);
            case Failure::Damaged:
                return db.refuse(why, f.errorText(), error);
            case Failure::Unreadable:
                return db.refuse(why, platform::EngineError::unreadable(dataFile), error);
            default:
                return db.refuse(Failure::NotCausora, unrecognized(dataFile), error);
            }
        };
        const std::optional<int> mark = markOf(f);
        if (!mark)
            return refused();
        if (*mark != dataFileId)
            return db.refuse(Failure::NotCausora, unrecognized(dataFile), error);
        platform::Rows rows;
        if (!f.select(QStringLiteral("SELECT so, hash FROM vedelem"), {}, &rows))
            return refused();
        if (rows.empty())
            return db.refuse(Failure::NotCausora, unrecognized(dataFile), error);
        if (!matches(rows.front(), passwordOfConnect(connect)))
            return db.refuse(Failure::Refused, databasePasswordError(), error);
    }
    return access.writable ? db.openExisting(dataFile, error) : db.openForReading(dataFile, error);
}

bool createAccountFile(const QString& path, const QString& account, const QString& password,
                       QString* error)
{
    platform::Database db;
    if (!db.openUnchecked(path, error))
        return false;
    const QString salt = newSalt();
    platform::Transaction t(db, error);
    return t.isActive()
           && db.exec(QStringLiteral("PRAGMA application_id = %1").arg(accountFileId), {}, error)
           && db.exec(QStringLiteral("CREATE TABLE IF NOT EXISTS fiokok "
                                     "(nev TEXT(50) NOT NULL, so TEXT(40), hash TEXT(64))"),
                      {}, error)
           && db.exec(QStringLiteral("DELETE FROM fiokok"), {}, error)
           && db.exec(QStringLiteral("INSERT INTO fiokok (nev, so, hash) VALUES (?, ?, ?)"),
                      {account, salt, passwordHash(salt, password)}, error)
           && t.commit(error);
}

bool setDatabasePassword(platform::Database& db, const QString& password, QString* error)
{
    const QString salt = newSalt();
    return db.exec(QStringLiteral("PRAGMA application_id = %1").arg(dataFileId), {}, error)
           && db.exec(QStringLiteral("CREATE TABLE IF NOT EXISTS vedelem "
                                     "(so TEXT(40), hash TEXT(64))"),
                      {}, error)
           && db.exec(QStringLiteral("DELETE FROM vedelem"), {}, error)
           && db.exec(QStringLiteral("INSERT INTO vedelem (so, hash) VALUES (?, ?)"),
                      {salt, passwordHash(salt, password)}, error);
}

} // namespace store
