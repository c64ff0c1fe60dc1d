#include "SearchTestData.h"
#include "TestSupport.h"

#include "locale/Uzenet.h"
#include "platform/Printer.h"
#include "session/Session.h"

#include <QDate>
#include <QProcess>
#include <QRegularExpression>

using namespace searchtest;
using platform::PrintItem;
using testsupport::TestFolder;

namespace {

// Records what the screen prints. The print command owns its printer and destroys it, so the
// recording printer hands its items over as it goes.
struct Printed
{
    struct Capture : platform::RecordingPrinter
    {
        QList<PrintItem>* out;
        explicit Capture(QList<PrintItem>* out) : out(out) { }
        ~Capture() override { *out = items(); }
    };
    QList<PrintItem> items;
    Printed()
    {
        platform::setPrinterFactory([this] { return std::make_unique<Capture>(&items); });
    }
    ~Printed() { platform::setPrinterFactory(nullptr); }

    // The texts and lines of each page.
    QList<QList<PrintItem>> pages() const
    {
        QList<QList<PrintItem>> result(1);
        for (const PrintItem& item : items) {
            if (item.kind == PrintItem::NewPage)
                result.append(QList<PrintItem>());
            else if (item.kind == PrintItem::Text || item.kind == PrintItem::Line)
                result.last() << item;
        }
        return result;
    }
    // The texts printed at a height on a page, left to right, or with y = -1 the first column
    // of the list under the header, from the top.
    static QStringList texts(const QList<PrintItem>& page, int y)
    {
        QStringList result;
        for (const PrintItem& item : page)
            if (item.kind == PrintItem::Text
                && (y < 0 ? item.x == 100 && item.y >= 900 : item.y == y))
                result << item.text;
        return result;
    }
};

} // namespace

class tst_listanyomtatas : public QObject
{
    Q_OBJECT
private slots:
    void pagesHeadersAndFooters_data();
    void pagesHeadersAndFooters();
    void fieldsShortenedAndBlanks();
    void germanHeadingsUnderHungarianTitle_data();
    void germanHeadingsUnderHungarianTitle();
    void failuresCancelAndTell_data();
    void failuresCancelAndTell();
    void printsTheFilteredList();
    void realPdfReadsBack();
};

void tst_listanyomtatas::pagesHeadersAndFooters_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<QList<int>>("rowsPerPage");
    QTest::newRow("65 rows") << 65 << QList<int>{65};
    QTest::newRow("66 rows") << 66 << QList<int>{65, 1};
    QTest::newRow("130 rows") << 130 << QList<int>{65, 65};
}

void tst_listanyomtatas::pagesHeadersAndFooters()
{
    QFETCH(int, rows);
    QFETCH(QList<int>, rowsPerPage);
    TestFolder folder;
    QVERIFY(folder.open());
    platform::Transaction t(folder.db());
    for (int i = 0; i < rows; ++i)
        addClient(folder.db(), QStringLiteral("Ügyfél %1").arg(i, 3, 10, QChar('0')));
    t.commit();
    Screen s("1");
    Printed printed;
    testsupport::MessageRecorder recorder;
    s.click("g5");
    QVERIFY(recorder.shown().isEmpty());
    QCOMPARE(printed.items.last().kind, PrintItem::End);

    const auto pages = printed.pages();
    QCOMPARE(pages.size(), rowsPerPage.size());
    const QSize page = platform::RecordingPrinter::a4PageTwips();
    const QString date = "Dátum: " + QDate::currentDate().toString("yyyy.MM.dd");
    int first = 0;
    for (int p = 0; p < pages.size(); ++p) {
        // Every page starts with a fresh header: title, date, headings and the line.
        const QList<PrintItem>& items = pages[p];
        QCOMPARE(Printed::texts(items, 200), (QStringList{"Ügyféllista", date}));
        QCOMPARE(Printed::texts(items, 600), (QStringList{"Név", "IRSZ", "Helység", "Utca"}));
        QCOMPARE(items[6].kind, PrintItem::Line);
        QCOMPARE(items[6].y, 800);
        // The rows in list order, then the footer: page number of the total.
        const QStringList names = Printed::texts(items, -1);
        QCOMPARE(names.size(), rowsPerPage[p]);
        QCOMPARE(names.first(), QStringLiteral("Ügyfél %1").arg(first, 3, 10, QChar('0')));
        first += rowsPerPage[p];
        QCOMPARE(items.last().text, QString(" %1  /  %2 ").arg(p + 1).arg(pages.size()));
        QCOMPARE(items.last().y, page.height() - 300);
    }
}

void tst_listanyomtatas::fieldsShortenedAndBlanks()
{
    TestFolder folder;
    QVERIFY(folder.open());
    const QString longName = "Aranykezű Építőipari és Kereskedelmi Korlátolt Felelősségű Társaság";
    addClient(folder.db(), longName, QVariant(), "Fő utca 1.", "1011");
    Screen s("1");
    Printed printed;
    s.click("g5");
    const QStringList row = Printed::texts(printed.pages()[0], 900);
    QCOMPARE(row.size(), 4);
    // Cut at the last character that fits 3350 twips in the screen's font.
    const QString name = row[0];
    QVERIFY(name.size() < longName.size() && longName.startsWith(name));
    QVERIFY(platform::textWidthTwips(s.w.font(), name) <= 3350);
    QVERIFY(platform::textWidthTwips(s.w.font(), longName.left(name.size() + 1)) > 3350);
    QCOMPARE(row.mid(1), (QStringList{"1011", " ", "Fő utca 1."})); // no place: a blank
}

void tst_listanyomtatas::germanHeadingsUnderHungarianTitle_data()
{
    QTest::addColumn<QString>("tipus");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QStringList>("headings");
    QTest::newRow("clients") << "1" << QString("Ügyféllista")
                             << QStringList{"Name", "PLZ", "Ort", "Straße"};
    QTest::newRow("cases") << "2" << QString("Ügyek listája")
                           << QStringList{"Akten-Nr.", "Mandant", "Sachgebiet", "Gegner"};
}

void tst_listanyomtatas::germanHeadingsUnderHungarianTitle()
{
    QFETCH(QString, tipus);
    QFETCH(QString, title);
    QFETCH(QStringList, headings);
    TestFolder folder(true);
    QVERIFY(folder.open());
    Session::instance().language = 2;
    Screen s(tipus);
    Printed printed;
    s.click("g5");
    QCOMPARE(Printed::texts(printed.pages()[0], 200).value(0), title);
    QCOMPARE(Printed::texts(printed.pages()[0], 600), headings);
}

void tst_listanyomtatas::failuresCancelAndTell_data()
{
    QTest::addColumn<bool>("printer");
    QTest::addColumn<QString>("message");
    QTest::newRow("no printer") << false << QString("nincs nyomtató telepítve");
    QTest::newRow("empty list") << true << QString("nyomhiba"); // a code of the catalogue
}

void tst_listanyomtatas::failuresCancelAndTell()
{
    QFETCH(bool, printer);
    QFETCH(QString, message);
    TestFolder folder;
    QVERIFY(folder.open());
    Screen s("2");
    Printed printed;
    if (!printer)
        platform::setPrinterFactory([] { return nullptr; });
    testsupport::MessageRecorder recorder;
    s.click("g5");
    QCOMPARE(recorder.shown().size(), 1);
    QCOMPARE(recorder.shown()[0].text, printer ? uzenetszoveg(message) : message);
    QCOMPARE(recorder.shown()[0].style, int(platform::Notice));
    // An empty list cancels the job it opened; without a printer there is none.
    QCOMPARE(printed.items.size(), printer ? 1 : 0);
    if (printer)
        QCOMPARE(printed.items[0].kind, PrintItem::Cancel);
}

void tst_listanyomtatas::printsTheFilteredList()
{
    TestFolder folder(true);
    QVERIFY(folder.open());
    Screen s("2");
    s.search("ker2", "kov");
    Printed printed;
    s.click("g5");
    // The cases of kovács és Társa have no opponent, so the filtered list leaves them out.
    QCOMPARE(Printed::texts(printed.pages()[0], -1), (QStringList{"9", "2025/13"}));
}

void tst_listanyomtatas::realPdfReadsBack()
{
    TestFolder folder(true);
    QVERIFY(folder.open());
    const QString pdf = folder.root() + "/lista.pdf";
    platform::setPrinterFactory([pdf] { return std::make_unique<platform::PdfPrinter>(pdf); });
    Screen s("1");
    testsupport::MessageRecorder recorder;
    s.click("g5");
    platform::setPrinterFactory(nullptr);
    QVERIFY(recorder.shown().isEmpty());

    QProcess reader;
    reader.start("pdftotext", {"-layout", pdf, "-"});
    QVERIFY(reader.waitForFinished(30000));
    const QString text = QString::fromUtf8(reader.readAllStandardOutput());
    for (const QString& expected : {QString("Ügyféllista"), QString("Helység"),
                                    "Dátum: " + QDate::currentDate().toString("yyyy.MM.dd"),
                                    QString("Kovács János"), QString("Székesfehérvár")})
        QVERIFY2(text.contains(expected), qPrintable(text));
    QVERIFY(text.contains(QRegularExpression("1\\s+/\\s+1")));
}

QTEST_MAIN(tst_listanyomtatas)
#include "tst_listanyomtatas.moc"
