#pragma once

#include "MDF4Conversion/Interface_MDF4_Factory/ccp_xcp_signal.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <vector>

class MDF4_Conversion_Msg_Interface;
struct A2lMeasurement;
struct StreamingClass_A2L_DAQ;
struct StreamingClass_A2L_Module;
struct StreamingClass_A2L_ODT_ELEMENT;

// Finds out which measurements the DAQ lists of a module carry, and in which parts. The module
// belongs to the caller and outlives this.
class DaqSignals
{
public:
    DaqSignals(const StreamingClass_A2L_Module &module, CCP_XCP_Signal::Link link, quint8 number,
               MDF4_Conversion_Msg_Interface &messages);

    // The lists that DTOs can come from: on CAN a list needs an identifier.
    [[nodiscard]] std::vector<const StreamingClass_A2L_DAQ *> daqLists() const;

    // The measurements of a list, in the order in which its ODTs name them. One whose byte order or
    // data type can't be extracted is reported and left out.
    [[nodiscard]] std::vector<CCP_XCP_Signal> signalsOf(const StreamingClass_A2L_DAQ &daq);

    // Names that the lists read so far carry, but the module doesn't describe.
    [[nodiscard]] const QStringList &unknownNames() const { return m_unknownNames; }
    // Names of elements that lie further back than a DTO reaches.
    [[nodiscard]] const QStringList &namesBeyondDto() const { return m_namesBeyondDto; }

private:
    using Signals = std::vector<CCP_XCP_Signal>;

    // Where the values of a list begin within those that were split.
    void findBeginnings(const StreamingClass_A2L_DAQ &daq);
    void addElement(const StreamingClass_A2L_DAQ &daq, quint8 pid, quint32 position,
                    const StreamingClass_A2L_ODT_ELEMENT &element);
    void noteBeyondDto(const StreamingClass_A2L_ODT_ELEMENT &element);
    // False for a name that was noted before; none is told of twice.
    bool note(const QString &name);
    CCP_XCP_Signal *signalOf(const StreamingClass_A2L_DAQ &daq, const QString &name);

    const StreamingClass_A2L_Module &m_module;
    const CCP_XCP_Signal::Link m_link;
    const quint8 m_number;
    MDF4_Conversion_Msg_Interface &m_messages;
    QHash<QString, const A2lMeasurement *> m_measurements;
    Signals m_signals;    // of the list at hand
    QSet<QString> m_told; // names that a message was about
    QStringList m_unknownNames;
    QStringList m_namesBeyondDto;
    // By name: the byte of the split value at which the measurement has its own address. It is 0
    // but for measurements inside a longer one, which share all its pieces.
    QHash<QString, quint8> m_beginnings;
    QHash<QString, int> m_places; // in m_signals by name; -1 for one that is left out
};
