#pragma once

#include "MDF4Conversion/Interface_MDF4_Factory/ccp_xcp_signal.h"
#include "MDF4Conversion/mdf4_datachannel.h"

#include <QHash>
#include <QVector>

#include <memory>
#include <utility>

class MDF4_Conversion_Msg_Interface;
struct A2lCompuMethod;
struct StreamingClass_A2L_Module;

// Makes the channels of measurements by their computation methods. The module belongs to the caller
// and outlives this.
class MeasurementChannels
{
public:
    MeasurementChannels(const StreamingClass_A2L_Module &module,
                        MDF4_Conversion_Msg_Interface &messages);

    // Stored values stay unconverted, with a warning, where a formula is missing, or a table is
    // missing or too long.
    [[nodiscard]] std::unique_ptr<MDF4_DataChannel> channelOf(const CCP_XCP_Signal &signal,
                                                              CCP_XCP_Signal::Link link) const;

private:
    template <class Source>
    [[nodiscard]] std::unique_ptr<MDF4_DataChannel> make(const CCP_XCP_Signal &signal) const;
    template <class Conversion, class Source>
    [[nodiscard]] std::unique_ptr<MDF4_DataChannel> makeTable(const CCP_XCP_Signal &signal,
                                                              const A2lCompuMethod &method) const;
    template <class Source>
    [[nodiscard]] std::unique_ptr<MDF4_DataChannel> makeText(const CCP_XCP_Signal &signal,
                                                             const A2lCompuMethod &method) const;
    template <class Source>
    [[nodiscard]] std::unique_ptr<MDF4_DataChannel>
    withoutFormula(const CCP_XCP_Signal &signal, const A2lCompuMethod &method) const;
    template <class Source>
    [[nodiscard]] std::unique_ptr<MDF4_DataChannel>
    withoutTable(const CCP_XCP_Signal &signal, const A2lCompuMethod &method) const;

    MDF4_Conversion_Msg_Interface &m_messages;
    QHash<QString, const A2lCompuMethod *> m_methods;
    // Taken over once, the channels share them; empty where they are too long.
    QHash<QString, QVector<std::pair<double, double>>> m_tables;
    QHash<QString, QVector<std::pair<double, QString>>> m_textTables;
};

// A formula of an A2L with its input written as X.
[[nodiscard]] QString mdfFormula(const QString &a2lFormula);
