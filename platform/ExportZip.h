#pragma once

#include <memory>
#include <QByteArray>
#include <QList>
#include <QString>

class QFileDevice;

namespace platform {

// Writes a zip archive into an open, seekable file, one entry after the other, each entry's
// data in as many pieces as the caller likes: an entry of any size passes through in small
// pieces. Stored entries are written as they are, the others deflated. The archive is plain
// zip (no zip64), so an entry or the archive is refused above 4 GB.
class ZipWriter
{
public:
    explicit ZipWriter(QFileDevice& file);
    ~ZipWriter();
    ZipWriter(const ZipWriter&) = delete;
    ZipWriter& operator=(const ZipWriter&) = delete;

    bool beginEntry(const QString& name, bool stored);
    bool write(const QByteArray& data);
    bool endEntry();
    // Writes the central directory; the archive is complete once it returns true.
    bool finish();
    QString errorString() const { return m_error; }

private:
    struct Entry
    {
        QByteArray name;
        bool stored = false;
        quint32 crc = 0;
        quint64 size = 0;
        quint64 packed = 0;
        quint64 offset = 0;
    };
    bool put(const QByteArray& bytes);
    bool deflateInto(const char* data, qint64 size, bool last);
    bool fail(const QString& why);

    QFileDevice& m_file;
    QList<Entry> m_entries;
    bool m_open = false;
    struct Deflater;
    std::unique_ptr<Deflater> m_deflater;
    quint16 m_time = 0;
    quint16 m_date = 0;
    QString m_error;
};

} // namespace platform
