#include "search/DateShape.h"

namespace search {

QString dateFilter(const QString& typed)
{
    QString text = typed;
    if (text.size() > 1 && (text.endsWith(u'.') || text.endsWith(u'/')))
        text = text.chopped(1).trimmed();
    const int n = int(text.size());
    return n == 4 || n == 7 || n == 10 ? text : QString();
}

QString shapeTypedDate(const QString& text)
{
    // The lengths count UTF-16 units, as the field does.
    const int n = int(text.size());
    if (n == 0)
        return text;
    const QChar last = text.back();
    if (n == 4 || n == 7)
        return last.isDigit() ? text + u'.' : text.chopped(1);
    if (last.isDigit())
        return text;
    if ((last == u'.' || last == u'/') && (n == 5 || n == 8))
        return text;
    return text.chopped(1);
}

} // namespace search
