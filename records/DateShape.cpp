#include "records/DateShape.h"

#include <Qt>

namespace records {

namespace {

// The text less its last character. A character outside the Basic Multilingual Plane is two
// UTF-16 units and goes as a whole: half of it would stay in the field as a broken character.
QString withoutLastCharacter(const QString& text)
{
    const qsizetype n = text.size();
    const bool pair = n >= 2 && text.at(n - 1).isLowSurrogate() && text.at(n - 2).isHighSurrogate();
    return text.chopped(pair ? 2 : 1);
}

} // namespace

bool shapesDate(int key)
{
    switch (key) {
    case Qt::Key_Backspace:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Clear:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Pause:
    case Qt::Key_CapsLock:
        return false;
    default:
        return true;
    }
}

QString shapeTypedDate(const QString& text)
{
    // The lengths count UTF-16 units, as the field does.
    const qsizetype n = text.size();
    if (n == 0)
        return text;
    const QChar last = text.back();
    const bool digit = last >= u'0' && last <= u'9';
    if (n == 4 || n == 7)
        return digit ? text + u'.' : withoutLastCharacter(text);
    if (digit)
        return text;
    if ((last == u'.' || last == u'/') && (n == 5 || n == 8))
        return text;
    return withoutLastCharacter(text);
}

QString dateFilter(const QString& typed)
{
    QString text = typed;
    if (text.size() > 1 && (text.endsWith(u'.') || text.endsWith(u'/')))
        text = text.chopped(1).trimmed();
    const qsizetype n = text.size();
    return n == 4 || n == 7 || n == 10 ? text : QString();
}

} // namespace records
