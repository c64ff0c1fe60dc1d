#include "comm/Telhivo.h"

#include "locale/Uzenet.h"
#include "platform/SerialPort.h"
#include "session/Session.h"
#include "store/ErrorLog.h"
#include "store/Parameters.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

namespace comm {

namespace {

const QLatin1String lineSettings("1200,n,8,1");

void logFailure(const QString& error)
{
    store::hibanaplo(QStringLiteral("Telhivo"), QStringLiteral("telhivo"), error);
}

// Waits on the monotonic clock. Windows are repainted meanwhile, but no key or mouse input is
// taken, so no other command can start while the modem dials.
void blockingWait(std::chrono::milliseconds wait)
{
    const QDeadlineTimer deadline(wait);
    while (!deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        QThread::msleep(qBound(qint64(1), deadline.remainingTime(), qint64(20)));
    }
}

} // namespace

QByteArray dialCommand(bool tone, const QString& prefix, const QString& number)
{
    const QString command
            = QStringLiteral("ATD") + (tone ? u'T' : u'P') + u',' + prefix + number + u'\r';
    return command.toLatin1();
}

void telefonhiv(platform::Database& db, const QString& number, std::chrono::milliseconds wait)
{
    QString error;
    const platform::Row settings = store::Parameters(db).read(&error);
    if (settings.isEmpty()) {
        logFailure(error.isEmpty() ? QStringLiteral("No current record.") : error);
        return;
    }
    // A stored yes reads as -1; only no (0) means pulse dialling.
    const bool tone = settings.value(QStringLiteral("tonepulse")).toInt() != 0;
    const QString prefix = settings.text(QStringLiteral("elotag"));

    platform::SerialPort port;
    if (!port.open(settings.text(QStringLiteral("modemport")), lineSettings, &error)
        || !port.write(dialCommand(tone, prefix, number), &error)) {
        logFailure(error);
        return;
    }
    blockingWait(wait);
    uzenet(QStringLiteral("telefon"), platform::Notice);
    port.close();
}

} // namespace comm
