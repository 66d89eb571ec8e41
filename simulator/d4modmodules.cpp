#include "simulator/d4modmodules.h"

#include "config/terminalstruct.h"

namespace simulator {
namespace {

constexpr int modulesEachPort = 4;

struct Sensor
{
    const char *location;
    const char *unit;
    const char *sensitivityA; // offset
    const char *sensitivityB; // factor
};

const QVector<Sensor> sensors{{"Front axle left", "um/m", "-16384.0", "0.5"},
                              {"Front axle right", "um/m", "-16384.0", "0.5"},
                              {"Tow bar", "N", "-131072.0", "4.0"},
                              {"Steering rod", "N", "-65536.0", "2.0"}};

} // namespace

int d4modChannelCount(const TerminalStruct &configuration, int port)
{
    const TerminalRs485Cfg &rs485 = configuration.rs485[std::size_t(port)];
    return rs485.supply_out && rs485.d4mod.enabled ? modulesEachPort : 0;
}

QByteArray d4modTed(int port, int channel)
{
    const Sensor &sensor = sensors.at(channel % sensors.size());
    const QByteArray serial = QByteArray::number(405140000 + port * 100 + channel);
    return "#D" + serial + "$SENSID=S" + serial + "$LOCAT=" + sensor.location
           + "$PHYSU=" + sensor.unit + "$SENEQ=0$SENSA=" + sensor.sensitivityA
           + "$SENSB=" + sensor.sensitivityB + "$STCHK=0$$UTCHK=0@@";
}

QStringList d4modChannelInfos(int port, int channel)
{
    const auto uuid = [port, channel](const char *format) {
        return QString::fromLatin1(format)
            .arg(port, 2, 16, QLatin1Char('0'))
            .arg(channel, 2, 16, QLatin1Char('0'))
            .toUpper();
    };
    return {QString::number(channel),
            uuid("D40500000000%1%2"),
            uuid("2D0000000000%1%2"),
            QStringLiteral("0"),
            QStringLiteral("2"),
            QStringLiteral("4"),
            QStringLiteral("1"),
            QStringLiteral("1"),
            QStringLiteral("3"),
            QStringLiteral("3"),
            QStringLiteral("0"),
            QStringLiteral("1"),
            QString::fromLatin1(d4modTed(port, channel - 1))};
}

} // namespace simulator
