#include "TestSupport.h"

#include "locale/felir.h"
#include "session/Alap.h"
#include "session/Session.h"

#include <memory>
#include <QAbstractItemModel>
#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>

using testsupport::MessageRecorder;
using testsupport::TestFolder;

class tst_felir : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void editIsStoredOnLeavingTheRow_data();
    void editIsStoredOnLeavingTheRow();
    void refusedEditIsReported();

private:
    QModelIndex cell(const QString& key, const QString& column) const;
    void edit(const QString& key, const QString& column, const QString& text);
    QString stored(const QString& key, const QString& column)
    {
        return m_folder->db()
                .scalar(QStringLiteral("SELECT [%1] FROM felirat WHERE felirkod = ?").arg(column),
                        {key})
                .toString();
    }

    std::unique_ptr<TestFolder> m_folder;
    std::unique_ptr<Alap> m_menu;
    felir* m_editor = nullptr;
    QTableView* m_grid = nullptr;
};

void tst_felir::init()
{
    m_folder = std::make_unique<TestFolder>();
    QVERIFY(m_folder->open());
    m_menu = std::make_unique<Alap>();
    QVERIFY(m_menu->load());
    installCaptionEditor(m_menu.get());
    m_menu->show();
    m_menu->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_menu.get()));
    // Shift+F5 opens the editor, which reads the table when it becomes active.
    QTest::keyClick(m_menu->findChild<QPushButton*>("g1"), Qt::Key_F5, Qt::ShiftModifier);
    m_editor = m_menu->findChild<felir*>();
    QVERIFY(m_editor);
    m_grid = m_editor->findChild<QTableView*>(QStringLiteral("DataGrid1"));
    QTRY_VERIFY(QApplication::activeWindow() == m_editor);
}

void tst_felir::cleanup()
{
    m_menu.reset();
    m_folder.reset();
}

QModelIndex tst_felir::cell(const QString& key, const QString& column) const
{
    const QAbstractItemModel* m = m_grid->model();
    const QModelIndexList rows
            = m->match(m->index(0, 0), Qt::DisplayRole, key, 1, Qt::MatchExactly);
    for (int c = 0; c < m->columnCount(); ++c) {
        if (!rows.isEmpty() && m->headerData(c, Qt::Horizontal).toString() == column)
            return m->index(rows.first().row(), c);
    }
    return {};
}

// As the user does it: go to the cell, type the new text and confirm it with Enter.
void tst_felir::edit(const QString& key, const QString& column, const QString& text)
{
    m_grid->setFocus();
    m_grid->setCurrentIndex(cell(key, column));
    QTest::keyClick(m_grid, Qt::Key_F2);
    auto* editor = m_grid->viewport()->findChild<QLineEdit*>();
    QVERIFY(editor);
    editor->selectAll();
    QTest::keyClicks(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
}

void tst_felir::editIsStoredOnLeavingTheRow_data()
{
    QTest::addColumn<QString>("leaveBy");
    QTest::newRow("moving down") << "down";
    QTest::newRow("closing with g1") << "g1";
    QTest::newRow("closing the window") << "close";
}

// The edit is written when the row is left, and the menu shows it at its next activation.
void tst_felir::editIsStoredOnLeavingTheRow()
{
    QFETCH(QString, leaveBy);
    Session::instance().language = 2; // the menu was fed in language 1
    MessageRecorder recorder;
    const QString before = stored("Alap", "2g1");
    edit("Alap", "2g1", QStringLiteral("Anmeldung"));
    QTest::keyClick(m_grid, Qt::Key_Right);
    QCOMPARE(stored("Alap", "2g1"), before); // still in the row

    if (leaveBy == QLatin1String("down"))
        QTest::keyClick(m_grid, Qt::Key_Down);
    else if (leaveBy == QLatin1String("g1"))
        QTest::mouseClick(m_editor->findChild<QPushButton*>("g1"), Qt::LeftButton);
    else
        m_editor->close();
    QCOMPARE(stored("Alap", "2g1"), QStringLiteral("Anmeldung"));
    QVERIFY(recorder.shown().isEmpty());

    // The menu reads its captions again when it is next activated.
    m_editor->close();
    m_menu->activateWindow();
    QTRY_VERIFY(m_menu->isActiveWindow());
    QCOMPARE(m_menu->findChild<QPushButton*>("g1")->text(), QStringLiteral("Anmeldung"));
}

// A row the database will not take (a second row for a key that exists) is not lost in silence.
void tst_felir::refusedEditIsReported()
{
    MessageRecorder recorder;
    edit("Login", "felirkod", QStringLiteral("ALAP"));
    QTest::keyClick(m_grid, Qt::Key_Down);
    QTRY_COMPARE(recorder.shown().size(), 1);
    QCOMPARE(recorder.shown().at(0).style, int(platform::ErrorNotice));
    QVERIFY2(recorder.shown().at(0).text.contains(QLatin1String("UNIQUE")),
             qPrintable(recorder.shown().at(0).text));
    // The grid shows again what is stored.
    QCOMPARE(stored("Login", "1sz1"), QStringLiteral("Bejelentkezés"));
    QVERIFY(cell("Login", "felirkod").isValid());
}

QTEST_MAIN(tst_felir)
#include "tst_felir.moc"
