#pragma once

#include <QString>

namespace search {

// The date filter as the case query uses it: one trailing separator dropped, and only a year
// ("yyyy"), a month ("yyyy.mm") or a whole day ("yyyy.mm.dd") kept; anything else gives "".
QString dateFilter(const QString& typed);

// The date filter field's text after one keystroke, shaped towards "yyyy.mm.dd": a separator
// follows the year and the month by itself, a digit or a separator where one belongs stays, and
// any other character just typed is taken back. Empty text stays empty.
QString shapeTypedDate(const QString& text);

} // namespace search
