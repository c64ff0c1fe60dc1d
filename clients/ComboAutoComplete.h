#pragma once

#include <QObject>

class QComboBox;

namespace clients {

// Type-ahead for an editable choice box: each typed character replaces the selected text, the
// first list entry that begins with the typed text (letter case ignored, accents counted) is
// put into the box whole, and its completed tail is selected so that the next character
// replaces it. The first character opens the drop-down list. Backspace, Enter and the other
// control keys are left to the box; text that matches no entry stays as typed.
//
// It watches the box's key presses (and those of its open drop-down list) and takes the
// printable ones, so the box never inserts a character a second time. It also turns off the
// box's own completer and its habit of adding typed text to the list.
//
// While the list is open, Tab and Enter take its highlighted entry (the completion, or the one
// the arrow keys moved to), close the list and go on to the next field; Shift+Tab goes back to
// the field before. With no entry highlighted the typed text stays.
class ComboAutoComplete : public QObject
{
    Q_OBJECT
public:
    explicit ComboAutoComplete(QComboBox* box);

    // The outcome of the last typed character, or of the entry taken from the list: the entry
    // found, or -1 with the no-match mark.
    int foundIndex() const { return m_found; }
    bool noMatch() const { return m_noMatch; }

    // Types one character into the box as a user's key press would.
    void type(QChar c);

    // The first entry that begins with the prefix, or -1.
    int findPrefix(const QString& prefix) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void takeAndLeave(bool backwards);

    QComboBox* m_box;
    int m_found = -1;
    bool m_noMatch = false;
};

} // namespace clients
