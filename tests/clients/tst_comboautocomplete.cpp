#include "clients/ComboAutoComplete.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>

class tst_comboautocomplete : public QObject
{
    Q_OBJECT
private slots:
    void completesTheTypedPrefix_data()
    {
        QTest::addColumn<QStringList>("entries");
        QTest::addColumn<QString>("typed"); // \b is Backspace
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("selected");
        QTest::addColumn<int>("found");
        const QStringList countries{"Ausztria", "Magyarország", "Németország", "Ábel-sziget"};
        const QStringList britain{"Nagy-Britannia"};
        QTest::newRow("first letter") << britain << "n" << "Nagy-Britannia" << "agy-Britannia" << 0;
        QTest::newRow("next letter") << britain << "na" << "Nagy-Britannia" << "gy-Britannia" << 0;
        QTest::newRow("accents count") << countries << "á" << "Ábel-sziget" << "bel-sziget" << 3;
        QTest::newRow("no match keeps the typed text") << countries << "nx" << "Nx" << "" << -1;
        QTest::newRow("backspace is not completed")
                << QStringList{"Németország"} << "n\b" << "N" << "" << 0;
        QTest::newRow("apostrophe")
                << QStringList{"Côte d'Ivoire"} << "côte d" << "Côte d'Ivoire" << "'Ivoire" << 0;
    }
    void completesTheTypedPrefix()
    {
        QFETCH(QStringList, entries);
        QFETCH(QString, typed);
        QComboBox box;
        auto* complete = new clients::ComboAutoComplete(&box);
        box.addItems(entries);
        box.clearEditText();
        box.show();
        QVERIFY(!box.view()->isVisible());
        // Types as a user would: the first letter opens the list, which then has the keyboard.
        for (const QChar c : typed) {
            QWidget* target = box.view()->isVisible() ? box.view() : static_cast<QWidget*>(&box);
            const Qt::Key key = c == u'\b' ? Qt::Key_Backspace : Qt::Key(c.toUpper().unicode());
            QTest::sendKeyEvent(QTest::Click, target, key, QString(c), {});
        }
        QVERIFY(box.view()->isVisible());
        QTEST(box.currentText(), "shown");
        QTEST(box.lineEdit()->selectedText(), "selected");
        QTEST(complete->foundIndex(), "found");
        QCOMPARE(complete->noMatch(), complete->foundIndex() < 0);
        box.hidePopup();
    }
};

QTEST_MAIN(tst_comboautocomplete)
#include "tst_comboautocomplete.moc"
