#pragma once

#include "platform/ListQuery.h"
#include "store/Written.h"

#include <QStringList>

namespace store {

// The postal-code register, irsz: postal codes and places per country, each row by its key
// irszsorszam. Country names are matched as the office compares text (letter case ignored).
class PostalCodes
{
public:
    explicit PostalCodes(platform::Database& db) : m_db(db) { }

    platform::Row find(const QVariant& irszsorszam, QString* error = nullptr) const;
    // A new row; the new key is in the result.
    Written add(const QString& country, const QString& code, const QString& place);
    // Changes the row of that key; Gone when no such row is left.
    Written change(const QVariant& irszsorszam, const QString& country, const QString& code,
                   const QString& place);
    // Deletes the row of that key; Gone when it was not there.
    Written remove(const QVariant& irszsorszam);

    // The places of a postal code in a country, in the register's order.
    QStringList places(const QString& country, const QString& code, QString* error = nullptr) const;
    // The postal code of a place in a country: the first in the register's order, or empty.
    QString codeOf(const QString& country, const QString& place, QString* error = nullptr) const;

    // The register's rows, all or those of one country, by postal code. The grid's data fields
    // are IRSZ, Hely and Orszag (spelt so), and the key irszsorszam.
    static platform::ListQuery list();
    static platform::ListQuery list(const QString& country);

private:
    platform::Database& m_db;
};

} // namespace store
