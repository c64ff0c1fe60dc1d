#pragma once

#include "platform/Database.h"
#include "search/keres.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVariant>

// Rows for the search tests, written straight into the tables, and the screen they look at.
namespace searchtest {

inline qint64 addClient(platform::Database& db, const QVariant& name, const QVariant& place = "Budapest",
                        const QVariant& street = "Fő utca 1.", const QVariant& postcode = "1011",
                        const QVariant& country = "Magyarország")
{
    QVariant key;
    QString error;
    if (!db.insert("ugyfelek",
              {{"unev1", name}, {"uhely", place}, {"uutca", street}, {"uirsz", postcode},
               {"uorszag", country}},
              &key, &error))
        qWarning("client not stored: %s", qPrintable(error));
    return key.toLongLong();
}

inline void addCase(platform::Database& db, const QString& number, qint64 client,
                    const QVariant& type = "Polgári ügy", const QVariant& opponent = "Ellenfél Kft.",
                    const QVariant& start = "2008.01.10")
{
    QString error;
    if (!db.insert("ugyek",
                   {{"ugyszam", number}, {"ugyfelkod", client}, {"ugytipus", type},
                    {"ellnev", opponent}, {"kezdet", start}},
                   nullptr, &error))
        qWarning("case not stored: %s", qPrintable(error));
}

// Types into a field key by key, as the user does.
inline void type(QLineEdit* w, const QString& text)
{
    for (const QChar c : text)
        QTest::sendKeyEvent(QTest::Click, w, Qt::Key(c.toUpper().unicode()), QString(c), {});
}

// A search screen in a mode ("1" clients, "2" cases), shown as the main menu shows it.
struct Screen
{
    keres w;
    explicit Screen(const QString& tipus)
    {
        w.setTipus(tipus);
        w.show();
        if (!QTest::qWaitForWindowExposed(&w))
            qWarning("search screen not shown");
    }
    QLineEdit* field(const QString& name) { return w.findChild<QLineEdit*>(name); }
    // Types a filter and presses Enter in it.
    void search(const QString& filter, const QString& text)
    {
        type(field(filter), text);
        QTest::keyClick(field(filter), Qt::Key_Return);
    }
    void click(const char* button)
    {
        QTest::mouseClick(w.findChild<QPushButton*>(button), Qt::LeftButton);
    }
};

} // namespace searchtest
