#pragma once

#include "platform/Database.h"

#include <QVariant>

// Rows for the search tests, written straight into the tables.
namespace searchtest {

inline qint64 addClient(platform::Database& db, const QVariant& name, const QVariant& place = "Budapest",
                        const QVariant& street = "Fő utca 1.", const QVariant& postcode = "1011",
                        const QVariant& country = "Magyarország")
{
    QVariant key;
    QString error;
    if (!db.insert("ugyfelek",
              {{"unev1", name}, {"uhely", place}, {"uutca", street}, {"uirsz", postcode},
               {"uorszag", country}},
              &key, &error))
        qWarning("client not stored: %s", qPrintable(error));
    return key.toLongLong();
}

inline void addCase(platform::Database& db, const QString& number, qint64 client,
                    const QVariant& type = "Polgári ügy", const QVariant& opponent = "Ellenfél Kft.",
                    const QVariant& start = "2008.01.10")
{
    QString error;
    if (!db.insert("ugyek",
                   {{"ugyszam", number}, {"ugyfelkod", client}, {"ugytipus", type},
                    {"ellnev", opponent}, {"kezdet", start}},
                   nullptr, &error))
        qWarning("case not stored: %s", qPrintable(error));
}

} // namespace searchtest
