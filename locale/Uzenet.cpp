#include "locale/Uzenet.h"

#include "session/Session.h"

QString uzenetszoveg(const QString& code)
{
    const Session& session = Session::instance();
    const platform::Row row = session.database.first(
            QStringLiteral("SELECT uzen1, uzen2, uzen3 FROM uzenetek WHERE uzenkod = ? COLLATE HU"),
            {code});
    if (row.isEmpty())
        return code;
    switch (session.language) {
    case 1:
        return row.text(QStringLiteral("uzen1"));
    case 2:
        return row.text(QStringLiteral("uzen2"));
    case 3:
        return row.text(QStringLiteral("uzen3"));
    default:
        return QString();
    }
}

int uzenet(const QString& code, int style, QWidget* parent)
{
    const QString title = code.compare(QLatin1String("kilep"), Qt::CaseInsensitive) == 0
            ? QStringLiteral("EXIT")
            : QString();
    return platform::messageBox(uzenetszoveg(code), style, title, parent);
}
