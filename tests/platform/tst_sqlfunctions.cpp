#include "platform/SqlFunctions.h"

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
    QTest::newRow("case ignored") << "KOVÁCS"
                                  << "kovács" << 0;
    QTest::newRow("accent kept") << "kar"
                                 << "kár" << -1;
    QTest::newRow("ö after o") << "Oszkár"
                               << "Ödön" << -1;
    QTest::newRow("cs after c") << "Cukor"
                                << "Csaba" << -1;
    QTest::newRow("cs, a letter") << "cs"
                                  << "cz" << 1;
    QTest::newRow("cS, two letters") << "cS"
                                     << "cz" << -1;
    QTest::newRow("doubled cs") << "ccs"
                                << "cscs" << 0;
    QTest::newRow("doubled CS") << "CCS"
                                << "cscs" << 0;
    QTest::newRow("doubled dzs") << "Ddzs"
                                 << "dzsdzs" << 0;
    QTest::newRow("CCs is not doubled") << "CCs"
                                        << "cscs" << -1;
    QTest::newRow("control character ignored") << "a\u0001b"
                                               << "ab" << 0;
    QTest::newRow("control character parts cs") << "c\u0001s"
                                                << "cs" << -1;
    QTest::newRow("tab counts") << "a\tb"
                                << "ab" << -1;
    QTest::newRow("empty first") << ""
                                 << "\u0001" << -1;
    QTest::newRow("prefix first") << "Kov"
                                  << "Kovács" << -1;
    QTest::newRow("punctuation before letters") << "~"
                                                << "a" << -1;
    QTest::newRow("punctuation before digits") << "["
                                               << "1" << -1;
    QTest::newRow("digits before letters") << "9"
                                           << "a" << -1;
    QTest::newRow("marks in either order") << "c\u0327\u0301"
                                           << "c\u0301\u0327" << 0;
    QTest::newRow("identical") << "Tóth"
                               << "Tóth" << 0;
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
    const QStringList doubled = QString("cs ccs Cs CCS Ccs CCs dz dzs ddz ddzs DDZS zs zzs ZZS ny "
                                        "nny NNY ly LLY gy ggy ty tty sz ssz SSZ c s z d n y")
                                        .split(' ');
    const QStringList punctuation
            = {"\u0001", "\u001f", "\u007f", "\t", "\n", " ", "-", "_", ".", ",",
               "'",      "~",      "[",      "0",  "1",  "9", "a", "c", "s"};
    const QStringList accents
            = {"á", "Á", "é", "ö", "Ö", "ő", "Ő",      "ü",      "ű",      "Ű",     "o",
               "u", "a", "e", "c", "s", "z", "\u0301", "\u0308", "\u0323", "\u0327"};
    QTest::newRow("digraphs, mixed case") << digraphs;
    QTest::newRow("doubled digraphs") << doubled;
    QTest::newRow("control characters, punctuation") << punctuation;
    QTest::newRow("accents") << accents;
    QTest::newRow("everything") << digraphs + doubled + punctuation + accents
                                           + QStringList{"€", "😀", "ß", "ø"};
}

void tst_SqlFunctions::collationAgreesWithQCollator()
{
    QFETCH(QStringList, pieces);
    // Random texts of up to eight pieces and every prefix of each, as "left"() cuts them.
    QRandomGenerator random(20240611);
    QStringList texts{QString()};
    for (int i = 0; i < 150; ++i) {
        QString text;
        for (int n = int(random.bounded(9)); n > 0; --n)
            text += pieces.at(int(random.bounded(int(pieces.size()))));
        const QList<uint> chars = text.toUcs4();
        for (int length = 1; length <= chars.size(); ++length)
            texts << QString::fromUcs4(reinterpret_cast<const char32_t*>(chars.constData()),
                                       length);
    }
    QList<QByteArray> utf8;
    for (const QString& t : texts)
        utf8 << t.toUtf8();
    const QCollator reference = hungarian();
    QStringList differences;
    for (int i = 0; i < texts.size(); ++i) {
        for (int j = 0; j < texts.size(); ++j) {
            const int expected = sign(reference.compare(texts.at(i), texts.at(j)));
            if (sign(platform::compareHu(utf8.at(i), utf8.at(j))) != expected
                && differences.size() < 10)
                differences << QString::fromLatin1(utf8.at(i).toPercentEncoding() + " : "
                                                   + utf8.at(j).toPercentEncoding() + " should be "
                                                   + QByteArray::number(expected));
        }
    }
    QVERIFY2(differences.isEmpty(), qPrintable(differences.join('\n')));
}

QTEST_GUILESS_MAIN(tst_SqlFunctions)
#include "tst_sqlfunctions.moc"
