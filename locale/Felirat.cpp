#include "locale/Felirat.h"

#include "session/Session.h"
#include "store/Catalogue.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QWidget>

namespace {

QString fieldText(const QWidget* screen, const char* name)
{
    const auto* field = screen->findChild<const QWidget*>(QLatin1String(name));
    return field ? field->property("text").toString() : QString();
}

QString captionKey(const QWidget* screen)
{
    const QString name = screen->objectName();
    if (name == QLatin1String("keres"))
        return fieldText(screen, "tipus").trimmed().toInt() == 2 ? QStringLiteral("keres2") : name;
    if (name == QLatin1String("Egyebadat")) {
        const QString hivo = fieldText(screen, "hivo");
        if (hivo == QLatin1String("1"))
            return QStringLiteral("orszag");
        if (hivo == QLatin1String("2"))
            return QStringLiteral("tipus");
        if (hivo == QLatin1String("3"))
            return QStringLiteral("ugyved");
    }
    return name;
}

// A control of the screen's own window: screens that own other windows (the main menu owns the
// login and caption editor windows) must not write into those.
QWidget* control(QWidget* screen, const QString& name)
{
    const QList<QWidget*> found = screen->findChildren<QWidget*>(name);
    for (QWidget* w : found) {
        if (w->window() == screen->window())
            return w;
    }
    return nullptr;
}

void setCaption(QWidget* control, const QString& text)
{
    if (auto* label = qobject_cast<QLabel*>(control))
        label->setText(text);
    else if (auto* edit = qobject_cast<QLineEdit*>(control))
        edit->setText(text);
    else if (auto* button = qobject_cast<QAbstractButton*>(control))
        button->setText(text);
    else if (auto* box = qobject_cast<QGroupBox*>(control))
        box->setTitle(text);
    else
        control->setProperty("text", text);
}

} // namespace

void feliratoz(QWidget* screen)
{
    if (!screen)
        return;
    const Session& session = Session::instance();
    if (!session.catalogue)
        return;
    const platform::Row row = session.catalogue->captions(captionKey(screen));
    if (row.isEmpty())
        return;
    const int lang = session.language;
    if (lang < 1 || lang > 3)
        return;
    auto apply = [&](const char* kind, int count) {
        for (int n = 1; n <= count; ++n) {
            const QString name = QStringLiteral("%1%2").arg(QLatin1String(kind)).arg(n);
            QWidget* widget = control(screen, name);
            const QString column = QString::number(lang) + name;
            if (!widget || !row.contains(column) || row.isNull(column))
                continue;
            setCaption(widget, row.text(column));
        }
    };
    apply("sz", 39);
    apply("g", 10);
}
