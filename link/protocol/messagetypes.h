#pragma once

#include <QtGlobal>

// Message types and ports of the link to the logger.
namespace protocol {

constexpr quint16 commandPort = 19867;
constexpr quint16 dataPort = 19860;
constexpr quint16 filePort = 9999;

// Numbered records occupy a run of types: CAN channel n is Can + n.
enum MessageType : quint8 {
    TextCommand = 1,          // text command and text reply
    ConfigurationRequest = 2, // to the logger, without payload
    WholeConfiguration = 3,   // TerminalStruct
    Gps = 4,
    Agm = 5,
    Lte = 6,
    Can = 20,
    LogTrigger = 40,
    AuxSupply = 41,
    Rs485 = 50,
    EtherCat = 70,
    Ethernet = 80,
    Acknowledgement = 100, // from the logger, without payload
    SoftwareUpdate = 100   // to the logger: the image
};

// Numbers that the types of a run leave room for; the configuration holds as many or fewer.
constexpr int canTypes = 12;
constexpr int rs485Types = 10;
constexpr int etherCatTypes = 10;
constexpr int ethernetTypes = 10;

// Position of a type within its run, or -1 when it lies outside.
[[nodiscard]] constexpr int indexIn(int type, MessageType first, int count)
{
    return type >= first && type < first + count ? type - first : -1;
}

// Whether a message of this type carries a configuration record.
[[nodiscard]] constexpr bool isRecordType(int type)
{
    return (type >= ConfigurationRequest && type <= Lte) || indexIn(type, Can, canTypes) >= 0
           || type == LogTrigger || type == AuxSupply || indexIn(type, Rs485, rs485Types) >= 0
           || indexIn(type, EtherCat, etherCatTypes) >= 0
           || indexIn(type, Ethernet, ethernetTypes) >= 0;
}

} // namespace protocol
