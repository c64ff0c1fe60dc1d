#include "cases/CaseDate.h"

#include <Qt>

namespace cases {

namespace {

// The text less its last character; a character outside the Basic Multilingual Plane goes
// whole, not half of it.
QString withoutLastCharacter(const QString& text)
{
    const qsizetype n = text.size();
    const bool pair = n >= 2 && text.at(n - 1).isLowSurrogate() && text.at(n - 2).isHighSurrogate();
    return text.chopped(pair ? 2 : 1);
}

std::optional<int> number(const QString& part)
{
    if (part.isEmpty())
        return std::nullopt;
    for (const QChar c : part) {
        if (c < u'0' || c > u'9')
            return std::nullopt;
    }
    return part.toInt();
}

} // namespace

QString shapeTypedDate(const QString& text)
{
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

std::optional<QDate> readDate(const QString& text)
{
    const auto year = number(text.mid(0, 4));
    const auto month = number(text.mid(5, 2));
    const auto day = number(text.mid(8, 2));
    if (!year || !month || !day)
        return std::nullopt;
    // The calendar has no year 0; such a text is no date of the office (an invalid date).
    if (*year == 0)
        return QDate();
    // From the first of the year on by whole months, then days: the carry-over of a calendar.
    return QDate(*year, 1, 1).addMonths(*month - 1).addDays(*day - 1);
}

QString dateText(const QDate& date)
{
    return date.toString(QStringLiteral("yyyy.MM.dd"));
}

QDate lastDate()
{
    return QDate(2099, 1, 1);
}

QDate firstDate()
{
    return QDate(1000, 1, 1);
}

} // namespace cases
