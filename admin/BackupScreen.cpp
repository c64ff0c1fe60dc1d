#include "admin/BackupScreen.h"

#include "locale/Uzenet.h"
#include "platform/Display.h"
#include "platform/Messages.h"
#include "store/Credentials.h"
#include "store/ErrorLog.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPointer>
#include <QProgressDialog>
#include <QScreen>

namespace admin {

namespace {

// The main menu stays, hidden behind this screen.
const QLatin1String mainMenu("Alap");

QList<QPointer<QWidget>> otherScreens(const QWidget* self)
{
    QList<QPointer<QWidget>> screens;
    for (QWidget* w : QApplication::topLevelWidgets()) {
        const Qt::WindowType type = w->windowType();
        if (w != self && w->isVisible() && w->objectName() != mainMenu
            && (type == Qt::Window || type == Qt::Dialog))
            screens << w;
    }
    return screens;
}

} // namespace

BackupScreen::BackupScreen(platform::Database& db, Screens& screens, Reopen reopen, QWidget* parent)
    : QWidget(parent), m_db(db), m_screens(screens), m_reopen(std::move(reopen))
{
    setAttribute(Qt::WA_DeleteOnClose);
}

void BackupScreen::Load()
{
    adjustSize();
    const QScreen* display = QGuiApplication::primaryScreen();
    const QRect area = display ? display->availableGeometry() : QRect(0, 0, 1024, 768);
    move(area.left() + (area.width() - frameGeometry().width()) / 2,
         area.top() + platform::twipsToPixels(1500));
}

bool BackupScreen::closeOtherScreens()
{
    // A screen that closes may show the one it came from (the client screen shows the search
    // screen), so the look is repeated until no other screen is left.
    for (int round = 0; round < 8; ++round) {
        const QList<QPointer<QWidget>> screens = otherScreens(this);
        if (screens.isEmpty())
            return true;
        for (const QPointer<QWidget>& screen : screens) {
            if (!screen || !screen->isVisible())
                continue;
            screen->close();
            if (screen && screen->isVisible())
                return false;
        }
    }
    return otherScreens(this).isEmpty();
}

store::Backup::Outcome BackupScreen::withProgress(
        const std::function<store::Backup::Outcome(const platform::CopyProgress&)>& copy)
{
    setEnabled(false);
    QProgressDialog dialog(windowTitle(), QStringLiteral("Cancel"), 0, 100, this);
    dialog.setWindowModality(Qt::ApplicationModal);
    dialog.setMinimumDuration(700);
    dialog.setAutoReset(false);
    dialog.setAutoClose(false);
    const store::Backup::Outcome outcome = copy([&dialog](int done, int total) {
        dialog.setMaximum(qMax(total, 1));
        dialog.setValue(qMin(done, qMax(total, 1)));
        return !dialog.wasCanceled();
    });
    dialog.reset();
    setEnabled(true);
    return outcome;
}

void BackupScreen::failed(const store::Backup::Outcome& outcome, const QString& notCausoraCode,
                          const QString& damagedCode, const QString& failureText,
                          const QString& place)
{
    QString reason;
    switch (outcome.result) {
    case store::Backup::NotCausora:
        reason = uzenetszoveg(notCausoraCode);
        break;
    case store::Backup::Damaged:
        reason = uzenetszoveg(damagedCode);
        break;
    default:
        reason = outcome.text;
        break;
    }
    store::hibanaplo(objectName(), place, outcome.text);
    platform::messageBox(reason + QStringLiteral("\r\n") + failureText, platform::ErrorNotice,
                         windowTitle(), this);
}

bool BackupScreen::reopen(bool endOnFailure)
{
    if (m_reopen && m_reopen())
        return true;
    if (endOnFailure)
        QCoreApplication::exit(1);
    return false;
}

void BackupScreen::unload()
{
    close();
}

void BackupScreen::closeEvent(QCloseEvent* e)
{
    QWidget::closeEvent(e);
    if (m_screens.showMainMenu)
        m_screens.showMainMenu();
}

QString BackupScreen::dataFile() const
{
    return m_db.filePath();
}

QString BackupScreen::accountFile() const
{
    return QFileInfo(dataFile()).dir().filePath(store::workgroupFileName());
}

QString BackupScreen::dataFolder() const
{
    return QFileInfo(dataFile()).absolutePath();
}

} // namespace admin
