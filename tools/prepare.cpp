// causora-prepare [--demo] FOLDER: creates a new data folder for the program.
#include "store/Prepare.h"

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    const bool demo = args.removeAll(QStringLiteral("--demo")) > 0;
    QTextStream err(stderr);
    if (args.size() != 1 || args.first().startsWith(u'-')) {
        err << "usage: causora-prepare [--demo] FOLDER\n"
               "Creates FOLDER/causora.mdb and FOLDER/caujog.mdw; --demo adds sample data.\n";
        return 2;
    }
    QString error;
    if (!store::prepareDataFolder(args.first(), demo, &error)) {
        err << "causora-prepare: " << error << "\n";
        return 1;
    }
    QTextStream(stdout) << "Prepared " << args.first() << (demo ? " with sample data" : "") << "\n";
    return 0;
}
