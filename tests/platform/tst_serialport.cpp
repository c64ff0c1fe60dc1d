#include "platform/SerialPort.h"

#include <QTest>

class tst_SerialPort : public QObject
{
    Q_OBJECT
private slots:
    void portNamesSerialDevices_data()
    {
        QTest::addColumn<QString>("port");
        QTest::addColumn<QString>("device");
        QTest::newRow("first port") << "1"
                                    << "/dev/ttyS0";
        QTest::newRow("third port, blanks") << " 3 "
                                            << "/dev/ttyS2";
        QTest::newRow("USB modem path") << "/dev/ttyUSB0"
                                        << "/dev/ttyUSB0";
    }
    void portNamesSerialDevices()
    {
        QFETCH(QString, port);
        QFETCH(QString, device);
        QCOMPARE(platform::serialDevice(port), device);
    }
};

QTEST_MAIN(tst_SerialPort)
#include "tst_serialport.moc"
