#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

// The slaves on the bus of the simulated EtherCAT master.
namespace simulator {

struct TxPdoEntry
{
    const char *name;
    quint16 index; // in the slave's object dictionary
    quint8 subIndex;
    quint16 startBit; // in the process image of the bus
    quint16 bitLength;
    quint8 dataType; // CANopen code: 3 INTEGER16, 4 INTEGER32, 6 UNSIGNED16
};

struct BusSlave
{
    const char *name;
    quint32 manufacturer;
    quint32 id;
    quint32 revision;
    QVector<TxPdoEntry> entries;
};

[[nodiscard]] const QVector<BusSlave> &etherCatBus();

// Slave number, name, manufacturer, ID, revision.
[[nodiscard]] QStringList etherCatSlaveInfos(int slave);
// Slave number, entry number, object index, start bit, bit length, subindex, name, data type.
[[nodiscard]] QStringList etherCatTxPdoInfos(int slave, int entry);

} // namespace simulator
