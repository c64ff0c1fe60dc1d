// Fuzzes the jog.ini reader against the line the data-location screen writes.
#include "FuzzCheck.h"
#include "store/Settings.h"

#include <QStringList>

namespace {

// A folder as the data-location screen may hold it: any text without line ends.
QString withoutLineEnds(QString text)
{
    text.remove(u'\r');
    text.remove(u'\n');
    return text;
}

QString readFolder(const QString& text)
{
    QString folder;
    FUZZ_CHECK(store::dataFolderFromSettings(text, &folder), "no folder in " + fuzz::shown(text));
    return folder;
}

// Any text: what the reader returns comes from the first entry, up to its line end.
void checkAnyText(const QString& text)
{
    const QString untouched = QStringLiteral("untouched");
    QString folder = untouched;
    const bool found = store::dataFolderFromSettings(text, &folder);
    const qsizetype start = text.indexOf(QStringLiteral("path="));
    const QString rest = start < 0 ? QString() : text.mid(start + 5);
    const bool lineEnds = rest.contains(u'\r') || rest.contains(u'\n');
    FUZZ_CHECK(found == (start >= 0 && lineEnds), fuzz::shown(text));
    if (!found) {
        FUZZ_CHECK(folder == untouched, fuzz::shown(text));
        return;
    }
    FUZZ_CHECK(withoutLineEnds(folder) == folder, fuzz::shown(text) + " -> " + fuzz::shown(folder));
    FUZZ_CHECK(rest.startsWith(folder), fuzz::shown(text) + " -> " + fuzz::shown(folder));
    // After the folder comes the line end, or the one double quote dropped before it.
    const QString after = rest.mid(folder.size());
    const QString lineEnd = after.startsWith(u'"') ? after.mid(1) : after;
    FUZZ_CHECK(lineEnd.startsWith(u'\r') || lineEnd.startsWith(u'\n'),
               fuzz::shown(text) + " -> " + fuzz::shown(folder));
}

// A folder written as the settings line is read back unchanged: alone, as the bytes of the file,
// and among other lines when none before it holds an entry of its own.
void checkRoundTrip(const QString& before, const QString& folder, const QString& after)
{
    const QString line = store::settingsLine(folder);
    FUZZ_CHECK(line.endsWith(QStringLiteral("\r\n")), fuzz::shown(line));
    FUZZ_CHECK(readFolder(line) == folder, fuzz::shown(folder));
    const QString file = QString::fromLocal8Bit(line.toLocal8Bit());
    FUZZ_CHECK(readFolder(file) == folder, fuzz::shown(folder));
    if (!before.contains(QStringLiteral("path="))) {
        const QString text = before + line + after;
        FUZZ_CHECK(readFolder(text) == folder, fuzz::shown(text) + " / " + fuzz::shown(folder));
    }
}

} // namespace

// The input is read whole as a settings file, and split at NUL bytes into the lines before the
// entry, the folder and the lines after it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString text = fuzz::textOf(data, size);
    checkAnyText(text);

    const QStringList parts = text.split(QChar(0));
    if (parts.size() == 1)
        checkRoundTrip(QString(), withoutLineEnds(parts[0]), QString());
    else if (parts.size() == 2)
        checkRoundTrip(QString(), withoutLineEnds(parts[0]), parts[1]);
    else
        checkRoundTrip(parts[0], withoutLineEnds(parts[1]), parts.mid(2).join(QChar(0)));
    return 0;
}
