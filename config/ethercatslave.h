#pragma once

#include "config/ethercatsignal.h"
#include "config/record/record.h"

#include <QString>

// One slave of an EtherCAT master.
struct EtherCatSlave
{
    quint16 slave_number = 0;
    QString name;
    quint32 manufacturer = 0;
    quint32 id = 0;
    quint32 revision = 0;
    OwnedList<EtherCatSignal> slave_signals; // in the order of the TX PDO

    static constexpr qint32 streamVersion = 1;
    static constexpr auto fields()
    {
        using record::field;
        using R = EtherCatSlave;
        return std::make_tuple(field("slave_number", &R::slave_number), field("name", &R::name),
                               field("manufacturer", &R::manufacturer), field("id", &R::id),
                               field("revision", &R::revision),
                               field("signals", &R::slave_signals));
    }
};

RECORD_CODE_ELSEWHERE(EtherCatSlave)
