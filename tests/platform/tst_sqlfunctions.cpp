#include "platform/Database.h"
#include "platform/SqlFunctions.h"

#include <algorithm>
#include <limits>
#include <unicode/ucol.h>
#include <unicode/uset.h>
#include <utility>
#include <QCollator>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

namespace {

int sign(int v)
{
    return (v > 0) - (v < 0);
}

// The order the collation HU has always had: QCollator for the Hungarian locale, letter case
// ignored.
QCollator hungarian()
{
    QCollator c(QLocale(QLocale::Hungarian, QLocale::Hungary));
    c.setCaseSensitivity(Qt::CaseInsensitive);
    c.setNumericMode(false);
    return c;
}

enum ContractionKind { Contractions, WithPrefixes, Tailored };

// The strings of ASCII characters alone that the Hungarian collator maps as one: its
// contractions, also those that depend on the text before them, or the strings among what its
// tailoring changes.
QList<QByteArray> asciiContractions(ContractionKind kind)
{
    UErrorCode status = U_ZERO_ERROR;
    UCollator* collator = ucol_open("hu_HU", &status);
    USet* set = kind == Tailored ? ucol_getTailoredSet(collator, &status) : uset_openEmpty();
    if (kind != Tailored)
        ucol_getContractionsAndExpansions(collator, set, nullptr, kind == WithPrefixes, &status);
    QList<QByteArray> texts;
    UChar buffer[64];
    for (int32_t i = 0; U_SUCCESS(status) && i < uset_getItemCount(set); ++i) {
        UChar32 start, end;
        const int32_t length = uset_getItem(set, i, &start, &end, buffer, 64, &status);
        const QByteArray text
                = QString::fromUtf16(reinterpret_cast<const char16_t*>(buffer), qMax(0, length))
                          .toUtf8();
        if (length > 0 && text.size() == length)
            texts << text;
    }
    if (U_FAILURE(status))
        qFatal("ICU: %s", u_errorName(status));
    uset_close(set);
    ucol_close(collator);
    std::sort(texts.begin(), texts.end());
    return texts;
}

} // namespace

// The text rules the program registers on its SQLite connections, checked through SQL the way
// the search screen uses them.
class tst_SqlFunctions : public QObject
{
    Q_OBJECT
    QTemporaryDir m_dir;
    platform::Database m_db;

private slots:
    void initTestCase() { QVERIFY(m_db.openUnchecked(m_dir.filePath("rules.db"), nullptr)); }

    // "left"() counts characters, not bytes, and converts its arguments as SQLite does.
    void leftCountsCharacters()
    {
        const QVariant null;
        const QVariant rows[][3]{{"Kovács", 3, "Kov"}, {"Tóth", 2, "Tó"},    {"€ 100", 1, "€"},
                                 {"😀ab", 2, "😀a"},     {"e\u0301x", 1, "e"}, {"ab", 5, "ab"},
                                 {"", 3, ""},          {"ab", 0, ""},        {"ab", -1, ""},
                                 {"abc", "2", "ab"},   {12345, 2, "12"},     {null, 2, null},
                                 {"ab", null, null}};
        for (const auto& [text, count, expected] : rows) {
            QCOMPARE(m_db.scalar("SELECT \"left\"(?, ?)", {text, count}).toString(),
                     expected.toString());
            // Text, or no value where the arguments hold none; a failed query gives neither.
            QCOMPARE(m_db.scalar("SELECT typeof(\"left\"(?, ?))", {text, count}).toString(),
                     QString(expected.isNull() ? "null" : "text"));
        }
    }

    void valReadsTheLeadingNumber()
    {
        const std::pair<QString, double> values[]{
                {"10/A", 10},
                {"A1", 0},
                {" 1 2x", 12},
                {"2.5kg", 2.5},
                {"Ödön", 0},
                // Past the integer range the value stays a (finite) number.
                {"9223372036854775807", 9223372036854775807.0},
                {QString(400, u'9'), std::numeric_limits<double>::max()}};
        for (const auto& [text, value] : values)
            QCOMPARE(m_db.scalar("SELECT val(?)", {text}).toDouble(), value);
    }

    void collationOrder_data()
    {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<int>("expected");
        auto row = [](const char* name, const QString& a, const QString& b, int expected) {
            QTest::newRow(name) << a << b << expected;
        };
        row("case ignored", "KOVÁCS", "kovács", 0);
        row("accent kept", "kar", "kár", -1);
        row("ö after o", "Oszkár", "Ödön", -1);
        row("cs after c", "Cukor", "Csaba", -1);
        row("cs, one letter", "cs", "cz", 1);
        row("cS, two letters", "cS", "cz", -1);
        row("doubled cs", "ccs", "cscs", 0);
        row("control character ignored", "a\u0001b", "ab", 0);
        row("prefix first", "Kov", "Kovács", -1);
        row("digits before letters", "9", "a", -1);
    }

    void collationOrder()
    {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(int, expected);
        QCOMPARE(sign(hungarian().compare(a, b)), expected);
        QCOMPARE(sign(platform::compareHu(a.toUtf8(), b.toUtf8())), expected);
        QCOMPARE(sign(platform::compareHu(b.toUtf8(), a.toUtf8())), -expected);
        const QString sql = QStringLiteral("SELECT (? COLLATE HU > ?) - (? COLLATE HU < ?)");
        QCOMPARE(m_db.scalar(sql, {a, b, a, b}).toInt(), expected);
    }

    void collationAgreesWithQCollator_data()
    {
        QTest::addColumn<QStringList>("pieces");
        const QStringList digraphs
                = QString("c s z d g y l n t C S Z D G Y L N T a k o").split(' ');
        // Every contraction of ASCII letters the collator has (cs, ccs, Ccs, CCS, dzs, ...) and
        // the letters alone.
        QStringList contractions = QString("c s z d g y l n t C S Z D G Y L N T").split(' ');
        for (const QByteArray& c : asciiContractions(Contractions))
            contractions << QString::fromLatin1(c);
        const QStringList punctuation = QStringList{"\u0001", "\u001f", "\u007f", "\t", "\n", " "}
                                        + QString("- _ . , ' ~ [ 0 1 9 a c s").split(' ');
        const QStringList accents = QString("á Á é ö Ö ő Ő ü ű Ű o u a e c s z").split(' ')
                                    + QStringList{"\u0301", "\u0308", "\u0323", "\u0327"};
        QStringList allAscii;
        for (int c = 0; c < 128; ++c)
            allAscii << QString(QChar(c));
        QTest::newRow("digraphs, mixed case") << digraphs;
        QTest::newRow("every contraction") << contractions;
        QTest::newRow("control characters, punctuation") << punctuation;
        QTest::newRow("all of ASCII") << allAscii + contractions;
        QTest::newRow("accents") << accents;
        QTest::newRow("everything") << digraphs + contractions + punctuation + accents
                                               + QStringList{"€", "😀", "ß", "ø"};
    }

    void collationAgreesWithQCollator()
    {
        QFETCH(QStringList, pieces);
        // Every piece alone, then random texts of up to eight pieces with every prefix of each, as
        // "left"() cuts them. A prefix is handed over as SQLite hands it: the start of a longer
        // text, with no end mark.
        QStringList texts;
        QList<QByteArray> storage;
        QList<QByteArrayView> utf8;
        auto add = [&](const QString& text) {
            storage << text.toUtf8();
            const QList<uint> chars = text.toUcs4();
            for (int length = qMin(1, int(chars.size())); length <= chars.size(); ++length) {
                texts << QString::fromUcs4(reinterpret_cast<const char32_t*>(chars.constData()),
                                           length);
                utf8 << QByteArrayView(storage.last().constData(), texts.last().toUtf8().size());
            }
        };
        add(QString());
        for (const QString& piece : pieces)
            add(piece);
        QRandomGenerator random(20240611);
        for (int i = 0; i < 150; ++i) {
            QString text;
            for (int n = int(random.bounded(9)); n > 0; --n)
                text += pieces.at(int(random.bounded(int(pieces.size()))));
            add(text);
        }
        const QCollator reference = hungarian();
        QStringList differences;
        auto differ = [&](int i, int j, const char* how, int expected) {
            if (differences.size() < 10)
                differences << QString::fromLatin1(
                        how + (": " + utf8.at(i).toByteArray().toPercentEncoding()) + " : "
                        + utf8.at(j).toByteArray().toPercentEncoding() + " should be "
                        + QByteArray::number(expected));
        };
        for (int i = 0; i < texts.size(); ++i) {
            for (int j = 0; j < texts.size(); ++j) {
                const int expected = sign(reference.compare(texts.at(i), texts.at(j)));
                if (sign(platform::compareHu(utf8.at(i), utf8.at(j))) != expected)
                    differ(i, j, "compareHu", expected);
                // Texts of ASCII characters alone are compared from the weight table, exactly.
                const bool ascii = !texts.at(i).isEmpty() && !texts.at(j).isEmpty()
                                   && utf8.at(i).size() == texts.at(i).size()
                                   && utf8.at(j).size() == texts.at(j).size();
                int fast = 0;
                if (ascii
                    && (!platform::compareHuAscii(utf8.at(i), utf8.at(j), &fast)
                        || sign(fast) != expected))
                    differ(i, j, "ASCII weights", expected);
            }
        }
        QVERIFY2(differences.isEmpty(), qPrintable(differences.join('\n')));
    }

    void asciiContractionsAreTailored()
    {
        // The ASCII weights take the contractions from what the Hungarian tailoring changes and
        // cut texts into them without looking back: on this ICU no other contraction of ASCII
        // characters exists, nor one that depends on the text before it.
        const QList<QByteArray> contractions = asciiContractions(Contractions);
        QVERIFY(contractions.contains("ddzs") && contractions.contains("CCS"));
        QCOMPARE(asciiContractions(WithPrefixes), contractions);
        QCOMPARE(asciiContractions(Tailored), contractions);
    }
};

QTEST_GUILESS_MAIN(tst_SqlFunctions)
#include "tst_sqlfunctions.moc"
