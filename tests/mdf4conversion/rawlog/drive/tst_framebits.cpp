#include "MDF4Conversion/rawlog/drive/framebits.h"
#include "can/bitextraction.h"

#include <QtTest>

using drive::BitOrder;
using drive::putBits;

class tst_FrameBits : public QObject
{
    Q_OBJECT

private slots:
    void intelBitsRiseFromTheLeastSignificant();
    void motorolaBitsFallFromTheMostSignificant();
    void whatIsPutIsExtracted_data();
    void whatIsPutIsExtracted();
};

void tst_FrameBits::intelBitsRiseFromTheLeastSignificant()
{
    QByteArray frame(3, '\0');
    putBits(frame, 4, 12, BitOrder::Intel, 0xABC);
    QCOMPARE(frame.toHex(), QByteArray("c0ab00"));
}

void tst_FrameBits::motorolaBitsFallFromTheMostSignificant()
{
    QByteArray frame(3, '\0');
    putBits(frame, 3, 12, BitOrder::Motorola, 0xABC);
    QCOMPARE(frame.toHex(), QByteArray("0abc00"));
}

void tst_FrameBits::whatIsPutIsExtracted_data()
{
    QTest::addColumn<bool>("motorola");
    QTest::newRow("Intel") << false;
    QTest::newRow("Motorola") << true;
}

void tst_FrameBits::whatIsPutIsExtracted()
{
    QFETCH(bool, motorola);
    const quint64 value = 0x9ACE13579BDF2468;
    for (int length = 1; length <= 64; ++length) {
        for (int position = 0; position < 64; ++position) {
            QByteArray frame(20, '\0');
            putBits(frame, position, length, motorola ? BitOrder::Motorola : BitOrder::Intel,
                    value);
            const can::Bytes bytes{reinterpret_cast<const quint8 *>(frame.constData()),
                                   std::size_t(frame.size())};
            const auto order = motorola ? can::BitOrder::Motorola : can::BitOrder::Intel;
            QCOMPARE(can::extractBits(bytes, quint32(position), quint32(length), order),
                     value & can::lowBits(quint32(length)));
        }
    }
}

QTEST_GUILESS_MAIN(tst_FrameBits)
#include "tst_framebits.moc"
