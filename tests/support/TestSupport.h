#pragma once

// Shared pieces of the tests; it brings in the Qt widgets that most screen tests drive.

#include "platform/Database.h"
#include "platform/Messages.h"
#include "store/Catalogue.h"

#include <deque>
#include <memory>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QList>
#include <QListWidget>
#include <QPushButton>
#include <QStringList>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

namespace platform {
class ListSource;
}

namespace testsupport {

// A fresh data folder in its own temporary directory, prepared by the same code as
// causora-prepare, beside a stand-in program folder that holds jog.ini and hiba.txt. It owns
// the database the program would open, and the session reads its messages and captions.
class TestFolder
{
public:
    explicit TestFolder(bool demo = false);
    ~TestFolder();
    bool isValid() const { return m_valid; }
    QString root() const { return m_dir.path(); }
    QString programFolder() const;
    QString dataFolder() const;
    QString dataFile() const;
    // Writes jog.ini naming the data folder and runs the start-up open; true when it opened.
    bool open();
    platform::Database& db() { return m_db; }

private:
    QTemporaryDir m_dir;
    bool m_valid = false;
    platform::Database m_db;
    store::Catalogue m_catalogue{m_db};
};

// The database of the test folder made last (the session's), for tests whose folder is out of
// reach. Only valid while that folder exists.
platform::Database& database();

// Reports any message box that no test expected instead of waiting for a user, and fails the
// test (closing the dialog) when a modal dialog stays up that no test drives.
void installUnexpectedMessageHandler();

// While one exists, the test drives the modal dialogs it opens itself.
struct ModalDialogsExpected
{
    ModalDialogsExpected();
    ~ModalDialogsExpected();
};

// Writes a file byte for byte.
void writeFile(const QString& path, const QByteArray& bytes);
QByteArray readFile(const QString& path);

// Stands in for the user in front of message boxes: records every box and answers from a
// script (the answers given first, then those added); with nothing scripted it presses the box's
// default button.
class MessageRecorder
{
public:
    explicit MessageRecorder(std::initializer_list<int> answers = {});
    ~MessageRecorder();
    void answer(int answer) { m_answers.push_back(answer); }
    const QList<platform::ShownMessage>& shown() const { return m_shown; }
    QStringList texts() const;
    void clear() { m_shown.clear(); }

private:
    QList<platform::ShownMessage> m_shown;
    std::deque<int> m_answers;
};

// What a list grid shows, every page read: its visible headings left to right, then each
// row's visible values.
QList<QStringList> gridShown(const QTableView* grid, platform::ListSource& source);

// The shown window of class T.
template<class T>
T* visible()
{
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* t = qobject_cast<T*>(w); t && t->isVisible())
            return t;
    return nullptr;
}
// The record screen of class T that is loaded (shown or hidden) and not being unloaded.
template<class T>
T* loaded()
{
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* t = qobject_cast<T*>(w); t && !t->isUnloading())
            return t;
    return nullptr;
}
// Deletes every window but `keep` that a test left open. Windows with a parent (a choice box's
// list) go with it: deleted first, they would leave the parent a dangling pointer.
void deleteWindows(const QWidget* keep = nullptr);
// Types a character at a time (key clicks carry ASCII only); \b is Backspace.
void type(QWidget* w, const QString& text);
// Enters a field, types, and leaves it with Tab.
void leave(QWidget* w, const QString& typed = {});
void clickItem(QListWidget* list, const QString& text);
// The texts the named fields of a screen show (a choice box's current one); "?" for a field
// that is not there or shows no text.
QStringList shown(const QWidget* screen, const QStringList& names);
// The widths of a grid's visible columns, left to right, and what twips give on screen.
QList<int> columnWidths(const QTableView* grid);
QList<int> pixels(QList<int> twips);
// The texts of message codes in the session's language.
QStringList messages(QStringList codes);
// Every value of every row a query returns, as text: to compare what a command touched.
QStringList values(platform::Database& db, const QString& sql, const QVariantList& params = {});

} // namespace testsupport
