#pragma once

#include <optional>
#include <QDate>
#include <QString>

namespace cases {

// A case's start and end dates are typed and kept as text "yyyy.mm.dd" (typed with the aid of
// records/DateShape.h).

// The date the text names, read by position: year = characters 1 to 4, month = 6 and 7, day =
// 9 and 10, whatever stands between them. A month or day out of range carries over into the
// next month or year (2007.02.30 is 2007.03.02, 2007.13.01 is 2008.01.01). None when a part
// is not a number; an invalid date for the year 0.
std::optional<QDate> readDate(const QString& text);

QString dateText(const QDate& date);

// The last date a case accepts, and the first: a year of fewer than four digits is a typing
// error, not a date of the office.
QDate lastDate();
QDate firstDate();

} // namespace cases
