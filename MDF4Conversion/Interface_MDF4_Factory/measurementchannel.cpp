#include "MDF4Conversion/Interface_MDF4_Factory/measurementchannel.h"

#include "MDF4Conversion/Interface_MDF4_Factory/ccpxcpchannels.h"
#include "MDF4Conversion/mdf4_conversion_msg_interface.h"
#include "a2l/records/a2lconstants.h"
#include "a2l/records/streamingclass_a2l_module.h"

#include <QDebug>
#include <QRegularExpression>

namespace {

// The counts of a CC block have 16 bits: keys and values together, or texts with the default one.
constexpr int maxValuePairs = 0xFFFF / 2;
constexpr int maxTexts = 0xFFFF - 1;

MdfDataType mdfDataType(quint8 a2lDataType)
{
    if (a2lDataType == A2lDataType::Float32 || a2lDataType == A2lDataType::Float64)
        return MdfDataType::RealLittleEndian;
    return a2lDataType % 2 ? MdfDataType::SignedLittleEndian : MdfDataType::UnsignedLittleEndian;
}

template <class Conversion, class Source>
std::unique_ptr<ExtractingChannel<Conversion, Source>> makeChannel(const CCP_XCP_Signal &signal,
                                                                   const QString &unit)
{
    auto channel = std::make_unique<ExtractingChannel<Conversion, Source>>(Source(signal));
    const A2lMeasurement &measurement = signal.measurement();
    channel->name = measurement.name;
    channel->unit = unit;
    channel->dataType = mdfDataType(measurement.data_type);
    channel->size = static_cast<quint32>(signal.valueSize());
    return channel;
}

template <class Channel>
std::unique_ptr<MDF4_DataChannel> withRange(std::unique_ptr<Channel> channel,
                                            const CCP_XCP_Signal &signal)
{
    channel->setPhysicalRange(signal.measurement().lower_limit, signal.measurement().upper_limit);
    return channel;
}

} // namespace

QString mdfFormula(const QString &a2lFormula)
{
    static const QRegularExpression input(QStringLiteral("\\b[xX]1?\\b"));
    QString formula = a2lFormula;
    return formula.replace(input, QStringLiteral("X"));
}

MeasurementChannels::MeasurementChannels(const StreamingClass_A2L_Module &module,
                                         MDF4_Conversion_Msg_Interface &messages)
    : m_messages(messages)
{
    for (const A2lCompuMethod *method : module.compu_methods)
        m_methods.insert(method->name, method);
    for (const A2lCompuTab *table : module.compu_tabs) {
        auto &pairs = m_tables[table->name];
        pairs.clear();
        if (table->pairs.size() > maxValuePairs)
            continue;
        for (const A2lCompuTabPair *pair : table->pairs)
            pairs.append({pair->x, pair->y});
    }
    for (const A2lCompuVTab *table : module.compu_vtabs) {
        auto &texts = m_textTables[table->name];
        texts.clear();
        if (table->pairs.size() > maxTexts)
            continue;
        for (const A2lCompuVTabPair *pair : table->pairs)
            texts.append({double(pair->value), pair->text});
    }
}

std::unique_ptr<MDF4_DataChannel> MeasurementChannels::channelOf(const CCP_XCP_Signal &signal,
                                                                 CCP_XCP_Signal::Link link) const
{
    return link == CCP_XCP_Signal::Can ? make<CanCcpXcpSource>(signal) : make<EthXcpSource>(signal);
}

template <class Source>
std::unique_ptr<MDF4_DataChannel> MeasurementChannels::make(const CCP_XCP_Signal &signal) const
{
    const A2lCompuMethod *method = m_methods.value(signal.measurement().conversion);
    if (!method) {
        qDebug()
            << "MDF4_DataChannel *Interface_MDF4_CCP::a2lMeasurementToMDF4DataChannel(uint32_t "
               "canNr, CCP_XCP_Signal* sigToFill, StreamingClass_A2L_Module* a2lModule) -> "
               "sigToFill->compuMethod == NULL"
            << signal.measurement().name;
        return withRange(makeChannel<MDF4_DataChannel_Identity, Source>(signal, QString()), signal);
    }
    switch (method->conversion_type) {
    case A2lConversionType::Linear: {
        auto channel = makeChannel<MDF4_DataChannel_Linear, Source>(signal, method->unit);
        channel->factor = method->linear_a;
        channel->offset = method->linear_b;
        return withRange(std::move(channel), signal);
    }
    case A2lConversionType::Form: {
        if (method->formula.trimmed().isEmpty())
            return withoutFormula<Source>(signal, *method);
        auto channel = makeChannel<MDF4_DataChannel_Formula, Source>(signal, method->unit);
        channel->formula = mdfFormula(method->formula);
        return withRange(std::move(channel), signal);
    }
    case A2lConversionType::RatFunc: {
        auto channel = makeChannel<MDF4_DataChannel_Formula, Source>(signal, method->unit);
        channel->setRationalFunction({method->coeff_a, method->coeff_b, method->coeff_c,
                                      method->coeff_d, method->coeff_e, method->coeff_f});
        return withRange(std::move(channel), signal);
    }
    case A2lConversionType::TabIntp:
        return makeTable<MDF4_DataChannel_Val2Val_Table_Interpolated, Source>(signal, *method);
    case A2lConversionType::TabNoIntp:
        return makeTable<MDF4_DataChannel_Val2Val_Table_nonInterpolated, Source>(signal, *method);
    case A2lConversionType::TabVerb:
        return makeText<Source>(signal, *method);
    default:
        return withRange(makeChannel<MDF4_DataChannel_Identity, Source>(signal, method->unit),
                         signal);
    }
}

template <class Conversion, class Source>
std::unique_ptr<MDF4_DataChannel> MeasurementChannels::makeTable(const CCP_XCP_Signal &signal,
                                                                 const A2lCompuMethod &method) const
{
    const auto pairs = m_tables.value(method.table_name);
    if (pairs.isEmpty())
        return withoutTable<Source>(signal, method);
    auto channel = makeChannel<Conversion, Source>(signal, method.unit);
    channel->pairs = pairs;
    return channel;
}

template <class Source>
std::unique_ptr<MDF4_DataChannel> MeasurementChannels::makeText(const CCP_XCP_Signal &signal,
                                                                const A2lCompuMethod &method) const
{
    const auto texts = m_textTables.value(method.table_name);
    if (texts.isEmpty())
        return withoutTable<Source>(signal, method);
    auto channel = makeChannel<MDF4_DataChannel_Val2Txt_Table, Source>(signal, method.unit);
    channel->texts = texts;
    return channel;
}

template <class Source>
std::unique_ptr<MDF4_DataChannel>
MeasurementChannels::withoutFormula(const CCP_XCP_Signal &signal,
                                    const A2lCompuMethod &method) const
{
    m_messages.warning(
        QStringLiteral("Measurement %1 is written without conversion: its "
                       "computation method %2 has no formula.")
            .arg(signal.measurement().name.toHtmlEscaped(), method.name.toHtmlEscaped()));
    return makeChannel<MDF4_DataChannel_Identity, Source>(signal, method.unit);
}

template <class Source>
std::unique_ptr<MDF4_DataChannel>
MeasurementChannels::withoutTable(const CCP_XCP_Signal &signal, const A2lCompuMethod &method) const
{
    m_messages.warning(QStringLiteral("Measurement %1 is written without conversion: table %2 of "
                                      "its computation method %3 is missing, empty or too long.")
                           .arg(signal.measurement().name.toHtmlEscaped(),
                                method.table_name.toHtmlEscaped(), method.name.toHtmlEscaped()));
    return makeChannel<MDF4_DataChannel_Identity, Source>(signal, method.unit);
}
