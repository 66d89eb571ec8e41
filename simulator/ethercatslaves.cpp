#include "simulator/ethercatslaves.h"

namespace simulator {

const QVector<BusSlave> &etherCatBus()
{
    static const QVector<BusSlave> bus{
        {"Coupler", 2, 72100946, 1114112, {}},
        {"Analogue input 4 channels",
         2,
         201863250,
         1179648,
         {{"Input 1", 0x6000, 1, 0, 16, 3},
          {"Input 2", 0x6010, 1, 16, 16, 3},
          {"Input 3", 0x6020, 1, 32, 16, 3},
          {"Input 4", 0x6030, 1, 48, 16, 3}}},
        {"Position encoder",
         2,
         329134162,
         1048576,
         {{"Status", 0x6040, 1, 64, 16, 6}, {"Position", 0x6040, 2, 80, 32, 4}}}};
    return bus;
}

QStringList etherCatSlaveInfos(int slave)
{
    const BusSlave &its = etherCatBus().at(slave);
    return {QString::number(slave), QString::fromLatin1(its.name),
            QString::number(its.manufacturer), QString::number(its.id),
            QString::number(its.revision)};
}

QStringList etherCatTxPdoInfos(int slave, int entry)
{
    const TxPdoEntry &its = etherCatBus().at(slave).entries.at(entry);
    return {QString::number(slave),         QString::number(entry),
            QString::number(its.index),     QString::number(its.startBit),
            QString::number(its.bitLength), QString::number(its.subIndex),
            QString::fromLatin1(its.name),  QString::number(its.dataType)};
}

} // namespace simulator
