#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <QByteArray>
#include <QString>

namespace fuzz {

// The fuzzer's bytes as the text the functions see: UTF-8, malformed sequences replaced.
inline QString textOf(const uint8_t* data, size_t size)
{
    return QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
}

// A text for a failure report: printable ASCII as it is, every other UTF-16 unit as \uXXXX.
inline QByteArray shown(const QString& text)
{
    QByteArray out = "\"";
    for (const QChar c : text) {
        if (c.unicode() >= 0x20 && c.unicode() < 0x7f && c != u'\\' && c != u'"')
            out += char(c.unicode());
        else
            out += QByteArray("\\u") + QByteArray::number(c.unicode(), 16).rightJustified(4, '0');
    }
    return out + '"';
}

// True when every surrogate in the text is half of a pair.
inline bool wellFormed(const QString& text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        else if (text.at(i).isSurrogate())
            return false;
    }
    return true;
}

// Reports a broken property and aborts, which makes libFuzzer keep the input as a crash.
[[noreturn]] inline void fail(const char* property, const char* file, int line,
                              const QByteArray& detail)
{
    std::fprintf(stderr, "\n%s:%d: property failed: %s\n    %s\n", file, line, property,
                 detail.constData());
    std::abort();
}

} // namespace fuzz

// FUZZ_CHECK(condition, detail): detail, a QByteArray naming the values involved, is worked out
// only when the condition fails.
#define FUZZ_CHECK(condition, detail) \
    do { \
        if (!(condition)) \
            fuzz::fail(#condition, __FILE__, __LINE__, detail); \
    } while (false)
