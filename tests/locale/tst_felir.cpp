#include "TestSupport.h"

#include "locale/Uzenet.h"
#include "platform/Display.h"

#include "locale/felir.h"
#include "session/Alap.h"
#include "session/Session.h"

#include <memory>
#include <QApplication>
#include <QPushButton>
#include <QTableView>
#include <QTest>

class tst_felir : public QObject
{
    Q_OBJECT
    std::unique_ptr<testsupport::TestFolder> m_folder;
    std::unique_ptr<Alap> m_menu;
    QTableView* m_grid = nullptr;

    QString stored(const QString& key, const QString& column)
    {
        const QString sql = QStringLiteral("SELECT [%1] FROM felirat WHERE felirkod = ?");
        return m_folder->db().scalar(sql.arg(column), {key}).toString();
    }
    QModelIndex cell(const QString& key, const QString& column) const
    {
        const QAbstractItemModel* m = m_grid->model();
        int c = 0;
        while (c < m->columnCount() && m->headerData(c, Qt::Horizontal).toString() != column)
            ++c;
        const auto rows = m->match(m->index(0, 0), Qt::DisplayRole, key, 1, Qt::MatchExactly);
        return rows.isEmpty() ? QModelIndex() : rows.first().siblingAtColumn(c);
    }
    // As the user does it: go to the cell, F2, type the new text over the old, confirm with Enter.
    void edit(const QString& key, const QString& column, const QString& text)
    {
        m_grid->setCurrentIndex(cell(key, column));
        QTest::keyClick(m_grid, Qt::Key_F2);
        QTest::keyClicks(QApplication::focusWidget(), text);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QApplication::processEvents(); // the grid takes the text over only then
    }

private slots:
    // Shift+F5 on the menu opens the editor, which reads the table when it becomes active.
    void init()
    {
        m_folder = std::make_unique<testsupport::TestFolder>();
        QVERIFY(m_folder->open());
        m_menu = std::make_unique<Alap>(testsupport::database());
        QVERIFY(m_menu->load());
        installCaptionEditor(m_menu.get(), testsupport::database());
        m_menu->show();
        m_menu->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_menu.get()));
        QTest::keyClick(m_menu->findChild<QPushButton*>("g1"), Qt::Key_F5, Qt::ShiftModifier);
        QTRY_VERIFY(qobject_cast<felir*>(QApplication::activeWindow()));
        m_grid = QApplication::activeWindow()->findChild<QTableView*>("DataGrid1");
    }
    void cleanup()
    {
        m_menu.reset();
        m_folder.reset();
    }

    void editIsStoredOnLeavingTheRow_data()
    {
        QTest::addColumn<QString>("leaveBy");
        QTest::newRow("moving down") << "down";
        QTest::newRow("closing with g1") << "g1";
        QTest::newRow("closing the window") << "close";
    }
    // The menu, fed in language 1, shows the edit at its next activation in language 2.
    void editIsStoredOnLeavingTheRow()
    {
        QFETCH(QString, leaveBy);
        Session::instance().language = 2;
        testsupport::MessageRecorder recorder;
        edit("Alap", "2g1", QStringLiteral("Anmeldung"));
        if (leaveBy == "down")
            QTest::keyClick(m_grid, Qt::Key_Down);
        else if (leaveBy == "g1")
            QTest::mouseClick(m_grid->window()->findChild<QPushButton*>("g1"), Qt::LeftButton);
        else
            m_grid->window()->close();
        QCOMPARE(stored("Alap", "2g1"), QStringLiteral("Anmeldung"));
        QVERIFY(recorder.shown().isEmpty());
        m_grid->window()->close();
        m_menu->activateWindow();
        QTRY_COMPARE(m_menu->findChild<QPushButton*>("g1")->text(), QStringLiteral("Anmeldung"));
    }

    // A row the database will not take (a second row for a key that exists) is not lost in silence.
    void refusedEditIsReported()
    {
        testsupport::MessageRecorder recorder;
        edit("Login", "felirkod", QStringLiteral("ALAP"));
        QTest::keyClick(m_grid, Qt::Key_Down);
        QTRY_COMPARE(recorder.shown().size(), 1);
        QCOMPARE(recorder.shown().at(0).style, int(platform::ErrorNotice));
        // The office's words in the box, the engine's in the error log.
        QCOMPARE(recorder.texts()[0], uzenetszoveg("elutasit"));
        QVERIFY(testsupport::readFile(platform::programFolder() + "/hiba.txt").contains("UNIQUE"));
        QCOMPARE(stored("Login", "1sz1"), QStringLiteral("Bejelentkezés")); // the row is kept
        QVERIFY(cell("Login", "felirkod").isValid()); // and the grid shows it again
    }
};

QTEST_MAIN(tst_felir)
#include "tst_felir.moc"
