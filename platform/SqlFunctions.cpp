#include "platform/SqlFunctions.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>
#include <memory>
#include <sqlite3.h>
#include <unicode/ucol.h>
#include <unicode/ucoleitr.h>
#include <unicode/uset.h>
#include <QList>
#include <QStringView>
#include <QVarLengthArray>

namespace platform {

double leadingNumber(const QString& text)
{
    // Blanks are skipped anywhere in the number, as the office's old engine did: " 1 2" is 12.
    QString digits;
    bool seenDigit = false;
    bool seenPoint = false;
    int i = 0;
    const int n = int(text.size());
    while (i < n && text.at(i).isSpace())
        ++i;
    if (i < n && (text.at(i) == u'-' || text.at(i) == u'+'))
        digits += text.at(i++);
    for (; i < n; ++i) {
        const QChar c = text.at(i);
        if (c >= u'0' && c <= u'9') {
            digits += c;
            seenDigit = true;
        } else if (c == u'.' && !seenPoint) {
            digits += c;
            seenPoint = true;
        } else if (c == u' ' || c == u'\t') {
            continue;
        } else {
            break;
        }
    }
    if (!seenDigit)
        return 0;
    // A run of digits too long for a number gives the largest one rather than infinity.
    const double value = digits.toDouble();
    return std::isfinite(value) ? value : std::copysign(std::numeric_limits<double>::max(), value);
}

namespace {

// The collator behind the sort keys: Hungarian rules with letter case ignored and accents kept,
// the settings QCollator uses for the collation HU.
UCollator* keyCollator()
{
    thread_local struct Holder
    {
        UCollator* collator = nullptr;
        Holder()
        {
            UErrorCode status = U_ZERO_ERROR;
            collator = ucol_open("hu_HU", &status);
            if (U_SUCCESS(status))
                ucol_setStrength(collator, UCOL_SECONDARY);
        }
        ~Holder() { ucol_close(collator); }
    } holder;
    return holder.collator;
}

} // namespace

QByteArray huSortKey(QStringView text)
{
    UCollator* collator = keyCollator();
    if (!collator)
        return QByteArray();
    const auto* chars = reinterpret_cast<const UChar*>(text.utf16());
    const int length = int(text.size());
    QByteArray key(64, Qt::Uninitialized);
    int needed = ucol_getSortKey(collator, chars, length, reinterpret_cast<uint8_t*>(key.data()),
                                 int(key.size()));
    if (needed > key.size()) {
        key.resize(needed);
        needed = ucol_getSortKey(collator, chars, length, reinterpret_cast<uint8_t*>(key.data()),
                                 int(key.size()));
    }
    // The key ends in a zero byte that adds nothing to the order.
    key.resize(qMax(0, needed - 1));
    return key;
}

namespace {

// The collator of the collation HU: Hungarian rules with letter case ignored and accents kept,
// set up as QCollator sets up ICU for the Hungarian locale when told to ignore case.
UCollator* openHuCollator()
{
    UErrorCode status = U_ZERO_ERROR;
    UCollator* collator = ucol_open("hu_HU", &status);
    if (U_FAILURE(status))
        return nullptr;
    ucol_setAttribute(collator, UCOL_NORMALIZATION_MODE, UCOL_ON, &status);
    ucol_setAttribute(collator, UCOL_STRENGTH, UCOL_SECONDARY, &status);
    ucol_setAttribute(collator, UCOL_NUMERIC_COLLATION, UCOL_OFF, &status);
    ucol_setAttribute(collator, UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE, &status);
    if (U_FAILURE(status)) {
        ucol_close(collator);
        return nullptr;
    }
    return collator;
}

// Room for the ASCII contractions of the collator: their length and number.
constexpr int maxContraction = 8;
constexpr int maxContractions = 255;

// The collator's weights for texts made of ASCII characters alone, read once from ICU so that
// such texts are compared without calling ICU for every pair.
//
// Under the Hungarian rules an ASCII character is one collation element, or none for the
// control characters ICU ignores; the letter pairs cs, dz, dzs, gy, ly, ny, sz, ty, zs (written
// as xy, Xy or XY, never xY) are one element each, and their doubled forms (ccs, Ccs, CCS and
// so on) are two, equal to the pair written twice. Every one of these elements has the common
// secondary weight, so at secondary strength two ASCII texts compare as the sequences of their
// primary weights do: the first different weight decides, and a text that ends first comes
// first. The text is cut into elements the way ICU cuts it: at each position the longest
// contraction that matches, otherwise the single character.
//
// The table is built from what the collator reports and is used only if every element has that
// simple form; otherwise ICU compares every pair.
class AsciiWeights
{
public:
    static const AsciiWeights& instance()
    {
        static const AsciiWeights weights;
        return weights;
    }

    // Compares two texts when both are ASCII; false leaves the comparison to ICU.
    bool compare(const char* a, int aLength, const char* b, int bLength, int* result) const
    {
        if (!m_ready || !isAscii(a, aLength) || !isAscii(b, bLength))
            return false;
        Elements x(*this, a, aLength);
        Elements y(*this, b, bLength);
        for (;;) {
            const quint16 p = x.next();
            const quint16 q = y.next();
            if (p != q) {
                *result = p < q ? -1 : 1;
                return true;
            }
            if (p == 0) {
                *result = 0;
                return true;
            }
        }
    }

private:
    // A character: its primary weight (0 when ignorable) and the contractions that start with
    // it.
    struct Character
    {
        quint16 primary = 0;
        quint8 firstContraction = 0;
        quint8 contractions = 0;
    };

    // A contraction: its characters and the primary weights of its one or two elements.
    struct Contraction
    {
        char text[maxContraction];
        int length = 0;
        quint16 primaries[2] = {0, 0};
        int count = 0;

        // Whether the text at pos starts with the contraction; its first character is the one
        // the contraction was looked up by.
        bool matches(const char* pos, const char* end) const
        {
            if (end - pos < length)
                return false;
            for (int i = 1; i < length; ++i) {
                if (pos[i] != text[i])
                    return false;
            }
            return true;
        }
    };

    // The primary weights of a text one by one, 0 at its end.
    class Elements
    {
    public:
        Elements(const AsciiWeights& weights, const char* text, int length)
            : m_weights(weights), m_pos(text), m_end(text + length)
        {
        }
        quint16 next()
        {
            if (m_pending) {
                const quint16 p = m_pending;
                m_pending = 0;
                return p;
            }
            while (m_pos < m_end) {
                const Character& c = m_weights.m_characters[uchar(*m_pos)];
                const Contraction* k = m_weights.m_contractions + c.firstContraction;
                const Contraction* kEnd = k + c.contractions;
                for (; k < kEnd && !k->matches(m_pos, m_end); ++k) { }
                if (k == kEnd) {
                    ++m_pos;
                    if (c.primary)
                        return c.primary;
                    continue;
                }
                m_pos += k->length;
                if (k->count == 2)
                    m_pending = k->primaries[1];
                return k->primaries[0];
            }
            return 0;
        }

    private:
        const AsciiWeights& m_weights;
        const char* m_pos;
        const char* m_end;
        quint16 m_pending = 0;
    };

    static bool isAscii(const char* text, int length)
    {
        uchar bits = 0;
        for (int i = 0; i < length; ++i)
            bits |= uchar(text[i]);
        return bits < 0x80;
    }

    AsciiWeights()
    {
        const std::unique_ptr<UCollator, void (*)(UCollator*)> collator(openHuCollator(),
                                                                        ucol_close);
        if (!collator)
            return;
        UErrorCode status = U_ZERO_ERROR;
        const std::unique_ptr<UCollationElements, void (*)(UCollationElements*)> elements(
                ucol_openElements(collator.get(), nullptr, 0, &status), ucol_closeElements);
        if (U_FAILURE(status))
            return;
        for (int c = 0; c < 128; ++c) {
            const char text = char(c);
            quint16 primaries[2];
            const int count = readElements(elements.get(), &text, 1, primaries);
            if (count < 0 || count > 1)
                return;
            m_characters[c].primary = count == 1 ? primaries[0] : 0;
        }
        QList<QByteArray> texts;
        if (!asciiContractions(collator.get(), &texts) || texts.size() > maxContractions)
            return;
        // By first character, the longest first, as ICU takes the longest that matches.
        std::sort(texts.begin(), texts.end(), [](const QByteArray& x, const QByteArray& y) {
            return x.at(0) != y.at(0) ? x.at(0) < y.at(0) : x.size() > y.size();
        });
        int n = 0;
        for (int c = 0; c < 128; ++c) {
            m_characters[c].firstContraction = quint8(n);
            for (; n < texts.size() && texts.at(n).at(0) == c; ++n) {
                Contraction& k = m_contractions[n];
                k.length = int(texts.at(n).size());
                std::memcpy(k.text, texts.at(n).constData(), size_t(k.length));
                k.count = readElements(elements.get(), k.text, k.length, k.primaries);
                if (k.count < 1)
                    return;
            }
            m_characters[c].contractions = quint8(n - m_characters[c].firstContraction);
        }
        m_ready = true;
    }

    // The primary weights of a text's collation elements, ignorable ones left out: their
    // number, or -1 when there are more than two or they are not of the simple form.
    int readElements(UCollationElements* elements, const char* text, int length,
                     quint16 primaries[2])
    {
        // Continuation elements (of longer weights) have both of these tertiary bits set.
        constexpr quint32 continuation = 0xc0;
        UChar chars[maxContraction];
        for (int i = 0; i < length; ++i)
            chars[i] = UChar(text[i]);
        UErrorCode status = U_ZERO_ERROR;
        ucol_setText(elements, chars, length, &status);
        int count = 0;
        for (int32_t e; U_SUCCESS(status) && count >= 0
                        && (e = ucol_next(elements, &status)) != UCOL_NULLORDER;) {
            const auto element = quint32(e);
            if (element == 0)
                continue;
            const auto primary = quint16(element >> 16);
            const auto secondary = int((element >> 8) & 0xff);
            if (m_commonSecondary < 0)
                m_commonSecondary = secondary;
            if ((element & continuation) == continuation || primary == 0
                || secondary != m_commonSecondary || count == 2)
                count = -1;
            else
                primaries[count++] = primary;
        }
        return U_SUCCESS(status) ? count : -1;
    }

    // The contractions made of ASCII characters alone; false when they could not be listed
    // or might not fit the cutting above.
    static bool asciiContractions(const UCollator* collator, QList<QByteArray>* texts)
    {
        // They are the ASCII strings among what the Hungarian tailoring changes: the root
        // collation has none. A mapping that depends on the text before it ("|" in the rules)
        // would not fit the cutting above, nor could rules imported from elsewhere be checked.
        int32_t rulesLength = 0;
        const UChar* rules = ucol_getRules(collator, &rulesLength);
        const QStringView ruleText(rules, rulesLength);
        if (ruleText.contains(u'|') || ruleText.contains(u"[import"))
            return false;
        UErrorCode status = U_ZERO_ERROR;
        const std::unique_ptr<USet, void (*)(USet*)> set(ucol_getTailoredSet(collator, &status),
                                                         uset_close);
        if (U_FAILURE(status))
            return false;
        UChar buffer[maxContraction];
        for (int32_t i = 0, n = uset_getItemCount(set.get()); i < n; ++i) {
            UChar32 start, end;
            const int32_t length = uset_getItem(set.get(), i, &start, &end, buffer,
                                                int32_t(std::size(buffer)), &status);
            if (status == U_BUFFER_OVERFLOW_ERROR) {
                // Too long to be kept, which matters only if it is all ASCII.
                status = U_ZERO_ERROR;
                QVarLengthArray<UChar, 64> longer(length);
                uset_getItem(set.get(), i, &start, &end, longer.data(), length, &status);
                if (U_FAILURE(status)
                    || std::all_of(longer.begin(), longer.end(), [](UChar c) { return c < 0x80; }))
                    return false;
                continue;
            }
            if (U_FAILURE(status))
                return false;
            if (length > 1
                && std::all_of(buffer, buffer + length, [](UChar c) { return c < 0x80; })) {
                QByteArray text;
                for (int32_t j = 0; j < length; ++j)
                    text += char(buffer[j]);
                *texts << text;
            }
        }
        return true;
    }

    Character m_characters[128];
    Contraction m_contractions[maxContractions];
    int m_commonSecondary = -1;
    bool m_ready = false;
};

int compareUtf8(const UCollator* collator, const char* a, int aLength, const char* b, int bLength)
{
    // An empty text comes before every other one, even one that holds only characters the
    // collator ignores (a control character): QCollator, whose order this collation keeps,
    // decides that before asking ICU.
    if (aLength == 0)
        return bLength == 0 ? 0 : -1;
    if (bLength == 0)
        return 1;
    // Identical bytes are equal under any collation; the search screen's prefix conditions
    // compare many such pairs.
    if (aLength == bLength && a[0] == b[0] && std::memcmp(a, b, size_t(aLength)) == 0)
        return 0;
    int result = 0;
    if (AsciiWeights::instance().compare(a, aLength, b, bLength, &result))
        return result;
    UErrorCode status = U_ZERO_ERROR;
    result = ucol_strcollUTF8(collator, a, aLength, b, bLength, &status);
    if (U_SUCCESS(status))
        return result;
    // ICU refuses only impossible arguments; byte order still gives a consistent answer.
    const int common = std::memcmp(a, b, size_t(qMin(aLength, bLength)));
    return common != 0 ? common : aLength - bLength;
}

// SQLite hands the collation the database's UTF-8 text as stored, so nothing is converted.
int huCollation(void* collator, int aLength, const void* a, int bLength, const void* b)
{
    return compareUtf8(static_cast<const UCollator*>(collator), static_cast<const char*>(a),
                       aLength, static_cast<const char*>(b), bLength);
}

void closeHuCollator(void* collator)
{
    ucol_close(static_cast<UCollator*>(collator));
}

void valFunction(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    switch (sqlite3_value_type(argv[0])) {
    case SQLITE_NULL:
        sqlite3_result_null(ctx);
        return;
    case SQLITE_INTEGER:
        sqlite3_result_int64(ctx, sqlite3_value_int64(argv[0]));
        return;
    case SQLITE_FLOAT:
        sqlite3_result_double(ctx, sqlite3_value_double(argv[0]));
        return;
    default:
        break;
    }
    const auto* data = static_cast<const char16_t*>(sqlite3_value_text16(argv[0]));
    const int bytes = sqlite3_value_bytes16(argv[0]);
    const double v = leadingNumber(QString::fromUtf16(data, bytes / 2));
    // A whole number within the integer range is given as an integer; converting anything
    // larger would not be defined.
    if (std::abs(v) < 9.2233720368547758e18 && v == std::trunc(v))
        sqlite3_result_int64(ctx, qint64(v));
    else
        sqlite3_result_double(ctx, v);
}

// "left"(text, n): the first n characters of a text. It works on SQLite's UTF-8 text directly:
// a character is a lead byte with the continuation bytes after it, the way SQLite's own substr()
// counts, so a prefix never splits a character.
void leftFunction(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL || sqlite3_value_type(argv[1]) == SQLITE_NULL) {
        sqlite3_result_null(ctx);
        return;
    }
    const sqlite3_int64 n = sqlite3_value_int64(argv[1]);
    if (n <= 0) {
        sqlite3_result_text(ctx, "", 0, SQLITE_STATIC);
        return;
    }
    const auto* data = sqlite3_value_text(argv[0]);
    if (!data) {
        sqlite3_result_error_nomem(ctx);
        return;
    }
    const int bytes = sqlite3_value_bytes(argv[0]);
    int end = 0;
    for (sqlite3_int64 taken = 0; end < bytes && taken < n; ++taken) {
        if (data[end++] >= 0xc0) {
            while (end < bytes && (data[end] & 0xc0) == 0x80)
                ++end;
        }
    }
    sqlite3_result_text(ctx, reinterpret_cast<const char*>(data), end, SQLITE_TRANSIENT);
}

void sortKeyFunction(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL) {
        sqlite3_result_null(ctx);
        return;
    }
    const auto* data = static_cast<const QChar*>(sqlite3_value_text16(argv[0]));
    const QByteArray key = huSortKey(QStringView(data, sqlite3_value_bytes16(argv[0]) / 2));
    sqlite3_result_blob(ctx, key.constData(), int(key.size()), SQLITE_TRANSIENT);
}

} // namespace

int compareHu(QByteArrayView a, QByteArrayView b)
{
    thread_local const std::unique_ptr<UCollator, void (*)(UCollator*)> collator(openHuCollator(),
                                                                                 ucol_close);
    if (!collator)
        return 0;
    return compareUtf8(collator.get(), a.data(), int(a.size()), b.data(), int(b.size()));
}

bool compareHuAscii(QByteArrayView a, QByteArrayView b, int* result)
{
    if (a.isEmpty() || b.isEmpty())
        return false;
    return AsciiWeights::instance().compare(a.data(), int(a.size()), b.data(), int(b.size()),
                                            result);
}

bool registerTextRules(sqlite3* handle, QString* error)
{
    // Every connection has its own collator, so connections in other threads never share one.
    UCollator* collator = openHuCollator();
    if (!collator) {
        if (error)
            *error = QStringLiteral("The Hungarian collation is not available.");
        return false;
    }
    // Reading the ASCII weights takes some milliseconds, once: done with the first connection
    // rather than in the first search.
    AsciiWeights::instance();
    int rc = sqlite3_create_collation_v2(handle, "HU", SQLITE_UTF8, collator, huCollation,
                                         closeHuCollator);
    if (rc != SQLITE_OK) {
        // SQLite does not call the destroy callback when registration fails.
        ucol_close(collator);
        if (error)
            *error = QString::fromUtf8(sqlite3_errmsg(handle));
        return false;
    }
    const int flags = SQLITE_UTF16 | SQLITE_DETERMINISTIC;
    rc = sqlite3_create_function_v2(handle, "val", 1, flags, nullptr, valFunction, nullptr, nullptr,
                                    nullptr);
    if (rc == SQLITE_OK)
        rc = sqlite3_create_function_v2(handle, "left", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC,
                                        nullptr, leftFunction, nullptr, nullptr, nullptr);
    if (rc == SQLITE_OK)
        rc = sqlite3_create_function_v2(handle, "hukulcs", 1, flags, nullptr, sortKeyFunction,
                                        nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK && error)
        *error = QString::fromUtf8(sqlite3_errmsg(handle));
    return rc == SQLITE_OK;
}

} // namespace platform
