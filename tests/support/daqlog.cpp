#include "tests/support/daqlog.h"

#include "MDF4Conversion/rawlog/logconfiguration.h"

#include <QTest>
#include <QtEndian>

namespace {

// The streamed form of an element of version 1, which ends before the flag and the byte position.
QByteArray elementOfVersion1(const StreamingClass_A2L_ODT_ELEMENT &element)
{
    QByteArray bytes = record::toBytes(element).chopped(2);
    qToBigEndian(quint32(bytes.size()) - 4, bytes.data());
    qToBigEndian(qint32(1), bytes.data() + 4);
    return bytes;
}

} // namespace

StreamingClass_A2L_DAQ &DaqLog::addDaq(quint32 canId)
{
    return testlog::addDaq(module(), canId);
}

StreamingClass_A2L_ODT &DaqLog::addOdt()
{
    return testlog::addOdt(addDaq(), 0);
}

A2lMeasurement &DaqLog::addMeasurement(const char *name, quint8 type)
{
    return testlog::addMeasurement(module(), QString::fromLatin1(name), type);
}

void DaqLog::addDto(quint32 timestamp_us, const char *hex)
{
    add(testlog::can(timestamp_us, bus, dtoId, hex));
}

// A name that is one character shorter makes room: all frames around keep their lengths.
void DaqLog::makeOld(StreamingClass_A2L_ODT_ELEMENT &element)
{
    const QByteArray old = elementOfVersion1(element);
    element.names.last().chop(1);
    const QByteArray current = record::toBytes(element);
    QByteArray block = rawlog::encodeConfiguration(configuration);
    QCOMPARE(old.size(), current.size());
    QCOMPARE(block.count(current), 1);
    block.replace(current, old);
    setConfigurationBlock(block);
}

QString oldLogText()
{
    return QStringLiteral("Possibly converting an old log without Splitted / Not Splitted Flag..");
}
