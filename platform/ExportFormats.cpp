#include "platform/ExportFormats.h"

#include "platform/ExportZip.h"

#include <QFileDevice>

namespace platform {

namespace {

// Output is gathered into pieces of about this size before it goes to the file.
constexpr int pieceSize = 1 << 16;

class CsvWriter : public ListWriter
{
public:
    explicit CsvWriter(QFileDevice& file) : m_file(file) { }

    bool begin(const QString&, const QStringList& headings, const QList<int>&) override
    {
        m_buffer = QByteArrayLiteral("\xEF\xBB\xBF");
        return row(headings);
    }

    bool row(const QStringList& values) override
    {
        for (int i = 0; i < values.size(); ++i) {
            if (i > 0)
                m_buffer += ';';
            field(values.at(i));
        }
        m_buffer += "\r\n";
        return m_buffer.size() < pieceSize || flush();
    }

    bool finish() override { return flush(); }
    QString errorString() const override { return m_file.errorString(); }

private:
    static bool needsQuotes(const QString& v)
    {
        if (v.isEmpty())
            return false;
        if (v.front().isSpace() || v.back().isSpace())
            return true;
        for (const QChar c : v) {
            if (c == u';' || c == u'"' || c == u'\n' || c == u'\r')
                return true;
        }
        return false;
    }

    void field(const QString& v)
    {
        if (!needsQuotes(v)) {
            m_buffer += v.toUtf8();
            return;
        }
        m_buffer += '"';
        m_buffer += QString(v).replace(u'"', QStringLiteral("\"\"")).toUtf8();
        m_buffer += '"';
    }

    bool flush()
    {
        const bool ok = m_file.write(m_buffer) == m_buffer.size();
        m_buffer.clear();
        return ok;
    }

    QFileDevice& m_file;
    QByteArray m_buffer;
};

// Text as the content of an XML element or attribute.
void appendEscaped(QByteArray& out, QChar c)
{
    switch (c.unicode()) {
    case u'&':
        out += "&amp;";
        break;
    case u'<':
        out += "&lt;";
        break;
    case u'>':
        out += "&gt;";
        break;
    case u'"':
        out += "&quot;";
        break;
    default:
        // Characters that XML cannot carry at all (other control characters, the two
        // non-characters) are left out rather than making the file unreadable.
        if (c.unicode() < 0x20 || c.unicode() == 0xFFFE || c.unicode() == 0xFFFF)
            break;
        out += QString(c).toUtf8();
    }
}

// Whether a line of text goes into a paragraph as it stands: no markup characters, no tab, no
// control character, and no blanks that a reader would collapse or trim.
bool plainLine(QStringView line)
{
    if (line.isEmpty())
        return true;
    if (line.front() == u' ' || line.back() == u' ')
        return false;
    QChar before;
    for (const QChar c : line) {
        if (c.unicode() < 0x20 || c == u'&' || c == u'<' || c == u'>' || c.unicode() >= 0xFFFE
            || (c == u' ' && before == u' '))
            return false;
        before = c;
    }
    return true;
}

// One paragraph of a cell. A reader of the format collapses runs of blanks and drops blanks at
// either end of a paragraph, so those are written as counted spaces; a tab is a tab element.
void appendParagraph(QByteArray& out, QStringView line)
{
    out += "<text:p>";
    if (plainLine(line)) {
        out += line.toUtf8();
        out += "</text:p>";
        return;
    }
    const int n = int(line.size());
    int i = 0;
    while (i < n) {
        const QChar c = line.at(i);
        if (c == u' ') {
            int run = 1;
            while (i + run < n && line.at(i + run) == u' ')
                ++run;
            const bool edge = i == 0 || i + run == n;
            int counted = run;
            if (!edge) {
                out += ' ';
                --counted;
            }
            if (counted == 1)
                out += "<text:s/>";
            else if (counted > 1)
                out += "<text:s text:c=\"" + QByteArray::number(counted) + "\"/>";
            i += run;
            continue;
        }
        if (c == u'\t')
            out += "<text:tab/>";
        else if (c.isHighSurrogate() && i + 1 < n && line.at(i + 1).isLowSurrogate()) {
            out += line.mid(i, 2).toUtf8();
            ++i;
        } else
            appendEscaped(out, c);
        ++i;
    }
    out += "</text:p>";
}

// A cell holding a text; its lines become paragraphs, as the spreadsheet writes a cell with
// line breaks itself.
void appendCell(QByteArray& out, const QString& v, const char* style = nullptr)
{
    out += "<table:table-cell";
    if (style) {
        out += " table:style-name=\"";
        out += style;
        out += '"';
    }
    if (v.isEmpty()) {
        out += "/>";
        return;
    }
    out += " office:value-type=\"string\">";
    qsizetype start = 0;
    for (qsizetype i = 0; i <= v.size(); ++i) {
        if (i < v.size() && v.at(i) != u'\n' && v.at(i) != u'\r')
            continue;
        appendParagraph(out, QStringView(v).mid(start, i - start));
        // CR LF is one line break.
        if (i + 1 < v.size() && v.at(i) == u'\r' && v.at(i + 1) == u'\n')
            ++i;
        start = i + 1;
    }
    out += "</table:table-cell>";
}

QByteArray escaped(const QString& text)
{
    QByteArray out;
    for (const QChar c : text)
        appendEscaped(out, c);
    return out;
}

// A sheet name may not hold []*?:/\ and is at most 31 characters long.
QString sheetName(const QString& title)
{
    QString name;
    for (const QChar c : title) {
        if (!QStringLiteral("[]*?:/\\").contains(c) && c.unicode() >= 0x20)
            name += c;
    }
    name = name.trimmed().left(31);
    return name.isEmpty() ? QStringLiteral("1") : name;
}

constexpr char namespaces[]
        = "xmlns:office=\"urn:oasis:names:tc:opendocument:xmlns:office:1.0\""
          " xmlns:style=\"urn:oasis:names:tc:opendocument:xmlns:style:1.0\""
          " xmlns:text=\"urn:oasis:names:tc:opendocument:xmlns:text:1.0\""
          " xmlns:table=\"urn:oasis:names:tc:opendocument:xmlns:table:1.0\""
          " xmlns:fo=\"urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0\""
          " office:version=\"1.2\"";

constexpr char mimeType[] = "application/vnd.oasis.opendocument.spreadsheet";

class OdsWriter : public ListWriter
{
public:
    explicit OdsWriter(QFileDevice& file) : m_zip(file) { }

    bool begin(const QString& title, const QStringList& headings,
               const QList<int>& widthsTwips) override
    {
        // The type comes first and unpacked, so that a reader knows the file by its start.
        if (!m_zip.beginEntry(QStringLiteral("mimetype"), true)
            || !m_zip.write(QByteArray(mimeType)))
            return false;
        QByteArray manifest = QByteArrayLiteral(
                "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                "<manifest:manifest"
                " xmlns:manifest=\"urn:oasis:names:tc:opendocument:xmlns:manifest:1.0\""
                " manifest:version=\"1.2\">"
                "<manifest:file-entry manifest:full-path=\"/\" manifest:version=\"1.2\""
                " manifest:media-type=\"");
        manifest += mimeType;
        manifest += "\"/>"
                    "<manifest:file-entry manifest:full-path=\"styles.xml\""
                    " manifest:media-type=\"text/xml\"/>"
                    "<manifest:file-entry manifest:full-path=\"content.xml\""
                    " manifest:media-type=\"text/xml\"/>"
                    "</manifest:manifest>\n";
        if (!m_zip.beginEntry(QStringLiteral("META-INF/manifest.xml"), false)
            || !m_zip.write(manifest))
            return false;
        const QByteArray styles = QByteArrayLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                                    "<office:document-styles ")
                                  + namespaces + "><office:styles/></office:document-styles>\n";
        if (!m_zip.beginEntry(QStringLiteral("styles.xml"), false) || !m_zip.write(styles))
            return false;
        if (!m_zip.beginEntry(QStringLiteral("content.xml"), false))
            return false;

        m_buffer = QByteArrayLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                     "<office:document-content ")
                   + namespaces + "><office:automatic-styles>";
        for (int i = 0; i < headings.size(); ++i) {
            const int twips = widthsTwips.value(i);
            if (twips <= 0)
                continue;
            m_buffer += "<style:style style:name=\"co" + QByteArray::number(i + 1)
                        + "\" style:family=\"table-column\"><style:table-column-properties"
                          " style:column-width=\""
                        + QByteArray::number(twips / 1440.0, 'f', 4) + "in\"/></style:style>";
        }
        m_buffer += "<style:style style:name=\"fejlec\" style:family=\"table-cell\">"
                    "<style:text-properties fo:font-weight=\"bold\"/></style:style>"
                    "</office:automatic-styles><office:body><office:spreadsheet>"
                    "<table:table table:name=\""
                    + escaped(sheetName(title)) + "\">";
        for (int i = 0; i < headings.size(); ++i) {
            m_buffer += "<table:table-column";
            if (widthsTwips.value(i) > 0)
                m_buffer += " table:style-name=\"co" + QByteArray::number(i + 1) + '"';
            m_buffer += "/>";
        }
        m_buffer += "<table:table-row>";
        for (const QString& h : headings)
            appendCell(m_buffer, h, "fejlec");
        m_buffer += "</table:table-row>";
        return true;
    }

    bool row(const QStringList& values) override
    {
        m_buffer += "<table:table-row>";
        for (const QString& v : values)
            appendCell(m_buffer, v);
        m_buffer += "</table:table-row>";
        return m_buffer.size() < pieceSize || flush();
    }

    bool finish() override
    {
        m_buffer += "</table:table></office:spreadsheet></office:body>"
                    "</office:document-content>\n";
        return flush() && m_zip.finish();
    }

    QString errorString() const override { return m_zip.errorString(); }

private:
    bool flush()
    {
        const bool ok = m_zip.write(m_buffer);
        m_buffer.clear();
        return ok;
    }

    ZipWriter m_zip;
    QByteArray m_buffer;
};

} // namespace

std::unique_ptr<ListWriter> csvWriter(QFileDevice& file)
{
    return std::make_unique<CsvWriter>(file);
}

std::unique_ptr<ListWriter> odsWriter(QFileDevice& file)
{
    return std::make_unique<OdsWriter>(file);
}

} // namespace platform
