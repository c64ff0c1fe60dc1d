#include "clients/ComboAutoComplete.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>

class tst_comboautocomplete : public QObject
{
    Q_OBJECT
private slots:
    void completesTheTypedPrefix_data();
    void completesTheTypedPrefix();
    void firstLetterOpensTheList();
    void backspaceIsLeftToTheBox();
};

namespace {

// Types as a user would; characters beyond ASCII are sent one by one.
void type(QWidget* w, const QString& text)
{
    for (const QChar c : text)
        QTest::sendKeyEvent(QTest::Click, w, Qt::Key(c.toUpper().unicode()), QString(c), {});
}

} // namespace

void tst_comboautocomplete::completesTheTypedPrefix_data()
{
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("selected");
    QTest::addColumn<int>("found");

    const QStringList countries{"Ausztria", "Magyarország", "Németország", "Ábel-sziget"};
    QTest::newRow("one letter") << countries << "n"
                                << "Németország"
                                << "émetország" << 2;
    QTest::newRow("next letter keeps the completion") << countries << "né"
                                                      << "Németország"
                                                      << "metország" << 2;
    QTest::newRow("letter case ignored") << countries << "MAGY"
                                         << "Magyarország"
                                         << "arország" << 1;
    QTest::newRow("accented capitals") << countries << "ÁBEL"
                                       << "Ábel-sziget"
                                       << "-sziget" << 3;
    QTest::newRow("accents count") << countries << "á"
                                   << "Ábel-sziget"
                                   << "bel-sziget" << 3;
    QTest::newRow("plain a is not á") << countries << "a"
                                      << "Ausztria"
                                      << "usztria" << 0;
    QTest::newRow("whole entry typed") << countries << "ausztria"
                                       << "Ausztria"
                                       << "" << 0;
    QTest::newRow("no match keeps the typed text") << countries << "nx"
                                                   << "Nx"
                                                   << "" << -1;
    QTest::newRow("apostrophe") << QStringList{"Côte d'Ivoire"} << "côte d"
                                << "Côte d'Ivoire"
                                << "'Ivoire" << 0;
}

void tst_comboautocomplete::completesTheTypedPrefix()
{
    QFETCH(QStringList, entries);
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    QFETCH(QString, selected);
    QFETCH(int, found);

    QComboBox box;
    box.setEditable(true);
    box.addItems(entries);
    box.clearEditText();
    auto* complete = new clients::ComboAutoComplete(&box);
    box.show();
    type(&box, typed);

    QCOMPARE(box.currentText(), shown);
    QCOMPARE(box.lineEdit()->selectedText(), selected);
    QCOMPARE(complete->foundIndex(), found);
    QCOMPARE(complete->noMatch(), found < 0);
    QCOMPARE(box.count(), entries.size()); // typed text is never added to the list
    box.hidePopup();
}

void tst_comboautocomplete::firstLetterOpensTheList()
{
    QComboBox box;
    box.setEditable(true);
    box.addItems({"Nagy-Britannia"});
    box.clearEditText();
    new clients::ComboAutoComplete(&box);
    box.show();
    QVERIFY(!box.view()->isVisible());

    QTest::keyClick(&box, 'n');
    QVERIFY(box.view()->isVisible());
    QCOMPARE(box.currentText(), QString("Nagy-Britannia"));
    QCOMPARE(box.lineEdit()->selectionStart(), 1);
    QCOMPARE(box.lineEdit()->selectedText(), QString("agy-Britannia"));

    // With the list open the keys still reach the box.
    QTest::keyClick(box.view(), 'a');
    QCOMPARE(box.currentText(), QString("Nagy-Britannia"));
    QCOMPARE(box.lineEdit()->selectedText(), QString("gy-Britannia"));
    box.hidePopup();
}

void tst_comboautocomplete::backspaceIsLeftToTheBox()
{
    QComboBox box;
    box.setEditable(true);
    box.addItems({"Németország"});
    box.clearEditText();
    auto* complete = new clients::ComboAutoComplete(&box);
    box.show();

    QTest::keyClick(&box, 'n');
    box.hidePopup();
    // Backspace removes the completed tail and nothing is completed again.
    QTest::keyClick(&box, Qt::Key_Backspace);
    QCOMPARE(box.currentText(), QString("N"));
    QTest::keyClick(&box, Qt::Key_Backspace);
    QCOMPARE(box.currentText(), QString());
    QCOMPARE(complete->foundIndex(), 0);
}

QTEST_MAIN(tst_comboautocomplete)
#include "tst_comboautocomplete.moc"
