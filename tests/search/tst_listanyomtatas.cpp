#include "SearchTestData.h"
#include "TestSupport.h"

#include "locale/Uzenet.h"
#include "platform/Printer.h"
#include "search/keres.h"
#include "session/Session.h"

#include <QDate>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>

using namespace searchtest;
using platform::PrintItem;
using testsupport::TestFolder;

namespace {

// A recording printer whose record outlives the print command that owns it.
class Capture : public platform::RecordingPrinter
{
public:
    explicit Capture(QList<PrintItem>* out) : m_out(out) { }
    ~Capture() override { *m_out = items(); }

private:
    QList<PrintItem>* m_out;
};

struct Printed
{
    QList<PrintItem> items;
    Printed() { platform::setPrinterFactory([this] { return std::make_unique<Capture>(&items); }); }
    ~Printed() { platform::setPrinterFactory(nullptr); }

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
    // The texts printed at a height on a page, left to right.
    static QStringList textsAt(const QList<PrintItem>& page, int y)
    {
        QStringList texts;
        for (const PrintItem& item : page)
            if (item.kind == PrintItem::Text && item.y == y)
                texts << item.text;
        return texts;
    }
    static QStringList rowTexts(const QList<PrintItem>& page, int column)
    {
        QStringList texts;
        for (const PrintItem& item : page)
            if (item.kind == PrintItem::Text && item.y >= 900
                && item.y < platform::RecordingPrinter::a4PageTwips().height() - 300)
                texts << item.text;
        QStringList result;
        for (int i = column; i < texts.size(); i += 4)
            result << texts[i];
        return result;
    }
};

void pressPrint(keres& screen)
{
    QTest::mouseClick(screen.findChild<QPushButton*>("g5"), Qt::LeftButton);
}

struct Screen
{
    keres w;
    explicit Screen(const QString& tipus)
    {
        w.setTipus(tipus);
        w.show();
        QTest::qWaitForWindowExposed(&w);
    }
};

void addClients(platform::Database& db, int n)
{
    platform::Transaction t(db);
    for (int i = 0; i < n; ++i)
        addClient(db, QStringLiteral("Ügyfél %1").arg(i, 3, 10, QChar('0')));
    t.commit();
}

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
    QTest::addColumn<QStringList>("footers");
    QTest::addColumn<QList<int>>("rowsPerPage");
    QTest::newRow("65 rows") << 65 << QStringList{" 1  /  1 "} << QList<int>{65};
    QTest::newRow("66 rows") << 66 << QStringList{" 1  /  2 ", " 2  /  2 "} << QList<int>{65, 1};
    QTest::newRow("130 rows") << 130 << QStringList{" 1  /  2 ", " 2  /  2 "} << QList<int>{65, 65};
    QTest::newRow("one row") << 1 << QStringList{" 1  /  1 "} << QList<int>{1};
}

void tst_listanyomtatas::pagesHeadersAndFooters()
{
    QFETCH(int, rows);
    QFETCH(QStringList, footers);
    QFETCH(QList<int>, rowsPerPage);
    TestFolder folder;
    QVERIFY(folder.open());
    addClients(folder.db(), rows);
    Screen s("1");
    Printed printed;
    testsupport::MessageRecorder recorder;
    pressPrint(s.w);
    QVERIFY(recorder.shown().isEmpty());
    QCOMPARE(printed.items.last().kind, PrintItem::End);

    const auto pages = printed.pages();
    QCOMPARE(pages.size(), footers.size());
    const QSize page = platform::RecordingPrinter::a4PageTwips();
    const QString date = "Dátum: " + QDate::currentDate().toString("yyyy.MM.dd");
    int first = 0;
    for (int p = 0; p < pages.size(); ++p) {
        // Every page starts with a fresh header: title, date, headings and the line.
        const QList<PrintItem>& items = pages[p];
        QCOMPARE(items[0].text, QString("Ügyféllista"));
        QCOMPARE(items[0].x, page.width() / 2 - 1000);
        QCOMPARE(items[0].fontSize, 14);
        QCOMPARE(Printed::textsAt(items, 200), (QStringList{"Ügyféllista", date}));
        QCOMPARE(Printed::textsAt(items, 600), (QStringList{"Név", "IRSZ", "Helység", "Utca"}));
        QVERIFY(items[2].bold && items[2].fontSize == 8);
        QCOMPARE(items[6].kind, PrintItem::Line);
        QCOMPARE(QList<int>({items[6].x, items[6].y, items[6].x2, items[6].y2}),
                 QList<int>({100, 800, page.width() - 100, 800}));
        // The rows, in list order, one line apart.
        const QStringList names = Printed::rowTexts(items, 0);
        QCOMPARE(names.size(), rowsPerPage[p]);
        QCOMPARE(names.first(), QStringLiteral("Ügyfél %1").arg(first, 3, 10, QChar('0')));
        first += rowsPerPage[p];
        QCOMPARE(items[7].y, 900);
        QVERIFY(!items[7].bold);
        if (rowsPerPage[p] > 1)
            QVERIFY(items[11].y > items[7].y);
        // The footer: the line and the page number of the total.
        const PrintItem& rule = items[items.size() - 2];
        QCOMPARE(QList<int>({rule.x, rule.y, rule.x2, rule.y2}),
                 QList<int>({100, page.height() - 600, page.width() - 100, page.height() - 600}));
        const PrintItem& footer = items.last();
        QCOMPARE(footer.text, footers[p]);
        QCOMPARE(QPoint(footer.x, footer.y), QPoint(page.width() / 2 - 500, page.height() - 300));
    }
}

void tst_listanyomtatas::fieldsShortenedAndBlanks()
{
    TestFolder folder;
    QVERIFY(folder.open());
    const QString longName = "Aranykezű Építőipari és Kereskedelmi Korlátolt Felelősségű Társaság";
    const QString longType = "Közigazgatási és munkaügyi bírósági eljárás";
    const qint64 a = addClient(folder.db(), longName, QVariant(), "Fő utca 1.", "1011");
    folder.db().insert("tipusok", {{"tipus", longType}});
    addCase(folder.db(), "9", a, longType, QVariant());

    Screen s("1");
    Printed printed;
    pressPrint(s.w);
    const QStringList row = Printed::textsAt(printed.pages()[0], 900);
    QCOMPARE(row.size(), 4);
    // Cut at the last character that fits 3350 twips in the screen's font.
    const QString name = row[0];
    QVERIFY(name.size() < longName.size());
    QVERIFY(longName.startsWith(name));
    QVERIFY(platform::textWidthTwips(s.w.font(), name) <= 3350);
    QVERIFY(platform::textWidthTwips(s.w.font(), longName.left(name.size() + 1)) > 3350);
    QCOMPARE(row[1], QString("1011"));
    QCOMPARE(row[2], QString(" ")); // no place
    QCOMPARE(row[3], QString("Fő utca 1."));

    // The case type is cut only beyond 3750 twips, although its column is 3000 wide.
    s.w.setTipus("2");
    s.w.Activate();
    pressPrint(s.w);
    const QStringList caseRow = Printed::textsAt(printed.pages()[0], 900);
    const QString type = caseRow[2];
    QVERIFY(platform::textWidthTwips(s.w.font(), longType) > 3750);
    QVERIFY(platform::textWidthTwips(s.w.font(), type) > 3000);
    QVERIFY(platform::textWidthTwips(s.w.font(), type) <= 3750);
    QVERIFY(platform::textWidthTwips(s.w.font(), longType.left(type.size() + 1)) > 3750);
    QCOMPARE(caseRow[3], QString(" ")); // no opponent
}

void tst_listanyomtatas::germanHeadingsUnderHungarianTitle_data()
{
    QTest::addColumn<QString>("tipus");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QStringList>("headings");
    QTest::addColumn<QList<int>>("edges");
    QTest::newRow("clients") << "1" << "Ügyféllista" << QStringList{"Name", "PLZ", "Ort", "Straße"}
                             << QList<int>{100, 3500, 4250, 8100};
    QTest::newRow("cases") << "2" << "Ügyek listája"
                           << QStringList{"Akten-Nr.", "Mandant", "Sachgebiet", "Gegner"}
                           << QList<int>{100, 1150, 4550, 7600};
}

void tst_listanyomtatas::germanHeadingsUnderHungarianTitle()
{
    QFETCH(QString, tipus);
    QFETCH(QString, title);
    QFETCH(QStringList, headings);
    QFETCH(QList<int>, edges);
    TestFolder folder(true);
    QVERIFY(folder.open());
    Session::instance().language = 2;
    Screen s(tipus);
    Printed printed;
    pressPrint(s.w);
    const auto page = printed.pages()[0];
    QCOMPARE(page[0].text, title);
    QCOMPARE(Printed::textsAt(page, 600), headings);
    QList<int> x;
    for (const PrintItem& item : page)
        if (item.kind == PrintItem::Text && item.y == 600)
            x << item.x;
    QCOMPARE(x, edges);
}

void tst_listanyomtatas::failuresCancelAndTell_data()
{
    QTest::addColumn<bool>("printer");
    QTest::addColumn<QString>("message");
    QTest::newRow("no printer") << false << "nincs nyomtató telepítve";
    QTest::newRow("empty list") << true << "nyomhiba";
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
    pressPrint(s.w);
    QCOMPARE(recorder.shown().size(), 1);
    const QString expected = message == "nyomhiba" ? uzenetszoveg(message) : message;
    QCOMPARE(recorder.shown()[0].text, expected);
    QCOMPARE(recorder.shown()[0].style, int(platform::Notice));
    if (printer) {
        QCOMPARE(printed.items.size(), 1);
        QCOMPARE(printed.items[0].kind, PrintItem::Cancel);
    } else {
        QVERIFY(printed.items.isEmpty());
    }
}

void tst_listanyomtatas::printsTheFilteredList()
{
    TestFolder folder(true);
    QVERIFY(folder.open());
    Screen s("2");
    auto* ker2 = s.w.findChild<QLineEdit*>("ker2");
    QTest::keyClicks(ker2, "kov");
    QTest::keyClick(ker2, Qt::Key_Return);
    Printed printed;
    pressPrint(s.w);
    // The cases of kovács és Társa have no opponent, so the filtered list leaves them out.
    QCOMPARE(Printed::rowTexts(printed.pages()[0], 0), (QStringList{"9", "2025/13"}));
    QCOMPARE(Printed::rowTexts(printed.pages()[0], 1), (QStringList{"Kovács János", "Kovács János"}));
}

void tst_listanyomtatas::realPdfReadsBack()
{
    TestFolder folder(true);
    QVERIFY(folder.open());
    const QString pdf = folder.root() + "/lista.pdf";
    platform::setPrinterFactory([pdf] { return std::make_unique<platform::PdfPrinter>(pdf); });
    Screen s("1");
    testsupport::MessageRecorder recorder;
    pressPrint(s.w);
    platform::setPrinterFactory(nullptr);
    QVERIFY(recorder.shown().isEmpty());

    QProcess reader;
    reader.start("pdftotext", {"-layout", pdf, "-"});
    QVERIFY(reader.waitForFinished(30000));
    const QString text = QString::fromUtf8(reader.readAllStandardOutput());
    QVERIFY2(text.contains("Ügyféllista"), qPrintable(text));
    QVERIFY(text.contains("Dátum: " + QDate::currentDate().toString("yyyy.MM.dd")));
    QVERIFY(text.contains("Helység"));
    QVERIFY(text.contains("Kovács János"));
    QVERIFY(text.contains("Székesfehérvár"));
    QVERIFY(text.contains(QRegularExpression("1\\s+/\\s+1")));
}

QTEST_MAIN(tst_listanyomtatas)
#include "tst_listanyomtatas.moc"
