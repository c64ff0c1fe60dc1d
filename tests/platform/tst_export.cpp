#include "TestSupport.h"
#include "tests/platform/ExportReader.h"

#include "platform/Database.h"
#include "platform/Export.h"

#include <QApplication>
#include <QDir>
#include <QProgressDialog>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

namespace {

// Values that break a careless CSV or XML writer, or that a reader would trim, collapse or take
// for something else; the last one is stored as no value.
const QStringList awkward{QStringLiteral("O'Brien; Kovács \"Kócos\" Béla"),
                          QStringLiteral("első sor\nmásodik sor"),
                          QStringLiteral(" két  szóköz   "),
                          QStringLiteral("tab\tután"),
                          QStringLiteral("<b>&amp;</b>"),
                          QStringLiteral("Árvíztűrő tükörfúrógép \U0001F4BC"),
                          QStringLiteral("=1+1"),
                          QStringLiteral("0010"),
                          QString()};
constexpr int generatedRows = 4500; // more than two of the export's pages

// Lets the export run for a given number of pages, then cancels as the user would.
class CancelAfter : public platform::Progress
{
public:
    explicit CancelAfter(int pages) : m_pages(pages) { }
    bool advance(qint64, qint64) override { return --m_pages > 0; }

private:
    int m_pages;
};

} // namespace

class tst_export : public QObject
{
    Q_OBJECT
    QTemporaryDir m_dir;
    platform::Database m_db;
    QList<QStringList> m_expected; // the file as it should read: headings, then the rows

    // Two of the table's three columns, in an order of their own.
    platform::ExportedList list() const
    {
        platform::ExportedList l;
        l.query.columns = QStringLiteral("sorszam, nev, megjegyzes");
        l.query.from = QStringLiteral("lista");
        l.query.order = QStringList{QStringLiteral("sorszam")};
        l.columns = {{QStringLiteral("nev"), QStringLiteral("Név; \"teljes\""), 3000},
                     {QStringLiteral("sorszam"), QStringLiteral("Sorszám"), 0}};
        l.title = QStringLiteral("Ügyfelek [2]");
        return l;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_db.openUnchecked(m_dir.filePath(QStringLiteral("lista.db")), nullptr));
        QVERIFY(m_db.exec(QStringLiteral("CREATE TABLE lista (sorszam INTEGER PRIMARY KEY,"
                                         " nev TEXT, megjegyzes TEXT)")));
        platform::Transaction t(m_db);
        m_expected << QStringList{QStringLiteral("Név; \"teljes\""), QStringLiteral("Sorszám")};
        for (int i = 1; i <= generatedRows; ++i) {
            const QString name
                    = i <= awkward.size() ? awkward.at(i - 1) : QStringLiteral("Ügyfél %1").arg(i);
            QVERIFY(m_db.exec(QStringLiteral("INSERT INTO lista VALUES (?, ?, 'x')"),
                              {i, name.isNull() ? QVariant() : QVariant(name)}));
            m_expected << QStringList{name, QString::number(i)};
        }
        QVERIFY(t.commit());
    }

    // Every value, in order, survives the file and another program's reader.
    void readBackExactly_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("reader");
        QTest::addColumn<bool>("tabs");
        const auto row = [](const char* name, const char* file, const char* reader, bool tabs) {
            QTest::newRow(name) << QString(file) << QString(reader) << tabs;
        };
        row("CSV, Python", "lista.csv", "csv", true);
        row("spreadsheet, its format's rules", "lista.ods", "ods", true);
        row("CSV, LibreOffice", "lista.csv", "soffice", true);
        // LibreOffice drops a tab inside a cell when it reads any spreadsheet file, even one
        // it wrote itself.
        row("spreadsheet, LibreOffice", "lista.ods", "soffice", false);
    }
    void readBackExactly()
    {
        QFETCH(QString, file);
        QFETCH(QString, reader);
        QFETCH(bool, tabs);
        const QString path = m_dir.filePath(file);
        const platform::ExportResult done
                = platform::exportList(m_db, list(), path, platform::exportFormatFor(path));
        QCOMPARE(int(done.outcome), int(platform::ExportOutcome::Written));
        QCOMPARE(done.rows, qint64(generatedRows));
        if (file.endsWith(QLatin1String(".csv"))) // the mark, ";" and CR LF, which readers forgive
            QVERIFY(testsupport::readFile(path).startsWith(
                    QStringLiteral("\uFEFF\"Név; \"\"teljes\"\"\";Sorszám\r\n").toUtf8()));
        const ReadBack back = readExport(reader, path);
        if (back.skipped)
            QSKIP("LibreOffice (soffice) is not installed");
        QVERIFY2(back.error.isEmpty(), qPrintable(back.error));
        QList<QStringList> expected = m_expected;
        for (QStringList& row : expected)
            if (!tabs)
                row.replaceInStrings(QStringLiteral("\t"), QString());
        QCOMPARE(back.rows, expected);
    }

    // Cancelled or failed, an export leaves no file of its own and an earlier one untouched.
    void unfinishedExportsLeaveNothing_data()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("CSV") << "lista.csv";
        QTest::newRow("spreadsheet") << "lista.ods";
    }
    void unfinishedExportsLeaveNothing()
    {
        QFETCH(QString, file);
        QTemporaryDir dir;
        const QString path = dir.filePath(file);
        testsupport::writeFile(path, "earlier");

        CancelAfter cancel(2);
        platform::ExportResult done = platform::exportList(
                m_db, list(), path, platform::exportFormatFor(path), &cancel);
        QCOMPARE(int(done.outcome), int(platform::ExportOutcome::Cancelled));
        QCOMPARE(testsupport::readFile(path), QByteArray("earlier"));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{file});

        platform::ExportedList unknown = list();
        unknown.columns << platform::ExportColumn{QStringLiteral("nincsilyen"), QString(), 0};
        done = platform::exportList(m_db, unknown, path, platform::exportFormatFor(path));
        QCOMPARE(int(done.outcome), int(platform::ExportOutcome::ReadFailed));
        QCOMPARE(testsupport::readFile(path), QByteArray("earlier"));

        done = platform::exportList(m_db, list(), dir.filePath(QStringLiteral("nincs/") + file),
                                    platform::exportFormatFor(path));
        QCOMPARE(int(done.outcome), int(platform::ExportOutcome::WriteFailed));
        QVERIFY(!done.error.isEmpty());
        QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList{file});
    }

    // The window stays away from a short step, comes up for a long one, and its button cancels.
    void progressWindowCancels()
    {
        const auto progress = platform::openProgress(
                {QStringLiteral("Causora"), QStringLiteral("Mentés…"), QStringLiteral("Mégse")});
        QVERIFY(progress->advance(0, 200000));
        QVERIFY(!QApplication::activeModalWidget());
        QTest::qWait(500);
        QVERIFY(progress->advance(100000, 200000));
        auto* window = qobject_cast<QProgressDialog*>(QApplication::activeModalWidget());
        QVERIFY(window);
        auto* cancel = window->findChild<QPushButton*>();
        QCOMPARE(cancel->text(), QStringLiteral("Mégse"));
        QTest::mouseClick(cancel, Qt::LeftButton);
        QVERIFY(!progress->advance(150000, 200000));
    }
};

QTEST_MAIN(tst_export)
#include "tst_export.moc"
