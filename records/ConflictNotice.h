#pragma once

#include "store/Conflicts.h"

#include <functional>
#include <QObject>
#include <QPointer>

class QDialog;
class QLabel;
class QLineEdit;
class QPushButton;

namespace records {

// The conflict-of-interest notice of a name field: each edit of the field runs the check, and
// the records whose names match are named in a small label beside the field, with a button that
// opens their list in a window of its own. It only informs: it never asks and never stops a
// save. The label is named <field>utkozes, the button <field>utkozeslista.
class ConflictNotice : public QObject
{
    Q_OBJECT
public:
    using Check = std::function<QList<store::ConflictMatch>(const QString& name)>;
    // The label and the button take the last two columns of the field's place in its grid.
    ConflictNotice(QLineEdit* field, Check check);

    // Runs the check on the field's text now.
    void recheck();
    // Hides the notice (another record is shown, the entry has ended).
    void clear();

    const QList<store::ConflictMatch>& matches() const { return m_matches; }
    QLabel* label() const { return m_label; }
    QPushButton* button() const { return m_button; }
    // The window of the matches, while it is open.
    QDialog* listWindow() const;

    // A record as the notice names it: "ügyfél KOVÁCS (12)", "ügy 10/A: Kovács".
    static QString describe(const store::ConflictMatch& match);

public slots:
    void showList();

private:
    QLineEdit* m_field;
    Check m_check;
    QLabel* m_label = nullptr;
    QPushButton* m_button = nullptr;
    QPointer<QDialog> m_window;
    QList<store::ConflictMatch> m_matches;
};

} // namespace records
