#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTest>

// An exported file read back by another program (see read_export.py): Python's csv reader, the
// zip and XML rules of the spreadsheet format, or LibreOffice. Skipped tells that the reader is
// not installed. The test's CMakeLists gives the script's path as EXPORT_READER.
struct ReadBack
{
    QList<QStringList> rows;
    bool skipped = false;
    QString error;
};

inline ReadBack readExport(const QString& kind, const QString& path)
{
    ReadBack back;
    QProcess python;
    python.start(QStringLiteral("python3"), {QStringLiteral(EXPORT_READER), kind, path});
    if (!python.waitForFinished(300000) || python.exitStatus() != QProcess::NormalExit)
        back.error = QStringLiteral("python3 did not finish");
    else if (python.exitCode() == 77)
        back.skipped = true;
    else if (python.exitCode() != 0)
        back.error = QString::fromUtf8(python.readAllStandardError());
    else
        for (const QJsonValue& row :
             QJsonDocument::fromJson(python.readAllStandardOutput()).array()) {
            QStringList cells;
            for (const QJsonValue& cell : row.toArray())
                cells << cell.toString();
            back.rows << cells;
        }
    return back;
}
