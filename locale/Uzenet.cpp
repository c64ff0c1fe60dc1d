#include "locale/Uzenet.h"

#include "session/Session.h"
#include "store/ErrorLog.h"
#include "store/Prepare.h"

QString uzenetszoveg(const QString& code)
{
    const Session& session = Session::instance();
    QString error;
    const platform::Row row = session.database.first(
            QStringLiteral("SELECT uzen1, uzen2, uzen3 FROM uzenetek WHERE uzenkod = ? COLLATE HU"),
            {code}, &error);
    // A file that cannot be read still gets its message across, from the program's own copy.
    if (!error.isEmpty() || !session.database.isOpen())
        return store::catalogueMessage(code, session.language);
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

QString engineFailure(platform::Failure failure, const QString& engineText, const QString& module,
                      const QString& place, QWidget* parent)
{
    store::hibanaplo(module, place, engineText);
    QString code;
    switch (failure) {
    case platform::Failure::Busy:
        code = QStringLiteral("foglalt");
        break;
    case platform::Failure::ReadOnly:
        code = QStringLiteral("csakolvas");
        break;
    case platform::Failure::Damaged:
    case platform::Failure::NotCausora:
        code = QStringLiteral("serult");
        break;
    case platform::Failure::Refused:
        code = QStringLiteral("elutasit");
        break;
    default:
        code = QStringLiteral("adathiba");
        break;
    }
    platform::messageBox(uzenetszoveg(code), platform::ErrorNotice, QStringLiteral("Causora"),
                         parent);
    return code;
}

bool reportWrite(const store::Written& written, const QString& module, const QString& place,
                 QWidget* parent)
{
    switch (written.result) {
    case store::Written::Stored:
        return true;
    case store::Written::Gone:
        uzenet(QStringLiteral("nincsmar"), platform::Notice, parent);
        break;
    case store::Written::Exists:
        uzenet(QStringLiteral("vanmar"), platform::Notice, parent);
        break;
    case store::Written::InUse:
        uzenet(QStringLiteral("nemtorol"), platform::Notice, parent);
        break;
    case store::Written::Failed:
        engineFailure(written.failure, written.engineText, module, place, parent);
        break;
    }
    return false;
}
