#pragma once

#include "platform/ListQuery.h"
#include "store/Written.h"

namespace store {

// The sub-numbers of the cases, alszamok: further file numbers under a case, each with a date
// and a remark, tied to the case by its number (fougyszam). They are kept as typed; a case's
// sub-numbers stay when the case is deleted, and a new case of that number shows them again.
class SubNumbers
{
public:
    explicit SubNumbers(platform::Database& db) : m_db(db) { }

    // One sub-number of the case of that number; the texts are stored whole, as typed.
    Written add(const QString& fougyszam, const QString& alugyszam, const QString& aldatum,
                const QString& almegjegyz);

    // The sub-numbers of the case of that number (letter case ignored, as the number's key
    // does), in the order they were added.
    static platform::ListQuery list(const QString& fougyszam);

private:
    platform::Database& m_db;
};

} // namespace store
