#include "session/Jog.h"

#include "locale/Uzenet.h"
#include "session/Session.h"

bool jogos(Right right, QWidget* parent)
{
    return jogos(int(right), parent);
}

bool jogos(int position, QWidget* parent)
{
    if (Session::instance().hasRight(position))
        return true;
    uzenet(QStringLiteral("nincsjog"), platform::Notice, parent);
    return false;
}
