#include "platform/SqlFunctions.h"

#include <algorithm>
#include <unicode/ucol.h>
#include <unicode/uset.h>
#include <QCollator>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

// The text rules the program registers on its SQLite connections, checked through SQL the way
// the search screen uses them.
class tst_SqlFunctions : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void leftCountsCharacters_data();
    void leftCountsCharacters();
    void collationOrder_data();
    void collationOrder();
    void collationAgreesWithQCollator_data();
    void collationAgreesWithQCollator();
    void asciiContractionsAreTailored();

private:
    QVariant scalar(const QString& sql, const QVariantList& values);
};

namespace {

const QString connectionName = QStringLiteral("tst_sqlfunctions");

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

void tst_SqlFunctions::initTestCase()
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName);
    db.setDatabaseName(QStringLiteral(":memory:"));
    QVERIFY(db.open());
    const QVariant v = db.driver()->handle();
    QCOMPARE(v.typeName(), "sqlite3*");
    QString error;
    QVERIFY2(platform::registerTextRules(*static_cast<sqlite3* const*>(v.constData()), &error),
             qPrintable(error));
}

void tst_SqlFunctions::cleanupTestCase()
{
    QSqlDatabase::database(connectionName).close();
    QSqlDatabase::removeDatabase(connectionName);
}

QVariant tst_SqlFunctions::scalar(const QString& sql, const QVariantList& values)
{
    QSqlQuery q(QSqlDatabase::database(connectionName));
    if (!q.prepare(sql))
        qFatal("%s", qPrintable(q.lastError().text()));
    for (const QVariant& v : values)
        q.addBindValue(v);
    if (!q.exec() || !q.next())
        qFatal("%s", qPrintable(q.lastError().text()));
    return q.value(0);
}

void tst_SqlFunctions::leftCountsCharacters_data()
{
    QTest::addColumn<QVariant>("text");
    QTest::addColumn<QVariant>("count");
    QTest::addColumn<QVariant>("expected");
    const QVariant null;
    QTest::newRow("ASCII") << QVariant("Kovács") << QVariant(3) << QVariant("Kov");
    QTest::newRow("ends on an accent") << QVariant("Tóth") << QVariant(2) << QVariant("Tó");
    QTest::newRow("accents only") << QVariant("ŐŰőű") << QVariant(3) << QVariant("ŐŰő");
    QTest::newRow("three bytes") << QVariant("€ 100") << QVariant(1) << QVariant("€");
    QTest::newRow("outside the BMP") << QVariant("😀ab") << QVariant(2) << QVariant("😀a");
    QTest::newRow("combining mark") << QVariant("e\u0301x") << QVariant(1) << QVariant("e");
    QTest::newRow("whole text") << QVariant("ab") << QVariant(5) << QVariant("ab");
    QTest::newRow("empty text") << QVariant("") << QVariant(3) << QVariant("");
    QTest::newRow("none") << QVariant("ab") << QVariant(0) << QVariant("");
    QTest::newRow("negative") << QVariant("ab") << QVariant(-1) << QVariant("");
    QTest::newRow("count as text") << QVariant("abc") << QVariant("2") << QVariant("ab");
    QTest::newRow("number") << QVariant(12345) << QVariant(2) << QVariant("12");
    QTest::newRow("null text") << null << QVariant(2) << null;
    QTest::newRow("null count") << QVariant("ab") << null << null;
}

void tst_SqlFunctions::leftCountsCharacters()
{
    QFETCH(QVariant, text);
    QFETCH(QVariant, count);
    QFETCH(QVariant, expected);
    const QVariant result = scalar(QStringLiteral("SELECT \"left\"(?, ?)"), {text, count});
    QCOMPARE(result.isNull(), expected.isNull());
    if (!expected.isNull()) {
        QCOMPARE(result.toString(), expected.toString());
        QCOMPARE(scalar(QStringLiteral("SELECT typeof(\"left\"(?, ?))"), {text, count}).toString(),
                 QStringLiteral("text"));
    }
}

void tst_SqlFunctions::collationOrder_data()
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
    row("doubled CS", "CCS", "cscs", 0);
    row("doubled dzs", "Ddzs", "dzsdzs", 0);
    row("CCs, not doubled", "CCs", "cscs", -1);
    row("control character ignored", "a\u0001b", "ab", 0);
    row("control character parts cs", "c\u0001s", "cs", -1);
    row("tab counts", "a\tb", "ab", -1);
    row("empty first", "", "\u0001", -1);
    row("prefix first", "Kov", "Kovács", -1);
    row("punctuation before letters", "~", "a", -1);
    row("punctuation before digits", "[", "1", -1);
    row("digits before letters", "9", "a", -1);
    row("marks in either order", "c\u0327\u0301", "c\u0301\u0327", 0);
    row("identical", "Tóth", "Tóth", 0);
}

void tst_SqlFunctions::collationOrder()
{
    QFETCH(QString, a);
    QFETCH(QString, b);
    QFETCH(int, expected);
    QCOMPARE(sign(hungarian().compare(a, b)), expected);
    QCOMPARE(sign(platform::compareHu(a.toUtf8(), b.toUtf8())), expected);
    QCOMPARE(sign(platform::compareHu(b.toUtf8(), a.toUtf8())), -expected);
    const QString sql = QStringLiteral("SELECT (? COLLATE HU > ?) - (? COLLATE HU < ?)");
    QCOMPARE(scalar(sql, {a, b, a, b}).toInt(), expected);
}

void tst_SqlFunctions::collationAgreesWithQCollator_data()
{
    QTest::addColumn<QStringList>("pieces");
    const QStringList digraphs = QString("c s z d g y l n t C S Z D G Y L N T a k o").split(' ');
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

void tst_SqlFunctions::collationAgreesWithQCollator()
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

void tst_SqlFunctions::asciiContractionsAreTailored()
{
    // The ASCII weights take the contractions from what the Hungarian tailoring changes and
    // cut texts into them without looking back: on this ICU no other contraction of ASCII
    // characters exists, nor one that depends on the text before it.
    const QList<QByteArray> contractions = asciiContractions(Contractions);
    QVERIFY(contractions.contains("ddzs") && contractions.contains("CCS"));
    QCOMPARE(asciiContractions(WithPrefixes), contractions);
    QCOMPARE(asciiContractions(Tailored), contractions);
}

QTEST_GUILESS_MAIN(tst_SqlFunctions)
#include "tst_sqlfunctions.moc"
