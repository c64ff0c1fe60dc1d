#include "platform/Printer.h"

#include <optional>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using platform::PrintItem;

namespace {

// Two pages: a bold title in 14 points and a rule, then two rows in 10 points, one blank.
void draw(platform::Printer& p)
{
    p.setFontSize(14);
    p.setBold(true);
    p.text(4000, 200, QStringLiteral("Ügyek listája – őű"));
    p.line(100, 800, 11000, 800);
    p.newPage();
    p.setFontSize(10);
    p.setBold(false);
    p.text(100, 900, QString());
    p.text(3450, 900, QStringLiteral("Kovács János"));
}

// Each item as one line of text, so that two documents compare whole.
QStringList described(const QList<PrintItem>& items)
{
    QStringList result;
    for (const PrintItem& i : items)
        result << QStringLiteral("%1 %2,%3 %4,%5 %6%7 [%8]")
                          .arg(i.kind)
                          .arg(i.x)
                          .arg(i.y)
                          .arg(i.x2)
                          .arg(i.y2)
                          .arg(i.fontSize)
                          .arg(i.bold ? QStringLiteral("b") : QString())
                          .arg(i.text);
    return result;
}

QString pdfText(const QString& path)
{
    QProcess reader;
    reader.start(QStringLiteral("pdftotext"),
                 {QStringLiteral("-layout"), path, QStringLiteral("-")});
    reader.waitForFinished(30000);
    return QString::fromUtf8(reader.readAllStandardOutput());
}

} // namespace

class tst_Printer : public QObject
{
    Q_OBJECT
private slots:
    void recordingKeepsEveryItem()
    {
        platform::RecordingPrinter recorded;
        draw(recorded);
        QVERIFY(recorded.end());
        QVERIFY(recorded.isEnded() && !recorded.isCancelled());
        QCOMPARE(described(recorded.items()),
                 (QStringList{"0 4000,200 0,0 14b [Ügyek listája – őű]", "1 100,800 11000,800 0 []",
                              "2 0,0 0,0 0 []", "0 100,900 0,0 10 []",
                              "0 3450,900 0,0 10 [Kovács János]", "3 0,0 0,0 0 []"}));
        const QList<QList<PrintItem>> pages = recorded.pages();
        QCOMPARE(pages.size(), 2);
        QCOMPARE(pages[0].size(), 2);
        QCOMPARE(pages[1].last().text, QStringLiteral("Kovács János"));

        // Played again on another printer, the document is the same.
        platform::RecordingPrinter copy;
        recorded.replay(copy);
        copy.cancel();
        QVERIFY(copy.isCancelled());
        QCOMPARE(described(copy.items()).mid(0, 5), described(recorded.items()).mid(0, 5));
    }

    void pdfOnlyWhenEnded_data()
    {
        QTest::addColumn<QString>("finish");
        QTest::newRow("ended") << "end";
        QTest::newRow("cancelled") << "cancel";
        QTest::newRow("dropped unended") << "drop";
    }
    void pdfOnlyWhenEnded()
    {
        QFETCH(QString, finish);
        QTemporaryDir dir;
        const QString target = dir.filePath("lista.pdf");
        QFile old(target);
        QVERIFY(old.open(QIODevice::WriteOnly) && old.write("earlier list") > 0);
        old.close();

        std::optional<platform::PdfPrinter> printer(std::in_place, target);
        draw(*printer);
        // Half drawn, the target still holds what it held.
        QCOMPARE(QFileInfo(target).size(), qint64(12));
        if (finish == "end") {
            QString error;
            QVERIFY2(printer->end(&error), qPrintable(error));
        } else if (finish == "cancel") {
            printer->cancel();
        }
        printer.reset();

        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{"lista.pdf"});
        if (finish == "end") {
            const QString text = pdfText(target);
            QVERIFY2(text.contains("Ügyek listája") && text.contains("Kovács János"),
                     qPrintable(text));
            QCOMPARE(text.count(u'\f'), 2); // pdftotext ends each page with a form feed
        } else {
            QCOMPARE(QFileInfo(target).size(), qint64(12));
        }
    }

    void pdfToUnwritableFolderFails()
    {
        QTemporaryDir dir;
        const QString target = dir.filePath("missing/lista.pdf");
        platform::PdfPrinter printer(target);
        draw(printer);
        QString error;
        QVERIFY(!printer.end(&error));
        QVERIFY(error.startsWith("The PDF file could not be written"));
        QVERIFY(!QFileInfo::exists(target));
    }
};

QTEST_MAIN(tst_Printer)
#include "tst_printer.moc"
