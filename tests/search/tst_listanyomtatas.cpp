#include "SearchTestData.h"
#include "TestSupport.h"

#include "locale/Uzenet.h"
#include "platform/Printer.h"
#include "session/Session.h"

#include <numeric>
#include <optional>
#include <QDate>
#include <QProcess>
#include <QRegularExpression>

using platform::PrintItem;
using Page = QList<PrintItem>;

struct Capture : platform::RecordingPrinter
{
    static inline Page last; // the print command destroys its printer, the record stays
    ~Capture() override { last = items(); }
};

// Clicks Print, with a Capture unless another printer is given, and returns what it recorded.
static Page print(Screen& s, platform::PrinterFactory factory = {})
{
    platform::setPrinterFactory(factory ? factory : [] { return std::make_unique<Capture>(); });
    s.click("g5");
    platform::setPrinterFactory(nullptr);
    return std::exchange(Capture::last, {});
}

// The texts and lines of each page, and the texts of one at a height, left to right, or with
// y = -1 those of the list's first column.
static QList<Page> pages(const Page& items)
{
    QList<Page> result(1);
    for (const PrintItem& item : items)
        if (item.kind == PrintItem::NewPage)
            result.append(Page());
        else if (item.kind == PrintItem::Text || item.kind == PrintItem::Line)
            result.last() << item;
    return result;
}
static QStringList texts(const Page& page, int y)
{
    QStringList result;
    for (const PrintItem& item : page)
        if (item.kind == PrintItem::Text && (y < 0 ? item.x == 100 && item.y >= 900 : item.y == y))
            result << item.text;
    return result;
}

class tst_listanyomtatas : public QObject
{
    Q_OBJECT
    std::optional<testsupport::TestFolder> m_folder;

private slots:
    void init() { QTest::failOnWarning(QRegularExpression("^message box: ")); } // none expected
    void pagesHeadersAndFooters_data()
    {
        QTest::addColumn<QList<int>>("rowsPerPage");
        QTest::newRow("65 rows") << QList<int>{65};
        QTest::newRow("66 rows") << QList<int>{65, 1};
        QTest::newRow("130 rows") << QList<int>{65, 65};
    }
    void pagesHeadersAndFooters()
    {
        QFETCH(QList<int>, rowsPerPage);
        QVERIFY(m_folder.emplace(false).open());
        const auto name = [](int i) { return QString("Ügyfél %1").arg(i, 3, 10, QChar('0')); };
        platform::Transaction t(m_folder->db());
        for (int i = 0; i < std::accumulate(rowsPerPage.begin(), rowsPerPage.end(), 0); ++i)
            addClient(m_folder->db(), name(i));
        t.commit();
        Screen s("1");
        const Page items = print(s);
        QCOMPARE(items.last().kind, PrintItem::End);
        const QList<Page> printed = pages(items);
        QCOMPARE(printed.size(), rowsPerPage.size());
        const QString date = "Dátum: " + QDate::currentDate().toString("yyyy.MM.dd");
        for (int p = 0, first = 0; p < printed.size(); first += rowsPerPage[p++]) {
            const Page& page = printed[p];
            QCOMPARE(texts(page, 200) + texts(page, 600),
                     (QStringList{"Ügyféllista", date, "Név", "IRSZ", "Helység", "Utca"}));
            QCOMPARE(page[6].kind, PrintItem::Line);
            QCOMPARE(page[6].y, 800);
            QCOMPARE(texts(page, -1).size(), rowsPerPage[p]);
            QCOMPARE(texts(page, -1).first(), name(first));
            QCOMPARE(page.last().text, QString(" %1  /  %2 ").arg(p + 1).arg(printed.size()));
        }
    }
    void fieldsShortenedAndBlanks()
    {
        QVERIFY(m_folder.emplace(false).open());
        const QString longName = "Aranykezű Építőipari és Kereskedelmi Korlátolt Felelősségű Kft.";
        addClient(m_folder->db(), longName, QVariant());
        Screen s("1");
        const QStringList row = texts(pages(print(s))[0], 900);
        QCOMPARE(row.mid(1), (QStringList{"1011", " ", "Fő utca 1."})); // no place: a blank
        // Cut at the last character that fits 3350 twips in the screen's font.
        QVERIFY(row[0].size() < longName.size() && longName.startsWith(row[0]));
        QVERIFY(platform::textWidthTwips(s.w.font(), row[0]) <= 3350);
        QVERIFY(platform::textWidthTwips(s.w.font(), longName.left(row[0].size() + 1)) > 3350);
    }
    // The third column is cut at 3750 twips in both lists, not at its own width.
    void thirdColumnCutAt3750_data()
    {
        QTest::addColumn<QString>("tipus");
        QTest::newRow("clients: place, wider column") << "1";
        QTest::newRow("cases: type, narrower column") << "2";
    }
    void thirdColumnCutAt3750()
    {
        QFETCH(QString, tipus);
        QVERIFY(m_folder.emplace(false).open());
        const QString longText = QString("Nagyon hosszú szöveg ").repeated(8);
        const qint64 client = addClient(m_folder->db(), "Ügyfél", tipus == "1" ? longText : "Pécs");
        if (tipus == "2")
            storeRow(m_folder->db(), "ugyek",
                     {{"ugyszam", "1"}, {"ugyfelkod", client}, {"ugytipus", longText}});
        Screen s(tipus);
        const QString third = texts(pages(print(s))[0], 900).value(2);
        QVERIFY(!third.isEmpty() && longText.startsWith(third));
        QVERIFY(platform::textWidthTwips(s.w.font(), third) <= 3750);
        QVERIFY(platform::textWidthTwips(s.w.font(), longText.left(third.size() + 1)) > 3750);
    }
    void germanHeadingsUnderHungarianTitle_data()
    {
        QTest::addColumn<int>("tipus");
        QTest::addColumn<QStringList>("header"); // the title, then the headings
        QTest::newRow("clients") << 1 << QStringList{"Ügyféllista", "Name", "PLZ", "Ort", "Straße"};
        QTest::newRow("cases") << 2
                               << QStringList{"Ügyek listája", "Akten-Nr.", "Mandant", "Sachgebiet",
                                              "Gegner"};
    }
    void germanHeadingsUnderHungarianTitle()
    {
        QFETCH(int, tipus);
        QFETCH(QStringList, header);
        QVERIFY(m_folder.emplace(true).open());
        Session::instance().language = 2;
        Screen s(QString::number(tipus));
        const Page page = pages(print(s))[0];
        QCOMPARE(texts(page, 200).mid(0, 1) + texts(page, 600), header);
    }
    void failuresCancelAndTell_data()
    {
        QTest::addColumn<bool>("printer");
        QTest::newRow("no printer") << false;
        QTest::newRow("empty list") << true;
    }
    void failuresCancelAndTell()
    {
        QFETCH(bool, printer);
        QVERIFY(m_folder.emplace(false).open());
        Screen s("2");
        testsupport::MessageRecorder recorder;
        const Page job = printer ? print(s) : print(s, [] { return nullptr; });
        QCOMPARE(recorder.texts(), QStringList{printer ? uzenetszoveg("nyomhiba")
                                                       : QString("nincs nyomtató telepítve")});
        QCOMPARE(recorder.shown()[0].style, int(platform::Notice));
        QVERIFY(printer ? job.size() == 1 && job[0].kind == PrintItem::Cancel : job.isEmpty());
    }
    void realPdfReadsBack()
    {
        QVERIFY(m_folder.emplace(true).open());
        const QString pdf = m_folder->root() + "/lista.pdf";
        Screen s("1");
        print(s, [pdf] { return std::make_unique<platform::PdfPrinter>(pdf); });
        QProcess reader;
        reader.start("pdftotext", {"-layout", pdf, "-"});
        QVERIFY(reader.waitForFinished(30000));
        const QString text = QString::fromUtf8(reader.readAllStandardOutput());
        for (const QString& expected :
             QStringList{"Ügyféllista", "Helység", "Kovács János", "Székesfehérvár",
                         "Dátum: " + QDate::currentDate().toString("yyyy.MM.dd")})
            QVERIFY2(text.contains(expected), qPrintable(text));
        QVERIFY(text.contains(QRegularExpression("1\\s+/\\s+1")));
    }
};

QTEST_MAIN(tst_listanyomtatas)
#include "tst_listanyomtatas.moc"
