#include "platform/SerialPort.h"

#include <QSerialPort>
#include <QStringList>

namespace platform {

namespace {

struct LineSettings
{
    qint32 baud = 0;
    QSerialPort::Parity parity = QSerialPort::NoParity;
    QSerialPort::DataBits dataBits = QSerialPort::Data8;
    QSerialPort::StopBits stopBits = QSerialPort::OneStop;
};

bool parseSettings(const QString& text, LineSettings* s)
{
    const QStringList parts = text.split(u',');
    if (parts.size() != 4)
        return false;
    bool ok = false;
    s->baud = parts[0].trimmed().toInt(&ok);
    if (!ok || s->baud <= 0)
        return false;

    const QString parity = parts[1].trimmed().toLower();
    if (parity == QLatin1String("n"))
        s->parity = QSerialPort::NoParity;
    else if (parity == QLatin1String("e"))
        s->parity = QSerialPort::EvenParity;
    else if (parity == QLatin1String("o"))
        s->parity = QSerialPort::OddParity;
    else if (parity == QLatin1String("m"))
        s->parity = QSerialPort::MarkParity;
    else if (parity == QLatin1String("s"))
        s->parity = QSerialPort::SpaceParity;
    else
        return false;

    const int bits = parts[2].trimmed().toInt(&ok);
    if (!ok || bits < 5 || bits > 8)
        return false;
    s->dataBits = QSerialPort::DataBits(bits);

    const QString stop = parts[3].trimmed();
    if (stop == QLatin1String("1"))
        s->stopBits = QSerialPort::OneStop;
    else if (stop == QLatin1String("1.5"))
        s->stopBits = QSerialPort::OneAndHalfStop;
    else if (stop == QLatin1String("2"))
        s->stopBits = QSerialPort::TwoStop;
    else
        return false;
    return true;
}

void setError(QString* error, const QString& text)
{
    if (error)
        *error = text;
}

} // namespace

QString serialDevice(const QString& port)
{
    const QString p = port.trimmed();
    if (p.startsWith(u'/'))
        return p;
    bool ok = false;
    const int number = p.toInt(&ok);
    if (!ok || number < 1)
        return QString();
    return QStringLiteral("/dev/ttyS%1").arg(number - 1);
}

SerialPort::SerialPort() = default;

SerialPort::~SerialPort()
{
    close();
}

bool SerialPort::open(const QString& port, const QString& settings, QString* error)
{
    close();
    const QString device = serialDevice(port);
    if (device.isEmpty()) {
        setError(error, QStringLiteral("Invalid port number: %1").arg(port));
        return false;
    }
    LineSettings line;
    if (!parseSettings(settings, &line)) {
        setError(error, QStringLiteral("Invalid line settings: %1").arg(settings));
        return false;
    }
    auto serial = std::make_unique<QSerialPort>();
    serial->setPortName(device);
    if (!serial->open(QIODevice::WriteOnly)) {
        setError(error, device + QStringLiteral(": ") + serial->errorString());
        return false;
    }
    // The line is set after opening: the port opens at the driver's default speed.
    if (!serial->setBaudRate(line.baud) || !serial->setParity(line.parity)
        || !serial->setDataBits(line.dataBits) || !serial->setStopBits(line.stopBits)
        || !serial->setFlowControl(QSerialPort::NoFlowControl)) {
        setError(error, device + QStringLiteral(": ") + serial->errorString());
        serial->close();
        return false;
    }
    m_port = std::move(serial);
    return true;
}

bool SerialPort::write(const QByteArray& bytes, QString* error)
{
    if (!isOpen()) {
        setError(error, QStringLiteral("The port is not open."));
        return false;
    }
    if (m_port->write(bytes) != bytes.size()) {
        setError(error, m_port->errorString());
        return false;
    }
    // 1200 baud moves about 120 bytes a second; a dial command fits well within the wait.
    while (m_port->bytesToWrite() > 0) {
        if (!m_port->waitForBytesWritten(3000)) {
            setError(error, m_port->errorString());
            return false;
        }
    }
    return true;
}

void SerialPort::close()
{
    if (m_port && m_port->isOpen())
        m_port->close();
    m_port.reset();
}

bool SerialPort::isOpen() const
{
    return m_port && m_port->isOpen();
}

} // namespace platform
