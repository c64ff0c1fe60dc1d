#include "SearchTestData.h"
#include "TestSupport.h"
#include "tests/platform/ExportReader.h"

#include "locale/Uzenet.h"
#include "platform/Dialogs.h"
#include "platform/ListSource.h"
#include "platform/Progress.h"
#include "session/Session.h"

#include <optional>
#include <QHeaderView>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>

// What the grid shows: its visible headings left to right, then each row's visible values.
static QList<QStringList> shown(keres& w)
{
    return testsupport::gridShown(w.findChild<QTableView*>(QStringLiteral("DataGrid1")),
                                  w.forras());
}

class tst_keresexport : public QObject
{
    Q_OBJECT
    std::optional<testsupport::TestFolder> m_folder;
    QTemporaryDir m_out;
    QString m_chosen; // the file the user picks in the save dialog; empty: he cancels

private slots:
    // Names with the characters that CSV and spreadsheet files must carry intact.
    void init()
    {
        m_folder.emplace();
        QVERIFY(m_folder->open());
        platform::Database& db = m_folder->db();
        const qint64 obrien = addClient(db, "O'Brien; \"Kócos\" Kft.", "Győr", "9021");
        const qint64 oneil = addClient(db, "O'Neil\nés Társa", QVariant(), "1011");
        const qint64 other = addClient(db, "Kovács János");
        addCase(db, "9", obrien, "Ellenfél; \"Nagy\" Bt.", "2007.10.26");
        addCase(db, "10", oneil, QVariant());
        addCase(db, "10/A", obrien, "Sor\ntörés");
        addCase(db, "11", other);
        m_chosen.clear();
        platform::setFileDialogHandler([this](const platform::FileDialogRequest& r) {
            return r.kind == platform::FileDialogKind::Save ? m_chosen : QString();
        });
    }
    void cleanup()
    {
        platform::setFileDialogHandler({});
        platform::setProgressHandler({});
    }

    // The file holds exactly the rows the filter left and the columns and headings the grid
    // shows, in the session's language.
    void filteredListAsShown_data()
    {
        QTest::addColumn<QString>("tipus");
        QTest::addColumn<int>("language");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("caption");
        QTest::newRow("cases, German, CSV") << "2" << 2 << "akten.csv"
                                            << "Exportieren";
        QTest::newRow("clients, English, spreadsheet") << "1" << 3 << "clients.ods"
                                                       << "Export";
    }
    void filteredListAsShown()
    {
        QFETCH(QString, tipus);
        QFETCH(int, language);
        QFETCH(QString, file);
        QFETCH(QString, caption);
        Session::instance().language = qint16(language);
        Screen s(tipus);
        QCOMPARE(s.w.findChild<QPushButton*>(QStringLiteral("g6"))->text(), caption);
        s.search(tipus == "1" ? "ker1" : "ker2", "O'"); // the client names with a quote
        const QList<QStringList> expected = shown(s.w);
        QCOMPARE(expected.size(), 1 + (tipus == "1" ? 2 : 3));
        QCOMPARE(expected.first().size(), 5);

        m_chosen = m_out.filePath(file);
        s.click("g6");
        const ReadBack back = readExport(file.endsWith(".csv") ? "csv" : "ods", m_chosen);
        QVERIFY2(back.error.isEmpty(), qPrintable(back.error));
        QCOMPARE(back.rows, expected);
    }

    // No file chosen, cancelled while writing, or a folder that is not there: no file is left,
    // and only the last is told.
    void unfinishedExports()
    {
        testsupport::MessageRecorder messages;
        const QTemporaryDir out;
        Screen s("2");
        m_chosen.clear();
        s.click("g6");
        QCOMPARE(QDir(out.path()).entryList(QDir::Files), QStringList());

        struct Cancel : platform::Progress
        {
            bool advance(qint64, qint64) override { return false; }
        };
        platform::setProgressHandler(
                [](const platform::ProgressRequest&) { return std::make_unique<Cancel>(); });
        m_chosen = out.filePath(QStringLiteral("lista.csv"));
        s.click("g6");
        QCOMPARE(QDir(out.path()).entryList(QDir::Files), QStringList());
        QCOMPARE(messages.shown().size(), 0);

        platform::setProgressHandler({});
        m_chosen = out.filePath(QStringLiteral("nincs/lista.ods"));
        s.click("g6");
        QCOMPARE(messages.shown().size(), 1);
        QVERIFY(messages.shown().first().text.startsWith(uzenetszoveg("exporthiba")));
        QVERIFY(messages.shown().first().text.contains(m_chosen));
        QCOMPARE(messages.shown().first().style, int(platform::ErrorNotice));
    }
};

QTEST_MAIN(tst_keresexport)
#include "tst_keresexport.moc"
