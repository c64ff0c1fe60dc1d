#include "platform/ExportZip.h"

#include <zlib.h>
#include <QDateTime>
#include <QFileDevice>
#include <QtEndian>

namespace platform {

namespace {

constexpr quint32 localSignature = 0x04034b50;
constexpr quint32 centralSignature = 0x02014b50;
constexpr quint32 endSignature = 0x06054b50;
constexpr quint16 versionNeeded = 20; // deflate
constexpr quint16 methodStored = 0;
constexpr quint16 methodDeflated = 8;
constexpr quint64 zipLimit = 0xFFFFFFFFu;
// Where a local header holds the CRC and the two sizes, which are known only after the data.
constexpr qint64 sizesAt = 14;
// Deflate's fastest level: the export's text is repetitive markup, which it still shrinks
// about tenfold, at several times the speed of the default level.
constexpr int deflateLevel = 1;
constexpr int chunk = 1 << 16;

void put16(QByteArray& out, quint16 v)
{
    char b[2];
    qToLittleEndian(v, b);
    out.append(b, 2);
}

void put32(QByteArray& out, quint32 v)
{
    char b[4];
    qToLittleEndian(v, b);
    out.append(b, 4);
}

} // namespace

struct ZipWriter::Deflater
{
    z_stream stream{};
    bool active = false;
    ~Deflater()
    {
        if (active)
            deflateEnd(&stream);
    }
};

ZipWriter::ZipWriter(QFileDevice& file) : m_file(file), m_deflater(std::make_unique<Deflater>())
{
    // The entries carry the time of writing in the archive's own two-second form.
    const QDateTime now = QDateTime::currentDateTime();
    const QDate d = now.date();
    const QTime t = now.time();
    m_date = quint16(((qMax(d.year(), 1980) - 1980) << 9) | (d.month() << 5) | d.day());
    m_time = quint16((t.hour() << 11) | (t.minute() << 5) | (t.second() / 2));
}

ZipWriter::~ZipWriter() = default;

bool ZipWriter::fail(const QString& why)
{
    if (m_error.isEmpty())
        m_error = why;
    return false;
}

bool ZipWriter::put(const QByteArray& bytes)
{
    if (m_file.write(bytes) != bytes.size())
        return fail(m_file.errorString());
    return true;
}

bool ZipWriter::beginEntry(const QString& name, bool stored)
{
    if (m_open && !endEntry())
        return false;
    Entry e;
    e.name = name.toUtf8();
    e.stored = stored;
    e.offset = quint64(m_file.pos());
    if (e.offset > zipLimit)
        return fail(QStringLiteral("The archive is larger than 4 GB."));
    QByteArray header;
    put32(header, localSignature);
    put16(header, versionNeeded);
    put16(header, 0); // flags: the sizes stand in this header, written in once known
    put16(header, stored ? methodStored : methodDeflated);
    put16(header, m_time);
    put16(header, m_date);
    put32(header, 0); // CRC
    put32(header, 0); // packed size
    put32(header, 0); // size
    put16(header, quint16(e.name.size()));
    put16(header, 0); // no extra field
    header += e.name;
    if (!put(header))
        return false;
    if (!stored) {
        if (m_deflater->active)
            deflateEnd(&m_deflater->stream);
        m_deflater->stream = z_stream{};
        if (deflateInit2(&m_deflater->stream, deflateLevel, Z_DEFLATED, -MAX_WBITS, 8,
                         Z_DEFAULT_STRATEGY)
            != Z_OK)
            return fail(QStringLiteral("The compressor could not start."));
        m_deflater->active = true;
    }
    m_entries << e;
    m_open = true;
    return true;
}

bool ZipWriter::deflateInto(const char* data, qint64 size, bool last)
{
    Entry& e = m_entries.last();
    z_stream& z = m_deflater->stream;
    z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data));
    z.avail_in = uInt(size);
    QByteArray out(chunk, Qt::Uninitialized);
    int result = Z_OK;
    do {
        z.next_out = reinterpret_cast<Bytef*>(out.data());
        z.avail_out = uInt(chunk);
        result = deflate(&z, last ? Z_FINISH : Z_NO_FLUSH);
        if (result == Z_STREAM_ERROR)
            return fail(QStringLiteral("The compressor failed."));
        const qint64 produced = chunk - qint64(z.avail_out);
        if (produced > 0) {
            if (m_file.write(out.constData(), produced) != produced)
                return fail(m_file.errorString());
            e.packed += quint64(produced);
        }
    } while (z.avail_out == 0 || (last && result != Z_STREAM_END));
    return true;
}

bool ZipWriter::write(const QByteArray& data)
{
    if (!m_open)
        return fail(QStringLiteral("No entry is open."));
    Entry& e = m_entries.last();
    e.crc = quint32(
            crc32(e.crc, reinterpret_cast<const Bytef*>(data.constData()), uInt(data.size())));
    e.size += quint64(data.size());
    if (e.size > zipLimit)
        return fail(QStringLiteral("An entry is larger than 4 GB."));
    if (e.stored) {
        e.packed += quint64(data.size());
        return put(data);
    }
    return deflateInto(data.constData(), data.size(), false);
}

bool ZipWriter::endEntry()
{
    if (!m_open)
        return true;
    m_open = false;
    Entry& e = m_entries.last();
    if (!e.stored) {
        if (!deflateInto(nullptr, 0, true))
            return false;
        deflateEnd(&m_deflater->stream);
        m_deflater->active = false;
    }
    if (e.packed > zipLimit)
        return fail(QStringLiteral("An entry is larger than 4 GB."));
    // The CRC and sizes go into the entry's header, then writing goes on at the end.
    const qint64 end = m_file.pos();
    QByteArray sizes;
    put32(sizes, e.crc);
    put32(sizes, quint32(e.packed));
    put32(sizes, quint32(e.size));
    if (!m_file.seek(qint64(e.offset) + sizesAt) || !put(sizes) || !m_file.seek(end))
        return fail(m_file.errorString());
    return true;
}

bool ZipWriter::finish()
{
    if (!endEntry())
        return false;
    const quint64 start = quint64(m_file.pos());
    QByteArray directory;
    for (const Entry& e : std::as_const(m_entries)) {
        put32(directory, centralSignature);
        put16(directory, versionNeeded); // made by
        put16(directory, versionNeeded);
        put16(directory, 0);
        put16(directory, e.stored ? methodStored : methodDeflated);
        put16(directory, m_time);
        put16(directory, m_date);
        put32(directory, e.crc);
        put32(directory, quint32(e.packed));
        put32(directory, quint32(e.size));
        put16(directory, quint16(e.name.size()));
        put16(directory, 0); // extra field
        put16(directory, 0); // comment
        put16(directory, 0); // disk
        put16(directory, 0); // internal attributes
        put32(directory, 0); // external attributes
        put32(directory, quint32(e.offset));
        directory += e.name;
    }
    const quint32 directorySize = quint32(directory.size());
    if (start + directorySize > zipLimit)
        return fail(QStringLiteral("The archive is larger than 4 GB."));
    put32(directory, endSignature);
    put16(directory, 0);
    put16(directory, 0);
    put16(directory, quint16(m_entries.size()));
    put16(directory, quint16(m_entries.size()));
    put32(directory, directorySize);
    put32(directory, quint32(start));
    put16(directory, 0);
    return put(directory);
}

} // namespace platform
