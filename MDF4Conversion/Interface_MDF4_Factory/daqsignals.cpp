#include "MDF4Conversion/Interface_MDF4_Factory/daqsignals.h"

#include "MDF4Conversion/mdf4_conversion_msg_interface.h"
#include "a2l/records/streamingclass_a2l_module.h"

#include <stdexcept>

namespace {

constexpr int leftOut = -1;
constexpr quint32 maxDtoPosition = 0xFE;

} // namespace

DaqSignals::DaqSignals(const StreamingClass_A2L_Module &module, CCP_XCP_Signal::Link link,
                       quint8 number, MDF4_Conversion_Msg_Interface &messages)
    : m_module(module)
    , m_link(link)
    , m_number(number)
    , m_messages(messages)
{
    for (const A2lMeasurement *measurement : module.measurements)
        m_measurements.insert(measurement->name, measurement);
}

std::vector<const StreamingClass_A2L_DAQ *> DaqSignals::daqLists() const
{
    std::vector<const StreamingClass_A2L_DAQ *> lists;
    for (const StreamingClass_A2L_DAQ *daq : m_module.config.cfg.daq_lists) {
        if (m_link == CCP_XCP_Signal::Ethernet || daq->can_id != 0)
            lists.push_back(daq);
    }
    return lists;
}

std::vector<CCP_XCP_Signal> DaqSignals::signalsOf(const StreamingClass_A2L_DAQ &daq)
{
    m_signals.clear();
    m_places.clear();
    findBeginnings(daq);
    for (const StreamingClass_A2L_ODT *odt : daq.odts) {
        quint32 position = 0;
        for (const StreamingClass_A2L_ODT_ELEMENT *element : odt->elements) {
            if (position + element->size <= maxDtoPosition)
                addElement(daq, odt->pid, position, *element);
            else
                noteBeyondDto(*element);
            position += element->size;
        }
    }
    return std::move(m_signals);
}

void DaqSignals::findBeginnings(const StreamingClass_A2L_DAQ &daq)
{
    m_beginnings.clear();
    for (const StreamingClass_A2L_ODT *odt : daq.odts) {
        for (const StreamingClass_A2L_ODT_ELEMENT *element : odt->elements) {
            if (!element->split)
                continue;
            for (const QString &name : element->names) {
                const A2lMeasurement *measurement = m_measurements.value(name);
                if (!measurement || measurement->ecu_address != element->address)
                    continue;
                const quint8 known = m_beginnings.value(name, element->byte_position);
                m_beginnings.insert(name, qMin(known, element->byte_position));
            }
        }
    }
}

void DaqSignals::addElement(const StreamingClass_A2L_DAQ &daq, quint8 pid, quint32 position,
                            const StreamingClass_A2L_ODT_ELEMENT &element)
{
    CCP_XCP_Signal::Part part;
    part.PID = pid;
    part.Pos = static_cast<quint8>(position);
    part.Len = element.size;
    for (const QString &name : element.names) {
        const quint8 beginning = m_beginnings.value(name, 0);
        if (element.split && element.byte_position < beginning)
            continue;
        part.valuePosition = element.split ? element.byte_position - beginning : 0;
        if (CCP_XCP_Signal *signal = signalOf(daq, name))
            signal->addPart(part, element.split != 0, element.splitKnown);
    }
}

void DaqSignals::noteBeyondDto(const StreamingClass_A2L_ODT_ELEMENT &element)
{
    for (const QString &name : element.names) {
        if (note(name))
            m_namesBeyondDto.append(name);
    }
}

bool DaqSignals::note(const QString &name)
{
    const int before = m_told.size();
    m_told.insert(name);
    return m_told.size() != before;
}

CCP_XCP_Signal *DaqSignals::signalOf(const StreamingClass_A2L_DAQ &daq, const QString &name)
{
    const auto place = m_places.constFind(name);
    if (place != m_places.constEnd())
        return *place == leftOut ? nullptr : &m_signals[size_t(*place)];
    const A2lMeasurement *measurement = m_measurements.value(name);
    if (!measurement) {
        if (!name.isEmpty() && note(name))
            m_unknownNames.append(name);
        return nullptr;
    }
    if (bytesOfDataType(measurement->data_type) == 0) {
        if (note(name))
            m_messages.warning(
                QStringLiteral("a2lToCNDType - landed in default.. Measurement %1 is "
                               "left out, its data type %2 is unknown.")
                    .arg(name.toHtmlEscaped(), QString::number(measurement->data_type)));
        m_places.insert(name, leftOut);
        return nullptr;
    }
    try {
        m_signals.emplace_back(m_link, m_number, daq.can_id, *measurement);
    } catch (const std::out_of_range &) {
        if (note(name))
            m_messages.error(
                QStringLiteral("Measurement %1 is left out: there is no extraction for "
                               "its byte order (%2).")
                    .arg(name.toHtmlEscaped(), QString::number(measurement->byte_order)));
        m_places.insert(name, leftOut);
        return nullptr;
    }
    m_places.insert(name, int(m_signals.size()) - 1);
    return &m_signals.back();
}
