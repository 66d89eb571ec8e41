#pragma once

#include "a2l/records/a2lconstants.h"
#include "tests/support/conversionharness.h"
#include "tests/support/logconfigurations.h"

// A log of one measurement M of an XCP slave on ethernet, where a DTO holds eight bytes of a value.
class MeasurementLog : public ConversionHarness
{
public:
    explicit MeasurementLog(quint8 type, quint8 size)
        : measurement(testlog::addMeasurement(module(), QStringLiteral("M"), type))
    {
        testlog::addElement(testlog::addOdt(testlog::addDaq(module(), 0), 0), QStringLiteral("M"),
                            size);
    }

    StreamingClass_A2L_Module &module() { return configuration.eth.xcp.module; }

    // The computation method of the measurement.
    A2lCompuMethod &addMethod(quint8 type)
    {
        measurement.conversion = QStringLiteral("Method");
        A2lCompuMethod &method = module().compu_methods.add();
        method.name = measurement.conversion;
        method.conversion_type = type;
        method.unit = QStringLiteral("rpm");
        return method;
    }

    void addValue(const QByteArray &hex) { add(testlog::eth(m_time++, ("00" + hex).constData())); }

    A2lMeasurement &measurement;

private:
    quint32 m_time = 1;
};

// The measurement is a byte.
class ByteLog : public MeasurementLog
{
public:
    ByteLog()
        : MeasurementLog(A2lDataType::UByte, 1)
    {}
};
