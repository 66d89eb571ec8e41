#pragma once

#include "MDF4Conversion/Interface_MDF4_Factory/ccp_xcp_splitted_byte_container.h"
#include "MDF4Conversion/extractingchannel.h"
#include "MDF4Conversion/rawlog/stdlogentry.h"
#include "can/bitextraction.h"
#include "can/extractedvalue.h"

#include <QString>

#include <vector>

struct A2lMeasurement;

// The order of the bytes of a measurement.
// Throws std::out_of_range for a byte order key of the A2L that no extraction exists for.
[[nodiscard]] can::BitOrder bitOrderOfByteOrder(int byteOrderKey);

// The bytes of an A2L data type; 0 for an unknown one.
[[nodiscard]] int bytesOfDataType(quint8 a2lDataType);

// A measurement as it arrives in DTOs: the value source of all CCP and XCP channels.
class CCP_XCP_Signal
{
public:
    // Where the DTOs come from.
    enum Link : quint8 { Can = 0, Ethernet = 1 };

    // One ODT entry that carries the value or some of its bytes.
    struct Part
    {
        quint8 PID = 0;
        quint8 Pos = 0; // byte in the DTO behind the PID
        quint8 Len = 0;
        quint8 valuePosition = 0; // of its first byte in the value
    };

    // On CAN the DTOs come with `canId`; bit 31 marks one of 29 bits.
    // Throws std::out_of_range like bitOrderOfByteOrder().
    CCP_XCP_Signal(Link link, quint8 number, quint32 canId, const A2lMeasurement &measurement);

    // A piece that lies behind the value is none of it: values of one address share their elements.
    // `splitKnown` is false for a part out of a log whose records don't tell whether it is one of
    // several.
    void addPart(const Part &part, bool splitted, bool splitKnown);
    [[nodiscard]] CCP_XCP_Signal withFirstPartOnly() const;

    // All bytes of the value have their part, as far as can be known.
    [[nodiscard]] bool isComplete() const;
    [[nodiscard]] bool isSplitted() const { return m_splitted; }
    [[nodiscard]] const std::vector<Part> &parts() const { return m_parts; }
    // The PIDs of all parts, ascending.
    [[nodiscard]] std::vector<quint8> pids() const;
    [[nodiscard]] const A2lMeasurement &measurement() const { return *m_measurement; }
    [[nodiscard]] int valueSize() const { return m_size; }
    // Identifier in the terms of EntrySelection::canId.
    [[nodiscard]] quint32 canId() const { return m_canId; }

    // The entry brings the value, or the last missing bytes of it.
    [[nodiscard]] bool isForThisSignal(const StdLogEntry &entry);

    [[nodiscard]] quint8 entryType() const;
    [[nodiscard]] quint8 entryNumber() const { return m_number; }
    [[nodiscard]] bool concerns(const StdLogEntry &entry) { return isForThisSignal(entry); }
    // Takes the value out; bytes that were gathered are gone afterwards.
    [[nodiscard]] bool value(const StdLogEntry &entry, ExtractedValue &result);

private:
    [[nodiscard]] bool addressedBy(const StdLogEntry &entry) const;
    [[nodiscard]] quint64 withBitOperation(quint64 raw) const;

    Link m_link;
    quint8 m_number;
    quint32 m_canId;
    quint8 m_dataType;
    int m_size; // bytes of the value
    can::BitOrder m_order;
    quint64 m_mask;
    quint8 m_operation;
    quint32 m_shift;
    bool m_splitted = false;
    bool m_splitKnown = true;
    std::vector<Part> m_parts;
    CCP_XCP_Splitted_Byte_Container m_bytes;
    Part m_hit;
    const A2lMeasurement *m_measurement; // in the configuration of the log
};
