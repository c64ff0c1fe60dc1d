// causora-prepare [--demo] [--old-layout] FOLDER: creates a new data folder for the program;
// --old-layout gives it the layout of an older version, for trying the start-up upgrade.
#include "store/Prepare.h"

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    const bool demo = args.removeAll(QStringLiteral("--demo")) > 0;
    const bool old = args.removeAll(QStringLiteral("--old-layout")) > 0;
    QTextStream err(stderr);
    if (args.size() != 1 || args.first().startsWith(u'-')) {
        err << "usage: causora-prepare [--demo] [--old-layout] FOLDER\n"
               "Creates FOLDER/causora.mdb and FOLDER/caujog.mdw; --demo adds sample data,\n"
               "--old-layout gives the data file the layout of an older version.\n";
        return 2;
    }
    QString error;
    if (!store::prepareDataFolder(args.first(), demo, &error,
                                  old ? store::Layout::Old : store::Layout::Current)) {
        err << "causora-prepare: " << error << "\n";
        return 1;
    }
    QTextStream(stdout) << "Prepared " << args.first() << (demo ? " with sample data" : "")
                        << (old ? " in the older layout" : "") << "\n";
    return 0;
}
