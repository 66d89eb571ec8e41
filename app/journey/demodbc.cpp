#include "app/journey/demodbc.h"

#include "config/streamingclass_dbc_signal.h"

#include <QLocale>

namespace {

QString number(double value)
{
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

QString multiplexing(const StreamingClass_DBC_Signal &signal)
{
    if (signal.mux_kind == MultiplexorSignal)
        return QStringLiteral(" M");
    if (signal.mux_kind == MultiplexedSignal)
        return QStringLiteral(" m%1").arg(signal.mux_value);
    return {};
}

QString messageLine(const StreamingClass_DBC_Signal &signal)
{
    constexpr quint32 extendedFlag = 1U << 31;
    const quint32 id = signal.msg_id | (signal.extended_id != 0 ? extendedFlag : 0U);
    const QString name = QString::number(signal.msg_id, 16).toUpper();
    return QStringLiteral("\nBO_ %1 Message_%2: %3 Vehicle\n").arg(id).arg(name).arg(signal.dlc);
}

QString signalLine(const StreamingClass_DBC_Signal &signal)
{
    const QString place = QStringLiteral("%1|%2@%3%4")
                              .arg(signal.start_bit)
                              .arg(signal.bit_length)
                              .arg(signal.little_endian)
                              .arg(QLatin1Char(signal.is_signed != 0 ? '-' : '+'));
    return QStringLiteral(" SG_ %1%2 : %3 (%4,%5) [%6|%7] \"%8\" Logger\n")
        .arg(signal.name, multiplexing(signal), place, number(signal.factor), number(signal.offset),
             number(signal.minimum), number(signal.maximum), signal.unit);
}

} // namespace

QByteArray dbcText(const QList<StreamingClass_DBC_Signal *> &signalList)
{
    QString text = QStringLiteral("VERSION \"\"\n\nNS_ :\n\nBS_:\n\nBU_: Vehicle Logger\n");
    const StreamingClass_DBC_Signal *last = nullptr;
    for (const StreamingClass_DBC_Signal *signal : signalList) {
        const bool isSameMessage = last != nullptr && last->msg_id == signal->msg_id
                                   && last->extended_id == signal->extended_id;
        if (!isSameMessage)
            text += messageLine(*signal);
        text += signalLine(*signal);
        last = signal;
    }
    return text.toUtf8();
}
