#include "search/DateShape.h"

namespace search {

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
        return last.isDigit() ? text + u'.' : withoutLastCharacter(text);
    if (last.isDigit())
        return text;
    if ((last == u'.' || last == u'/') && (n == 5 || n == 8))
        return text;
    return withoutLastCharacter(text);
}

} // namespace search
