#include "platform/SqlFunctions.h"

#include <QCollator>
#include <QLocale>
#include <QStringView>
#include <sqlite3.h>
#include <unicode/ucol.h>

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
    int needed = ucol_getSortKey(collator, chars, length,
                                 reinterpret_cast<uint8_t*>(key.data()), int(key.size()));
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

int compareHu(void* arg, int len1, const void* s1, int len2, const void* s2)
{
    auto* collator = static_cast<QCollator*>(arg);
    const QStringView a(static_cast<const QChar*>(s1), len1 / 2);
    const QStringView b(static_cast<const QChar*>(s2), len2 / 2);
    return collator->compare(a, b);
}

void destroyCollator(void* arg)
{
    delete static_cast<QCollator*>(arg);
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

bool registerTextRules(sqlite3* handle, QString* error)
{
    auto* collator = new QCollator(QLocale(QLocale::Hungarian, QLocale::Hungary));
    collator->setCaseSensitivity(Qt::CaseInsensitive);
    collator->setNumericMode(false);
    int rc = sqlite3_create_collation_v2(handle, "HU", SQLITE_UTF16_ALIGNED, collator, compareHu,
                                         destroyCollator);
    if (rc != SQLITE_OK) {
        // SQLite does not call the destroy callback when registration fails.
        delete collator;
        if (error)
            *error = QString::fromUtf8(sqlite3_errmsg(handle));
        return false;
    }
    const int flags = SQLITE_UTF16 | SQLITE_DETERMINISTIC;
    rc = sqlite3_create_function_v2(handle, "val", 1, flags, nullptr, valFunction, nullptr,
                                    nullptr, nullptr);
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
