#pragma once

#include <QObject>

class QComboBox;

namespace platform {

// Locks a choice box as the record screens lock their text fields: a locked box shows its value,
// takes the focus and lets its text be selected and copied, but takes no change by any means:
// typing, pasting, the mouse wheel, the arrow and page keys, or its drop-down list. Unlocked,
// the box behaves as it always does.
//
// The lock watches the box it belongs to (its parent) and lives as long as the box.
class LockedCombo : public QObject
{
    Q_OBJECT
public:
    explicit LockedCombo(QComboBox* box);

    void setLocked(bool locked);
    bool isLocked() const { return m_locked; }

    // The box's lock, made at the first call.
    static LockedCombo* of(QComboBox* box);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QComboBox* m_box;
    bool m_locked = false;
};

// Locks or unlocks the box (see LockedCombo).
void lockComboBox(QComboBox* box, bool locked);

} // namespace platform
