#include "store/Catalogue.h"

#include "store/Prepare.h"

namespace store {

QString Catalogue::message(const QString& code, int language) const
{
    if (language < 1 || language > 3)
        return QString();
    QString error;
    const platform::Row row = m_db.first(
            QStringLiteral("SELECT uzen1, uzen2, uzen3 FROM uzenetek WHERE uzenkod = ? COLLATE HU"),
            {code}, &error);
    if (!error.isEmpty() || !m_db.isOpen())
        return catalogueMessage(code, language);
    if (row.isEmpty())
        return code;
    return row.text(QStringLiteral("uzen%1").arg(language));
}

platform::Row Catalogue::captions(const QString& key) const
{
    return m_db.first(QStringLiteral("SELECT * FROM felirat WHERE felirkod = ? COLLATE HU"), {key});
}

} // namespace store
