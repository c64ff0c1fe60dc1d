#include "locale/Uzenet.h"

#include "session/Session.h"
#include "store/Catalogue.h"
#include "store/ErrorLog.h"
#include "store/Prepare.h"

QString uzenetszoveg(const QString& code)
{
    const Session& session = Session::instance();
    if (!session.catalogue)
        return store::catalogueMessage(code, session.language);
    return session.catalogue->message(code, session.language);
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
