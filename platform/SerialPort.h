#pragma once

#include <memory>
#include <QByteArray>
#include <QString>

class QSerialPort;

namespace platform {

// The serial device behind a port setting: a whole number n names the machine's n-th serial
// port (1 is /dev/ttyS0, 2 is /dev/ttyS1, ...); a path such as /dev/ttyUSB0 is used as it
// stands, for modems on USB. Anything else gives an empty text.
QString serialDevice(const QString& port);

// One serial port, open from open() until close() or destruction.
class SerialPort
{
public:
    SerialPort();
    ~SerialPort();
    SerialPort(const SerialPort&) = delete;
    SerialPort& operator=(const SerialPort&) = delete;

    // Opens the port (see serialDevice) for writing with line settings in the form
    // "baud,parity,data bits,stop bits", e.g. "1200,n,8,1". Returns false with the reason.
    bool open(const QString& port, const QString& settings, QString* error);
    // Writes the bytes and waits until the device has taken them.
    bool write(const QByteArray& bytes, QString* error);
    void close();
    bool isOpen() const;

private:
    std::unique_ptr<QSerialPort> m_port;
};

} // namespace platform
