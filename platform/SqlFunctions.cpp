#include "platform/SqlFunctions.h"

#include <cstring>
#include <memory>
#include <sqlite3.h>
#include <unicode/ucol.h>
#include <QStringView>

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
    return digits.toDouble();
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
    if (aLength == bLength && std::memcmp(a, b, size_t(aLength)) == 0)
        return 0;
    UErrorCode status = U_ZERO_ERROR;
    const int result = ucol_strcollUTF8(collator, a, aLength, b, bLength, &status);
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
    if (v == double(qint64(v)))
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

bool registerTextRules(sqlite3* handle, QString* error)
{
    // Every connection has its own collator, so connections in other threads never share one.
    UCollator* collator = openHuCollator();
    if (!collator) {
        if (error)
            *error = QStringLiteral("The Hungarian collation is not available.");
        return false;
    }
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
