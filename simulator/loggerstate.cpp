#include "simulator/loggerstate.h"

#include "MDF4Conversion/rawlog/drive/drive.h"

namespace simulator {
namespace {

const QByteArray lteText = QByteArrayLiteral("[Modem]\r\n"
                                             "Init1 = AT+CGDCONT=1,\"IP\",\"internet\"\r\n"
                                             "Init2 = AT+WPPP=0,1,\"\",\"\"\r\n"
                                             "Init3 = Init3 = AT+KGSMAD=0\r\n"
                                             "Init4 = Init4 = AT+WMANTSEL=1\r\n"
                                             "Pin=\r\n"
                                             "RoamingAllowed=0\r\n"
                                             "LTE_enabled=1\r\n");

} // namespace

std::optional<SoftwareVersion> softwareVersion(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char('.'));
    if (parts.size() != 2)
        return {};
    bool isMajor = false;
    bool isMinor = false;
    const SoftwareVersion version{int(parts.at(0).toUShort(&isMajor)),
                                  int(parts.at(1).toUShort(&isMinor))};
    return isMajor && isMinor ? std::optional(version) : std::nullopt;
}

LoggerState::LoggerState()
    : configuration(QStringLiteral("Simulated"))
    , lteConfiguration(lteText)
{
    clock.start();
    record::copy(drive::Drive().configuration(), configuration);
}

} // namespace simulator
