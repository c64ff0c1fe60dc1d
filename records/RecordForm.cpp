#include "records/RecordForm.h"

#include "locale/Uzenet.h"
#include "platform/LockedCombo.h"
#include "session/Jog.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QButtonGroup>
#include <QComboBox>
#include <QEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace records {

namespace {

QVariant noValue()
{
    return QVariant(QMetaType(QMetaType::QString));
}

QString textOf(QWidget* w)
{
    if (auto* edit = qobject_cast<QLineEdit*>(w))
        return edit->text();
    if (auto* box = qobject_cast<QComboBox*>(w))
        return box->currentText();
    if (auto* text = qobject_cast<QPlainTextEdit*>(w))
        return text->toPlainText();
    if (auto* rich = qobject_cast<QTextEdit*>(w))
        return rich->toPlainText();
    return QString();
}

void setTextOf(QWidget* w, const QString& text)
{
    if (auto* edit = qobject_cast<QLineEdit*>(w))
        edit->setText(text);
    else if (auto* box = qobject_cast<QComboBox*>(w))
        box->setEditText(text);
    else if (auto* plain = qobject_cast<QPlainTextEdit*>(w))
        plain->setPlainText(text);
    else if (auto* rich = qobject_cast<QTextEdit*>(w))
        rich->setPlainText(text);
}

void setOption(QAbstractButton* button, bool checked)
{
    if (!button)
        return;
    // An exclusive group would keep one of the pair checked.
    QButtonGroup* group = button->group();
    const bool exclusive = group && group->exclusive();
    if (exclusive)
        group->setExclusive(false);
    button->setChecked(checked);
    if (exclusive)
        group->setExclusive(true);
}

} // namespace

QString hivoText(Mode mode)
{
    switch (mode) {
    case Mode::Showing:
        return QString();
    case Mode::New:
        return QStringLiteral("1");
    case Mode::Changed:
        return QStringLiteral("2");
    case Mode::NewForCase:
        return QStringLiteral("3");
    }
    return QString();
}

Mode modeOf(const QString& hivo)
{
    const QString h = hivo.trimmed();
    if (h == QLatin1String("1"))
        return Mode::New;
    if (h == QLatin1String("2"))
        return Mode::Changed;
    if (h == QLatin1String("3"))
        return Mode::NewForCase;
    return Mode::Showing;
}

RecordForm::RecordForm(QWidget* screen, QList<Field> fields, QList<Button> buttons, QLineEdit* hivo)
    : QObject(screen)
    , m_screen(screen)
    , m_fields(std::move(fields))
    , m_buttons(std::move(buttons))
    , m_hivo(hivo)
{
}

QWidget* RecordForm::field(const QString& widget) const
{
    return m_screen->findChild<QWidget*>(widget);
}

QAbstractButton* RecordForm::button(Role role) const
{
    for (const Button& b : m_buttons) {
        if (b.role == role)
            return m_screen->findChild<QAbstractButton*>(b.widget);
    }
    return nullptr;
}

void RecordForm::load(const platform::Row& row)
{
    for (const Field& f : m_fields) {
        if (f.column.isEmpty() || !row.contains(f.column))
            continue;
        if (f.kind == Field::YesNo) {
            // A stored yes reads as -1; no and no value choose "no".
            const bool yes = row.value(f.column).toInt() != 0;
            setOption(m_screen->findChild<QAbstractButton*>(f.widget), yes);
            setOption(m_screen->findChild<QAbstractButton*>(f.noWidget), !yes);
            continue;
        }
        setTextOf(field(f.widget), row.text(f.column));
    }
}

QVariantMap RecordForm::values() const
{
    QVariantMap values;
    for (const Field& f : m_fields) {
        if (f.kind == Field::Shown)
            continue;
        if (f.kind == Field::YesNo) {
            auto* yes = m_screen->findChild<QAbstractButton*>(f.widget);
            auto* no = m_screen->findChild<QAbstractButton*>(f.noWidget);
            if (yes && yes->isChecked())
                values.insert(f.column, -1);
            else if (no && no->isChecked())
                values.insert(f.column, 0);
            continue;
        }
        const QString text = textOf(field(f.widget));
        values.insert(f.column, text.isEmpty() ? noValue() : QVariant(text));
    }
    return values;
}

void RecordForm::clear()
{
    for (const Field& f : m_fields) {
        if (f.kind == Field::YesNo) {
            setOption(m_screen->findChild<QAbstractButton*>(f.widget), false);
            setOption(m_screen->findChild<QAbstractButton*>(f.noWidget), false);
            continue;
        }
        setTextOf(field(f.widget), QString());
    }
}

void RecordForm::setLocked(bool locked, const QStringList& except)
{
    for (const Field& f : m_fields) {
        if (f.neverLocked)
            continue;
        const bool lock = locked || except.contains(f.widget);
        QWidget* w = field(f.widget);
        if (auto* edit = qobject_cast<QLineEdit*>(w))
            edit->setReadOnly(lock);
        else if (auto* box = qobject_cast<QComboBox*>(w))
            platform::lockComboBox(box, lock);
        else if (auto* plain = qobject_cast<QPlainTextEdit*>(w))
            plain->setReadOnly(lock);
        else if (auto* rich = qobject_cast<QTextEdit*>(w))
            rich->setReadOnly(lock);
        else if (w)
            w->setEnabled(!lock);
    }
}

bool RecordForm::isLocked(const QString& widget) const
{
    QWidget* w = field(widget);
    if (auto* edit = qobject_cast<QLineEdit*>(w))
        return edit->isReadOnly();
    if (auto* box = qobject_cast<QComboBox*>(w))
        return platform::LockedCombo::of(box)->isLocked();
    if (auto* plain = qobject_cast<QPlainTextEdit*>(w))
        return plain->isReadOnly();
    if (auto* rich = qobject_cast<QTextEdit*>(w))
        return rich->isReadOnly();
    return w && !w->isEnabled();
}

Mode RecordForm::mode() const
{
    return m_hivo ? modeOf(m_hivo->text()) : Mode::Showing;
}

void RecordForm::setMode(Mode mode)
{
    if (m_hivo)
        m_hivo->setText(hivoText(mode));
}

void RecordForm::setEntering(bool entering)
{
    for (const Button& b : m_buttons) {
        auto* w = m_screen->findChild<QAbstractButton*>(b.widget);
        if (!w)
            continue;
        switch (b.role) {
        case Role::Save:
            w->setEnabled(entering);
            break;
        case Role::New:
        case Role::Change:
        case Role::Delete:
            w->setEnabled(!entering);
            break;
        case Role::Close:
            break;
        }
    }
}

bool RecordForm::isEntering() const
{
    QAbstractButton* save = button(Role::Save);
    return save && save->isEnabled();
}

bool RecordForm::allowed(Role role)
{
    for (const Button& b : m_buttons) {
        if (b.role == role && b.right)
            return jogos(*b.right, m_screen);
    }
    return true;
}

bool RecordForm::mayDiscard()
{
    return !isEntering()
           || uzenet(QStringLiteral("ments"), platform::Confirmation, m_screen)
                      == platform::AnswerYes;
}

} // namespace records
