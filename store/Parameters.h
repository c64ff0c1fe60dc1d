#pragma once

#include "store/Written.h"

#include <QVariantMap>

namespace store {

// The installation's parameters, the one row of parameterek, and the languages of nyelvek.
class Parameters
{
public:
    explicit Parameters(platform::Database& db) : m_db(db) { }

    // The parameters row with the default language's name (nyelvnev); empty when there is none.
    platform::Row read(QString* error = nullptr) const;
    // Writes the columns given into the parameters row.
    Written save(const QVariantMap& values);

    // Every language (nyelvkod, nyelvnev) in the order of its code.
    platform::Rows languages(QString* error = nullptr) const;

private:
    platform::Database& m_db;
};

} // namespace store
