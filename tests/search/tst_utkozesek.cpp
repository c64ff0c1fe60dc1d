// The conflict list screen: the grid lists every conflict with the session's headings, and its
// export holds exactly what the grid shows.
#include "TestSupport.h"
#include "tests/platform/ExportReader.h"

#include "platform/Dialogs.h"
#include "platform/ListSource.h"
#include "search/Install.h"
#include "search/utkozesek.h"
#include "session/Screens.h"
#include "session/Session.h"
#include "store/Cases.h"
#include "store/Clients.h"
#include "store/Partners.h"

#include <optional>
#include <QApplication>
#include <QHeaderView>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

class tst_utkozesek : public QObject
{
    Q_OBJECT
    std::optional<testsupport::TestFolder> m_folder;

    static utkozesek* screen()
    {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (auto* s = qobject_cast<utkozesek*>(w))
                return s;
        return nullptr;
    }
    // The visible headings, then each row's visible values.
    static QList<QStringList> shown(utkozesek& w)
    {
        return testsupport::gridShown(w.findChild<QTableView*>(QStringLiteral("DataGrid1")),
                                      w.forras());
    }

private slots:
    void cleanup()
    {
        platform::setFileDialogHandler({});
        delete screen();
        m_folder.reset();
    }

    void listsEveryConflictAndExportsItAsShown()
    {
        m_folder.emplace();
        QVERIFY(m_folder->open());
        platform::Database& db = m_folder->db();
        const QVariant client = store::Clients(db).add({{"unev1", "Kovács és Társa"}}).key;
        store::Partners(db).add({{"pnev1", "O'Brien; \"Nagy\" Ltd."}});
        store::Cases(db).add({{"ugyszam", "1"}, {"ellnev", "KOVACS ES TARSA KFT."}});
        store::Cases(db).add({{"ugyszam", "2"}, {"ellnev", "Más"}, {"ellugyvnev", "O'Brien Nagy"}});
        Session::instance().language = 3;

        Screens screens;
        search::installConflicts(screens, db);
        screens.showConflicts();
        QVERIFY(screen());
        const QList<QStringList> expected{
                {"Case number", "Field", "Name on the case", "Matches", "Matching name"},
                {"1", "Opponent", "KOVACS ES TARSA KFT.", "client " + client.toString(),
                 "Kovács és Társa"},
                {"2", "Opponent's lawyer", "O'Brien Nagy", "partner 1", "O'Brien; \"Nagy\" Ltd."}};
        QCOMPARE(shown(*screen()), expected);
        QCOMPARE(screen()->windowTitle(), QString("Conflicts of interest"));

        const QTemporaryDir out;
        const QString file = out.filePath("utkozesek.csv");
        platform::setFileDialogHandler([file](const platform::FileDialogRequest&) { return file; });
        screen()->findChild<QPushButton*>("g2")->click();
        const ReadBack back = readExport("csv", file);
        QVERIFY2(back.error.isEmpty(), qPrintable(back.error));
        QCOMPARE(back.rows, expected);
    }
};

QTEST_MAIN(tst_utkozesek)
#include "tst_utkozesek.moc"
