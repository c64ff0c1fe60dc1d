#include "session/Jog.h"

#include "locale/Uzenet.h"
#include "session/Session.h"

bool jogos(int position, QWidget* parent)
{
    if (Session::instance().hasRight(position))
        return true;
    uzenet(QStringLiteral("nincsjog"), platform::Notice, parent);
    return false;
}
