// causora-stress: plays one workstation on a data folder, for the stress and crash runs.
//
//   causora-stress FOLDER --tag TAG --log FILE [--saves N] [--seed S] [--pause MS]
//                  [--busy-wait MS]
//       opens FOLDER's data file as the program does and adds, changes and deletes clients
//       and cases through the store classes until N saves are confirmed (0: until ended),
//       keeping the client and case lists open between steps. Prints its figures as JSON.
//   causora-stress FOLDER --open-only
//       opens the data file as the program does, counts the clients and cases, and ends.
#include "Workstation.h"

#include "platform/Database.h"
#include "store/Access.h"
#include "store/Credentials.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QRandomGenerator>
#include <QTextStream>

namespace {

bool openFolder(platform::Database& db, const QString& folder, QTextStream& err)
{
    QString error;
    if (store::openDataFile(db, folder + u'/' + store::dataFileName(),
                            folder + u'/' + store::workgroupFileName(), store::databaseAccount(),
                            store::databasePassword(), store::connectText(), &error))
        return true;
    err << "causora-stress: cannot open " << folder << ": " << error << Qt::endl;
    return false;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addPositionalArgument(QStringLiteral("folder"), QStringLiteral("The data folder."));
    const QCommandLineOption tag(QStringLiteral("tag"),
                                 QStringLiteral("Marks this workstation's rows."),
                                 QStringLiteral("tag"));
    const QCommandLineOption logFile(QStringLiteral("log"),
                                     QStringLiteral("Where confirmed saves are written."),
                                     QStringLiteral("file"));
    const QCommandLineOption saves(QStringLiteral("saves"),
                                   QStringLiteral("Confirmed saves to make; 0 until ended."),
                                   QStringLiteral("n"), QStringLiteral("100"));
    const QCommandLineOption seed(QStringLiteral("seed"), QStringLiteral("Random seed."),
                                  QStringLiteral("s"));
    const QCommandLineOption pause(QStringLiteral("pause"),
                                   QStringLiteral("Longest pause between steps in ms."),
                                   QStringLiteral("ms"), QStringLiteral("3"));
    const QCommandLineOption busyWait(QStringLiteral("busy-wait"),
                                      QStringLiteral("How long a step waits for another "
                                                     "workstation's lock, in ms."),
                                      QStringLiteral("ms"),
                                      QString::number(platform::Database::defaultBusyWait()));
    const QCommandLineOption openOnly(QStringLiteral("open-only"),
                                      QStringLiteral("Only open the data file and count."));
    parser.addOptions({tag, logFile, saves, seed, pause, busyWait, openOnly});
    parser.addHelpOption();
    parser.process(app);

    QTextStream out(stdout);
    QTextStream err(stderr);
    const QStringList args = parser.positionalArguments();
    if (args.size() != 1
        || (!parser.isSet(openOnly) && (!parser.isSet(tag) || !parser.isSet(logFile)))) {
        err << parser.helpText();
        return 2;
    }

    platform::Database db;
    db.setBusyWait(parser.value(busyWait).toInt());
    if (!openFolder(db, args.first(), err))
        return 3;
    if (parser.isSet(openOnly)) {
        QString error;
        const QVariant clients
                = db.scalar(QStringLiteral("SELECT count(*) FROM ugyfelek"), {}, &error);
        const QVariant cases = db.scalar(QStringLiteral("SELECT count(*) FROM ugyek"), {}, &error);
        if (!error.isEmpty()) {
            err << "causora-stress: cannot read " << args.first() << ": " << error << Qt::endl;
            return 3;
        }
        out << "{\"clients\": " << clients.toLongLong() << ", \"cases\": " << cases.toLongLong()
            << "}" << Qt::endl;
        return 0;
    }

    QFile log(parser.value(logFile));
    // Unbuffered: every line reaches the file with its own write.
    if (!log.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)) {
        err << "causora-stress: cannot write " << log.fileName() << ": " << log.errorString()
            << Qt::endl;
        return 2;
    }
    stress::Settings settings;
    settings.tag = parser.value(tag);
    settings.saves = parser.value(saves).toInt();
    settings.maxPauseMs = parser.value(pause).toInt();
    settings.seed = parser.isSet(seed) ? parser.value(seed).toUInt()
                                       : QRandomGenerator::system()->generate();
    stress::Workstation station(db, settings, &log, &err);
    const bool ok = station.run();
    out << "{\"tag\": \"" << settings.tag << "\", \"seed\": " << settings.seed
        << ", \"busy_wait_ms\": " << db.busyWait()
        << ", \"figures\": " << station.figures().toJson() << "}" << Qt::endl;
    return ok ? 0 : 1;
}
