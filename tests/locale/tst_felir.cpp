#include "TestSupport.h"

#include "locale/felir.h"
#include "session/Alap.h"
#include "session/Session.h"

#include <memory>
#include <QAbstractItemModel>
#include <QApplication>
#include <QLabel>
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
    void shiftF5OpensTheEditor();
    void listsEveryRowAndColumn();
    void keepsItsDesignTexts();
    void editIsStoredOnLeavingTheRow_data();
    void editIsStoredOnLeavingTheRow();
    void refusedEditIsReported();
    void editedCaptionShowsOnTheMenu();

private:
    felir* openEditor();
    QModelIndex cell(const QString& key, const QString& column) const;
    void editCell(const QModelIndex& index, const QString& text);
    QString stored(const QString& key, const QString& column) const;

    std::unique_ptr<TestFolder> m_folder;
    std::unique_ptr<Alap> m_menu;
    QTableView* m_grid = nullptr;
};

void tst_felir::init()
{
    m_folder = std::make_unique<TestFolder>();
    testsupport::writeFile(m_folder->programFolder() + QStringLiteral("/jog.ini"),
                           QStringLiteral("\"path=%1\"\r\n").arg(m_folder->dataFolder()).toUtf8());
    m_menu = std::make_unique<Alap>();
    QVERIFY(m_menu->load());
    installCaptionEditor(m_menu.get());
    m_menu->show();
    m_menu->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_menu.get()));
}

void tst_felir::cleanup()
{
    m_menu.reset();
    m_folder.reset();
    m_grid = nullptr;
}

felir* tst_felir::openEditor()
{
    QTest::keyClick(m_menu->findChild<QPushButton*>("g1"), Qt::Key_F5, Qt::ShiftModifier);
    auto* editor = m_menu->findChild<felir*>();
    if (!editor)
        return nullptr;
    m_grid = editor->findChild<QTableView*>(QStringLiteral("DataGrid1"));
    // The editor reads the table when it becomes active; edits start after that.
    QTest::qWaitFor([editor] { return QApplication::activeWindow() == editor; });
    return QApplication::activeWindow() == editor ? editor : nullptr;
}

QModelIndex tst_felir::cell(const QString& key, const QString& column) const
{
    const QAbstractItemModel* m = m_grid->model();
    int col = -1;
    for (int c = 0; c < m->columnCount(); ++c) {
        if (m->headerData(c, Qt::Horizontal).toString() == column)
            col = c;
    }
    for (int r = 0; r < m->rowCount(); ++r) {
        if (m->index(r, 0).data().toString() == key)
            return m->index(r, col);
    }
    return {};
}

// As the user does it: go to the cell, type the new text and confirm it with Enter.
void tst_felir::editCell(const QModelIndex& index, const QString& text)
{
    m_grid->setFocus();
    m_grid->setCurrentIndex(index);
    QTest::keyClick(m_grid, Qt::Key_F2);
    auto* editor = qobject_cast<QLineEdit*>(m_grid->indexWidget(index));
    if (!editor)
        editor = m_grid->viewport()->findChild<QLineEdit*>();
    QVERIFY(editor);
    editor->selectAll();
    QTest::keyClicks(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
}

QString tst_felir::stored(const QString& key, const QString& column) const
{
    return Session::instance()
            .database
            .scalar(QStringLiteral("SELECT [%1] FROM felirat WHERE felirkod = ?").arg(column),
                    {key})
            .toString();
}

void tst_felir::shiftF5OpensTheEditor()
{
    felir* editor = openEditor();
    QVERIFY(editor);
    QVERIFY(editor->isVisible());
    QCOMPARE(editor->objectName(), QStringLiteral("felir"));
    QVERIFY(m_menu->isVisible());
    // There is only one of it.
    QTest::keyClick(m_menu.get(), Qt::Key_F5, Qt::ShiftModifier);
    QCOMPARE(m_menu->findChildren<felir*>().size(), 1);
}

void tst_felir::listsEveryRowAndColumn()
{
    QVERIFY(m_folder->db().exec(
            QStringLiteral("INSERT INTO felirat (felirkod, [1sz1]) VALUES ('nincsilyen', 'x')")));
    QVERIFY(openEditor());
    const QAbstractItemModel* m = m_grid->model();
    QCOMPARE(m->rowCount(),
             m_folder->db().scalar(QStringLiteral("SELECT count(*) FROM felirat")).toInt());
    const QList<platform::ColumnInfo> columns = m_folder->db().columns(QStringLiteral("felirat"));
    QCOMPARE(m->columnCount(), columns.size());
    for (int c = 0; c < columns.size(); ++c)
        QCOMPARE(m->headerData(c, Qt::Horizontal).toString(), columns.at(c).name);
    QCOMPARE(m->index(0, 0).data().toString(), QStringLiteral("Alap"));
    QVERIFY(cell(QStringLiteral("nincsilyen"), QStringLiteral("1sz1")).isValid());
}

void tst_felir::keepsItsDesignTexts()
{
    Session::instance().language = 3;
    QVERIFY(m_folder->db().exec(QStringLiteral("INSERT INTO felirat (felirkod, [3sz1], [3g1]) "
                                               "VALUES ('felir', 'Captions', 'Close')")));
    felir* editor = openEditor();
    QVERIFY(editor);
    QCOMPARE(editor->findChild<QLabel*>("sz1")->text(), QStringLiteral("Feliratok"));
    QCOMPARE(editor->findChild<QPushButton*>("g1")->text(), QStringLiteral("Bezár"));
}

void tst_felir::editIsStoredOnLeavingTheRow_data()
{
    QTest::addColumn<QString>("leaveBy");
    QTest::newRow("moving down") << "down";
    QTest::newRow("closing with g1") << "g1";
    QTest::newRow("closing the window") << "close";
}

void tst_felir::editIsStoredOnLeavingTheRow()
{
    QFETCH(QString, leaveBy);
    felir* editor = openEditor();
    QVERIFY(editor);
    MessageRecorder recorder;
    editCell(cell("Login", "3g2"), QStringLiteral("Sign in"));
    // Still in the row: nothing is written yet.
    QCOMPARE(stored("Login", "3g2"), QStringLiteral("OK"));
    QTest::keyClick(m_grid, Qt::Key_Right);
    QCOMPARE(stored("Login", "3g2"), QStringLiteral("OK"));

    if (leaveBy == QLatin1String("down"))
        QTest::keyClick(m_grid, Qt::Key_Down);
    else if (leaveBy == QLatin1String("g1"))
        QTest::mouseClick(editor->findChild<QPushButton*>("g1"), Qt::LeftButton);
    else
        editor->close();
    QCOMPARE(stored("Login", "3g2"), QStringLiteral("Sign in"));
    QVERIFY(recorder.shown().isEmpty());
}

// A row the database will not take (a second row for a key that exists) is not lost in silence.
void tst_felir::refusedEditIsReported()
{
    QVERIFY(openEditor());
    MessageRecorder recorder;
    editCell(cell("Login", "felirkod"), QStringLiteral("ALAP"));
    QTest::keyClick(m_grid, Qt::Key_Down);
    QTRY_COMPARE(recorder.shown().size(), 1);
    QCOMPARE(recorder.shown().at(0).style, int(platform::ErrorNotice));
    QVERIFY2(recorder.shown().at(0).text.contains(QLatin1String("UNIQUE")),
             qPrintable(recorder.shown().at(0).text));
    // The grid shows again what is stored.
    QCOMPARE(stored("Login", "1sz1"), QStringLiteral("Bejelentkezés"));
    QVERIFY(cell("Login", "felirkod").isValid());
}

void tst_felir::editedCaptionShowsOnTheMenu()
{
    Session::instance().language = 2;
    felir* editor = openEditor();
    QVERIFY(editor);
    editCell(cell("Alap", "2g1"), QStringLiteral("Anmeldung"));
    QTest::mouseClick(editor->findChild<QPushButton*>("g1"), Qt::LeftButton);
    QVERIFY(!editor->isVisible());
    QCOMPARE(stored("Alap", "2g1"), QStringLiteral("Anmeldung"));
    QTRY_VERIFY(m_menu->isActiveWindow());
    QCOMPARE(m_menu->findChild<QPushButton*>("g1")->text(), QStringLiteral("Anmeldung"));
}

QTEST_MAIN(tst_felir)
#include "tst_felir.moc"
