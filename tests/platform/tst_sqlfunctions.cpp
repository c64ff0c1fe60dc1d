#include "platform/SqlFunctions.h"

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

private:
    QVariant scalar(const QString& sql, const QVariantList& values);
};

namespace {
const QString connectionName = QStringLiteral("tst_sqlfunctions");
}

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

QTEST_GUILESS_MAIN(tst_SqlFunctions)
#include "tst_sqlfunctions.moc"
