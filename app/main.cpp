#include "admin/Install.h"
#include "cases/Install.h"
#include "clients/Install.h"
#include "clients/PartnerInstall.h"
#include "locale/felir.h"
#include "reference/Install.h"
#include "search/Install.h"
#include "session/Alap.h"
#include "session/Session.h"
#include "store/Catalogue.h"

#include <cstdio>
#include <QAbstractEventDispatcher>
#include <QApplication>

namespace {

// With CAUSORA_EXIT_WHEN_READY set in the environment, the program writes "ready" to its
// standard output and ends as soon as the main menu has been painted and the event loop comes
// back to wait for input. The benchmark times the start-up by it.
class ReadyExit : public QObject
{
public:
    explicit ReadyExit(QWidget* menu) : QObject(menu)
    {
        menu->installEventFilter(this);
        connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
                [this] {
                    if (!m_painted)
                        return;
                    m_painted = false;
                    std::fputs("ready\n", stdout);
                    std::fflush(stdout);
                    QCoreApplication::exit(0);
                });
    }

protected:
    bool eventFilter(QObject*, QEvent* e) override
    {
        if (e->type() == QEvent::Paint)
            m_painted = true;
        return false;
    }

private:
    bool m_painted = false;
};

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Causora"));
    // The one open database of the program; the start-up open fills it, and the screens that
    // read or write the register are handed it.
    platform::Database db;
    const store::Catalogue catalogue(db);
    Session::instance().catalogue = &catalogue;
    Alap menu(db);
    if (!menu.load()) {
        Session::instance().catalogue = nullptr;
        return 1;
    }
    // The screens of the subsystems plug into the session's hand-off points.
    Screens& screens = Session::instance().screens;
    installCaptionEditor(&menu, db);
    search::install(screens, db);
    search::installConflicts(screens, db);
    clients::install(screens, db);
    reference::install(screens, db);
    clients::installPartners(screens, db);
    cases::install(
            screens, db,
            [&db](QWidget* caseScreen, const QString& name, cases::CaseHandOffs::Saved saved) {
                clients::newClientForCase(db, caseScreen, name, std::move(saved));
            });
    admin::install(screens, db);
    if (qEnvironmentVariableIsSet("CAUSORA_EXIT_WHEN_READY"))
        new ReadyExit(&menu);
    menu.show();
    const int code = app.exec();
    Session::instance().catalogue = nullptr;
    return code;
}
