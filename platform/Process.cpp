#include "platform/Process.h"

#include <QProcess>

namespace platform {

bool startDetached(const QString& program, const QStringList& arguments, QString* error)
{
    QProcess process;
    process.setProgram(program);
    process.setArguments(arguments);
    // The started program must not write into the program's own terminal or wait on its input.
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    if (process.startDetached())
        return true;
    if (error)
        *error = process.errorString();
    return false;
}

} // namespace platform
