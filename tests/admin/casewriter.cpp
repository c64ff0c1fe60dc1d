// causora-casewriter FOLDER COUNT: a second workstation for the backup test. Saves COUNT cases
// "1/M", "2/M", ... through the store a few milliseconds apart, printing each number once stored.
#include "store/Access.h"
#include "store/Cases.h"
#include "store/Credentials.h"

#include <QCoreApplication>
#include <QTextStream>
#include <QThread>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    QTextStream out(stdout);
    QTextStream err(stderr);
    if (args.size() != 3)
        return 2;
    const QString folder = args.at(1);
    platform::Database db;
    QString error;
    if (!store::openDataFile(db, folder + u'/' + store::dataFileName(),
                             folder + u'/' + store::workgroupFileName(), store::databaseAccount(),
                             store::databasePassword(), store::connectText(), &error)) {
        err << error << Qt::endl;
        return 3;
    }
    const QVariant client = db.scalar(QStringLiteral("SELECT min(ukod) FROM ugyfelek"));
    const int count = args.at(2).toInt();
    for (int n = 1; n <= count; ++n) {
        const QVariantMap values{{QStringLiteral("ugyszam"), QStringLiteral("%1/M").arg(n)},
                                 {QStringLiteral("ugyfelkod"), client},
                                 {QStringLiteral("kezdet"), QStringLiteral("2024.01.15")}};
        store::Written written = store::Cases(db).add(values);
        // A user told that another workstation holds the file saves again.
        for (int tries = 0; written.failure == platform::Failure::Busy && tries < 20; ++tries) {
            QThread::msleep(50);
            written = store::Cases(db).add(values);
        }
        if (!written.stored()) {
            err << "case " << n << ": " << written.engineText << Qt::endl;
            return 1;
        }
        out << n << Qt::endl;
        // A moment between two saves, as a desk has: a writer that never pauses would keep every
        // reader out of the file.
        QThread::msleep(3);
    }
    return 0;
}
