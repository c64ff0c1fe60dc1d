// Fuzzes the date filter field of the search screen: the shaping after each keystroke and the
// filter the case query takes from the field.
#include "FuzzCheck.h"
#include "records/DateShape.h"

namespace {

bool isSeparator(QChar c)
{
    return c == u'.' || c == u'/';
}

// The field while characters are only typed into it: digits, with a separator after the fourth
// and after the sixth ("2024.01.15"); more digits may follow the day.
bool typedShape(const QString& field)
{
    for (qsizetype i = 0; i < field.size(); ++i) {
        const bool ok = i == 4 || i == 7 ? isSeparator(field.at(i)) : field.at(i).isDigit();
        if (!ok)
            return false;
    }
    return true;
}

// The filter taken from any text is empty or a year, a month or a day long, and it is the text
// itself or the text less a trailing separator (and the blanks around what is left).
void checkFilter(const QString& text)
{
    const QString filter = records::dateFilter(text);
    const auto detail
            = [&]() -> QByteArray { return fuzz::shown(text) + " -> " + fuzz::shown(filter); };
    const qsizetype n = filter.size();
    FUZZ_CHECK(n == 0 || n == 4 || n == 7 || n == 10, detail());
    if (n > 0)
        FUZZ_CHECK(filter == text
                           || (isSeparator(text.back()) && filter == text.chopped(1).trimmed()),
                   detail());
}

// One keystroke's shaping of any text: a separator added after a year or a month, or the last
// character taken back whole, or nothing changed. A change that adds the separator is final,
// and shaping again and again comes to rest.
void checkShape(const QString& text)
{
    const QString shaped = records::shapeTypedDate(text);
    const auto detail
            = [&]() -> QByteArray { return fuzz::shown(text) + " -> " + fuzz::shown(shaped); };
    FUZZ_CHECK(shaped.size() <= text.size() + 1, detail());
    if (shaped.size() > text.size()) {
        FUZZ_CHECK(shaped == text + u'.', detail());
        FUZZ_CHECK(records::shapeTypedDate(shaped) == shaped, detail());
    } else if (shaped != text) {
        FUZZ_CHECK(text.startsWith(shaped), detail());
        const qsizetype removed = text.size() - shaped.size();
        FUZZ_CHECK(removed == 1 || (removed == 2 && text.back().isLowSurrogate()), detail());
    }
    FUZZ_CHECK(!fuzz::wellFormed(text) || fuzz::wellFormed(shaped), detail());

    QString resting = shaped;
    for (qsizetype steps = 0; steps <= text.size() + 1; ++steps) {
        const QString next = records::shapeTypedDate(resting);
        if (next == resting)
            return;
        resting = next;
    }
    fuzz::fail("shaping comes to rest", __FILE__, __LINE__, detail());
}

// Every character of the text typed into an empty field, shaped after each keystroke: the field
// keeps the typed shape, and a whole year, month or day in it is the filter.
void checkTyping(const QString& text)
{
    QString field;
    for (qsizetype i = 0; i < text.size(); ++i) {
        // A character outside the Basic Multilingual Plane is typed as its two units at once.
        field += text.at(i);
        if (text.at(i).isHighSurrogate() && i + 1 < text.size())
            field += text.at(++i);
        field = records::shapeTypedDate(field);
        const auto detail = [&]() -> QByteArray {
            return fuzz::shown(text) + " typed as " + fuzz::shown(field);
        };
        FUZZ_CHECK(typedShape(field), detail());
        const QString filter = records::dateFilter(field);
        const qsizetype n = field.size();
        if (n == 5 || n == 8)
            FUZZ_CHECK(filter == field.chopped(1), detail());
        else if (n == 10)
            FUZZ_CHECK(filter == field, detail());
        else
            FUZZ_CHECK(filter.isEmpty(), detail());
    }
}

// The ASCII digits of the text typed one by one become the date with its separators.
void checkDigits(const QString& text)
{
    QString digits;
    for (const QChar c : text) {
        if (c >= u'0' && c <= u'9')
            digits += c;
    }
    QString field;
    for (const QChar d : digits)
        field = records::shapeTypedDate(field + d);
    QString expected = digits.left(4);
    if (digits.size() >= 4)
        expected += u'.' + digits.mid(4, 2);
    if (digits.size() >= 6)
        expected += u'.' + digits.mid(6);
    FUZZ_CHECK(field == expected, fuzz::shown(digits) + " typed as " + fuzz::shown(field));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString text = fuzz::textOf(data, size);
    checkFilter(text);
    checkShape(text);
    checkTyping(text);
    checkDigits(text);
    return 0;
}
