// Fuzzes the leading number of a text, the value behind the SQL function val().
#include "FuzzCheck.h"
#include "platform/SqlFunctions.h"

#include <cmath>
#include <cstdlib>

namespace {

bool isAsciiDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

// The same number, telling 0 from -0.
bool same(double a, double b)
{
    return a == b && std::signbit(a) == std::signbit(b);
}

QByteArray shown(const QString& text, double value)
{
    return fuzz::shown(text) + " -> " + QByteArray::number(value, 'g', 17);
}

void checkValue(const QString& text, const QString& more)
{
    const double value = platform::leadingNumber(text);
    const auto detail = [&]() -> QByteArray { return shown(text, value); };
    FUZZ_CHECK(!std::isnan(value), detail());
    int digits = 0;
    for (const QChar c : text)
        digits += isAsciiDigit(c) ? 1 : 0;
    FUZZ_CHECK(std::isfinite(value), detail());
    if (digits == 0)
        FUZZ_CHECK(value == 0, detail());

    // The number ends at the first character that cannot continue it.
    const QString continued = text + u'x' + more;
    FUZZ_CHECK(same(platform::leadingNumber(continued), value),
               detail() + " / " + fuzz::shown(more));

    // Blanks may stand anywhere, in the number or around it.
    for (const qsizetype at : {qsizetype(0), text.size() / 2, text.size()}) {
        const QString spaced = QString(text).insert(at, u' ');
        FUZZ_CHECK(same(platform::leadingNumber(spaced), value),
                   detail() + " / " + fuzz::shown(spaced));
        const QString tabbed = QString(text).insert(at, u'\t');
        FUZZ_CHECK(same(platform::leadingNumber(tabbed), value),
                   detail() + " / " + fuzz::shown(tabbed));
    }

    // A sign before a number that starts at once with a digit or the point (a text without
    // digits is 0, whatever its sign).
    if (!text.isEmpty() && (isAsciiDigit(text.front()) || text.front() == u'.')) {
        FUZZ_CHECK(platform::leadingNumber(u'-' + text) == -value, detail());
        FUZZ_CHECK(platform::leadingNumber(u'+' + text) == value, detail());
    }
}

// The leading digits and point of the text, read as the C library reads a decimal number.
void checkDecimal(const QString& text)
{
    QByteArray number;
    bool point = false;
    for (const QChar c : text) {
        if (number.size() == 40 || !(isAsciiDigit(c) || (c == u'.' && !point)))
            break;
        point = point || c == u'.';
        number += char(c.unicode());
    }
    if (number.isEmpty() || number == ".")
        return;
    const double value = platform::leadingNumber(QString::fromLatin1(number));
    FUZZ_CHECK(same(value, std::strtod(number.constData(), nullptr)),
               shown(QString::fromLatin1(number), value));
}

} // namespace

// The input is split at its first NUL byte: the text read, and the text that may follow it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString input = fuzz::textOf(data, size);
    const qsizetype nul = input.indexOf(QChar(0));
    const QString text = nul < 0 ? input : input.left(nul);
    const QString more = nul < 0 ? QString() : input.mid(nul + 1);
    checkValue(text, more);
    checkDecimal(text);
    return 0;
}
