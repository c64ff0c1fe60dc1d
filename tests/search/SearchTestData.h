#pragma once

#include "TestSupport.h"
#include "platform/Database.h"
#include "search/keres.h"
#include "session/Session.h"

#include <QLineEdit>
#include <QTest>

// Rows for the search tests, written straight into the tables, and the screen they look at.
inline qint64 storeRow(platform::Database& db, const char* table, const QVariantMap& row)
{
    QVariant key;
    if (!db.insert(table, row, &key))
        qWarning("%s: row not stored", table);
    return key.toLongLong();
}

inline qint64 addClient(platform::Database& db, const QVariant& name,
                        const QVariant& place = "Budapest", const QVariant& postcode = "1011")
{
    return storeRow(db, "ugyfelek",
                    {{"unev1", name},
                     {"uhely", place},
                     {"uutca", "Fő utca 1."},
                     {"uirsz", postcode},
                     {"uorszag", "Magyarország"}});
}

inline void addCase(platform::Database& db, const QString& number, qint64 client,
                    QVariant opponent = "Ellenfél Kft.", QVariant start = "2008.01.10")
{
    storeRow(db, "ugyek",
             {{"ugyszam", number},
              {"ugyfelkod", client},
              {"ugytipus", "Polgári ügy"},
              {"ellnev", opponent},
              {"kezdet", start}});
}

// A search screen in a mode ("1" clients, "2" cases), shown as the main menu shows it.
struct Screen
{
    keres w{testsupport::database()};
    explicit Screen(const QString& tipus)
    {
        w.setTipus(tipus);
        w.show();
        if (!QTest::qWaitForWindowExposed(&w))
            qWarning("search screen not shown");
    }
    QLineEdit* field(const QString& name) { return w.findChild<QLineEdit*>(name); }
    void type(const QString& name, const QString& text) // key by key, as the user does
    {
        for (const QChar c : text)
            QTest::sendKeyEvent(QTest::Click, field(name), Qt::Key(c.toUpper().unicode()), c, {});
    }
    void search(const QString& name, const QString& text) // types a filter and presses Enter
    {
        type(name, text);
        QTest::keyClick(field(name), Qt::Key_Return);
    }
    void click(const char* b) { QTest::mouseClick(w.findChild<QWidget*>(b), Qt::LeftButton); }
};
