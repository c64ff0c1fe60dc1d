#pragma once

#include "platform/Database.h"
#include "session/Jog.h"

#include <optional>
#include <QList>
#include <QObject>
#include <QString>
#include <QVariantMap>

class QAbstractButton;
class QComboBox;
class QLineEdit;
class QWidget;

namespace records {

// What a record screen is doing, shown through its hidden hivo field as "", "1", "2", "3".
enum class Mode { Showing, New, Changed, NewForCase };

QString hivoText(Mode mode);
Mode modeOf(const QString& hivo);

// One entry field of a record screen: the widget (by object name) and the column it shows.
struct Field
{
    enum Kind {
        Text, // a line of text; an empty one is stored as no value
        YesNo, // an option pair: widget is "yes" (stored as -1), noWidget is "no" (0)
        Choice, // an editable choice box; its text is the value
        Date, // a date typed as text; stored as typed, an empty one as no value
        // Shown, emptied, locked and opened with the record, but never stored with it: a
        // name read from another table, or an entry field of another table (with no column,
        // it is not loaded either).
        Shown,
    };
    Field(QString widgetName, QString columnName, Kind fieldKind = Text, QString noOption = {},
          bool alwaysOpen = false)
        : widget(std::move(widgetName))
        , column(std::move(columnName))
        , kind(fieldKind)
        , noWidget(std::move(noOption))
        , neverLocked(alwaysOpen)
    {
    }
    QString widget;
    QString column;
    Kind kind = Text;
    QString noWidget;
    // A field that stays open whatever the screen's state (an option pair, say).
    bool neverLocked = false;
};

// The commands every record screen has.
enum class Role { New, Change, Save, Delete, Close };

struct Button
{
    Button(Role buttonRole, QString widgetName, std::optional<Right> grantedBy = std::nullopt)
        : role(buttonRole), widget(std::move(widgetName)), right(grantedBy)
    {
    }
    Role role;
    QString widget;
    std::optional<Right> right; // the right that grants the command; none for every user
};

// The edit model shared by the record screens: one table of fields that drives loading a row,
// the values to store, locking, unlocking and emptying; the mode in hivo; the command buttons'
// states and rights; and the question before an entry in progress is thrown away.
class RecordForm : public QObject
{
    Q_OBJECT
public:
    RecordForm(QWidget* screen, QList<Field> fields, QList<Button> buttons,
               QLineEdit* hivo = nullptr);

    // Writes every field from the row's column of the same name; a missing column leaves
    // its field as it is.
    void load(const platform::Row& row);
    // Each field's value by column: no value for an empty text, -1/0 for a chosen option
    // pair (a pair with neither chosen is left out, so it is not written). Shown fields are
    // left out.
    QVariantMap values() const;
    void clear();

    // Locks (or opens) every field but those that are never locked and those listed.
    void setLocked(bool locked, const QStringList& except = {});
    bool isLocked(const QString& widget) const;

    Mode mode() const;
    void setMode(Mode mode);

    // Entering: Save on, New, Change and Delete off; showing: the other way round.
    void setEntering(bool entering);
    // An entry is in progress while Save is enabled.
    bool isEntering() const;

    // The rights gate of a command: true when the session may use it; otherwise the user is
    // told "nincsjog".
    bool allowed(Role role);
    // Before the entry in progress is thrown away (closing, another record shown): asks
    // "ments" and returns true when there is no entry or the answer is Yes.
    bool mayDiscard();

    QWidget* field(const QString& widget) const;
    QAbstractButton* button(Role role) const;

private:
    QWidget* m_screen;
    QList<Field> m_fields;
    QList<Button> m_buttons;
    QLineEdit* m_hivo;
};

} // namespace records
