#pragma once

#include "store/Written.h"

#include <QStringList>
#include <QVariantMap>

namespace store {

// The users, felhasznalo. The table has no key column of its own, so a user is named by the
// row's rowid (read as "kulcs"). A login name belongs to one user only, letter case ignored, as
// the login looks names up.
class Users
{
public:
    explicit Users(platform::Database& db) : m_db(db) { }

    // Every user in the order of the name, with kulcs and the language's name (nyelvnev).
    platform::Rows list(QString* error = nullptr) const;
    platform::Row find(const QVariant& kulcs, QString* error = nullptr) const;
    // The user of a login name, letter case ignored.
    platform::Row findByLogin(const QString& loginName, QString* error = nullptr) const;

    // A new user; Exists when another user has the login name.
    Written add(const QVariantMap& values);
    // Changes every column given; Exists when another user has the login name, Gone when the
    // user is no longer there.
    Written change(const QVariant& kulcs, const QVariantMap& values);
    // Deletes the user; InUse when he is the only one, as the register always keeps one.
    Written remove(const QVariant& kulcs);

    // The office's lawyers, the choices for a user's default lawyer.
    QStringList lawyerNames(QString* error = nullptr) const;

private:
    // Inside the write transaction: whether a user other than kulcs has the login name.
    bool loginTaken(const QVariant& loginName, const QVariant& kulcs, QString* error) const;

    platform::Database& m_db;
};

} // namespace store
