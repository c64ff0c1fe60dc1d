#include "store/SubNumbers.h"

namespace store {

namespace {

// A field left empty is stored as an empty text, not as no value: the sub-number's row keeps
// what was typed.
QVariant typed(const QString& text)
{
    return text.isNull() ? QVariant(QString(QLatin1String(""))) : QVariant(text);
}

} // namespace

Written SubNumbers::add(const QString& fougyszam, const QString& alugyszam, const QString& aldatum,
                        const QString& almegjegyz)
{
    QString error;
    if (!m_db.insert(QStringLiteral("alszamok"),
                     {{QStringLiteral("fougyszam"), typed(fougyszam)},
                      {QStringLiteral("alugyszam"), typed(alugyszam)},
                      {QStringLiteral("aldatum"), typed(aldatum)},
                      {QStringLiteral("almegjegyz"), typed(almegjegyz)}},
                     nullptr, &error))
        return Written::failed(m_db, error);
    return {Written::Stored, platform::Failure::None, QString(), alugyszam};
}

platform::ListQuery SubNumbers::list(const QString& fougyszam)
{
    platform::ListQuery q;
    q.columns = QStringLiteral("xx, fougyszam, alugyszam, aldatum, almegjegyz");
    q.from = QStringLiteral("alszamok");
    q.where = QStringLiteral("fougyszam = ? COLLATE NOCASE");
    q.params = {fougyszam};
    q.order = QStringList{QStringLiteral("alszamok.rowid")};
    return q;
}

} // namespace store
