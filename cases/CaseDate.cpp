#include "cases/CaseDate.h"

namespace cases {

namespace {

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
