#include "comm/Emailkuld.h"

#include "platform/Process.h"
#include "store/ErrorLog.h"

namespace comm {

void Emailkuld(const QString& address)
{
    QString error;
    if (!platform::startDetached(QStringLiteral("xdg-open"), {QStringLiteral("mailto:") + address},
                                 &error))
        store::hibanaplo(QStringLiteral("Emailkuldo"), QStringLiteral("Emailkuld"), error);
}

} // namespace comm
