#include "TestSupport.h"

#include "platform/Printer.h"

#include <optional>
#include <QDir>
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
        result << QString::asprintf("%d %d,%d %d,%d %d%s [", int(i.kind), i.x, i.y, i.x2, i.y2,
                                    i.fontSize, i.bold ? "b" : "")
                          + i.text + u']';
    return result;
}

} // namespace

class tst_Printer : public QObject
{
    Q_OBJECT
private slots:
    // Every item is kept with its font, and played again on another printer (as the preview
    // plays the list onto the real one) the document is the same.
    void recordingKeepsEveryItem()
    {
        platform::RecordingPrinter recorded, copy;
        draw(recorded);
        QVERIFY(recorded.end());
        const QStringList expected{"0 4000,200 0,0 14b [Ügyek listája – őű]",
                                   "1 100,800 11000,800 0 []",
                                   "2 0,0 0,0 0 []",
                                   "0 100,900 0,0 10 []",
                                   "0 3450,900 0,0 10 [Kovács János]",
                                   "3 0,0 0,0 0 []"};
        QCOMPARE(described(recorded.items()), expected);
        recorded.replay(copy);
        QVERIFY(copy.end());
        QCOMPARE(described(copy.items()), expected);
    }

    // The file is put in place only when the document ends; half drawn, cancelled, dropped or
    // unwritable, an earlier file of that name stays as it was.
    void pdfOnlyWhenEnded_data()
    {
        QTest::addColumn<QString>("finish");
        for (const char* finish : {"end", "cancel", "drop", "unwritable"})
            QTest::newRow(finish) << finish;
    }
    void pdfOnlyWhenEnded()
    {
        QFETCH(QString, finish);
        QTemporaryDir dir;
        const QString target = dir.filePath("lista.pdf");
        testsupport::writeFile(target, "earlier list");
        std::optional<platform::PdfPrinter> printer(
                std::in_place, finish == "unwritable" ? dir.filePath("nincs/lista.pdf") : target);
        draw(*printer);
        QCOMPARE(testsupport::readFile(target), QByteArray("earlier list"));
        QString error;
        if (finish == "end")
            QVERIFY2(printer->end(&error), qPrintable(error));
        else if (finish == "cancel")
            printer->cancel();
        else if (finish == "unwritable")
            QVERIFY(!printer->end(&error) && error.startsWith("The PDF file could not be written"));
        printer.reset();

        QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList{"lista.pdf"});
        if (finish != "end") {
            QCOMPARE(testsupport::readFile(target), QByteArray("earlier list"));
            return;
        }
        QProcess reader;
        reader.start("pdftotext", {"-layout", target, "-"});
        QVERIFY(reader.waitForFinished(30000));
        const QString text = QString::fromUtf8(reader.readAllStandardOutput());
        QVERIFY2(text.contains("Ügyek listája") && text.contains("Kovács János"), qPrintable(text));
        QCOMPARE(text.count(u'\f'), 2); // pdftotext ends each page with a form feed
    }
};

QTEST_MAIN(tst_Printer)
#include "tst_printer.moc"
