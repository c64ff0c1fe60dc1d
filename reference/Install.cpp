#include "reference/Install.h"

#include "reference/Egyebadat.h"
#include "reference/irszam.h"
#include "session/Screens.h"

#include <QApplication>

namespace reference {

namespace {

// The editor left open for the case screen, if any.
Egyebadat* openEditor()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* editor = qobject_cast<Egyebadat*>(widget);
        if (editor && editor->isVisible())
            return editor;
    }
    return nullptr;
}

} // namespace

void install(Screens& screens, platform::Database& db)
{
    screens.showLookupList = [&db](const QString& hivo) {
        if (Egyebadat* open = openEditor()) {
            open->raise();
            open->activateWindow();
            return;
        }
        Egyebadat editor(db, QApplication::activeWindow());
        editor.setHivo(hivo);
        editor.exec();
    };
    screens.addToLookupList = [&db](const QString& hivo, QWidget* caseScreen,
                                    std::function<void(const QString&)> closed) {
        if (Egyebadat* open = openEditor()) {
            open->raise();
            open->activateWindow();
            return;
        }
        auto* editor = new Egyebadat(db);
        editor->setAttribute(Qt::WA_DeleteOnClose);
        // The mode is in place before the first activation.
        editor->setHivo(hivo);
        editor->returnTo(caseScreen, std::move(closed));
        editor->show();
        editor->raise();
        editor->activateWindow();
    };
    screens.showPostalCodes = [&db] {
        irszam screen(db, QApplication::activeWindow());
        screen.exec();
    };
}

} // namespace reference
