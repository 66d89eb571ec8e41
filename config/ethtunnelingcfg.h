#pragma once

#include "config/record/record.h"
#include "config/tunnelingfilter.h"

#include <QString>

// Tunneling and mirroring on the ethernet port.
struct EthTunnelingCfg
{
    quint16 daq_port = 56789;                                 // UDP port for tunneling data
    QString local_link_ip = QStringLiteral("169.254.174.64"); // the logger's own address
    QString fallback_ip =
        QStringLiteral("169.254.86.68"); // target when discovery fails or is skipped
    OwnedList<TunnelingFilter> filters;
    quint8 tunneling_enabled = 0;
    quint8 mirroring_enabled = 0;
    quint8 mirror_ingress_mask = 0x0F;
    quint8 mirror_egress_mask = 0x0F;
    quint32 tunneling_flags = 0; // bit 0: live data, bit 1: skip discovery

    static constexpr qint32 streamVersion = 2;
    static constexpr auto fields()
    {
        using record::field;
        using R = EthTunnelingCfg;
        return std::make_tuple(record::zeroByte(), field("daq_port", &R::daq_port),
                               field("local_link_ip", &R::local_link_ip),
                               field("fallback_ip", &R::fallback_ip), field("filters", &R::filters),
                               field("tunneling_enabled", &R::tunneling_enabled),
                               field("mirroring_enabled", &R::mirroring_enabled),
                               field("mirror_ingress_mask", &R::mirror_ingress_mask),
                               field("mirror_egress_mask", &R::mirror_egress_mask),
                               field("tunneling_flags", &R::tunneling_flags));
    }
};

RECORD_CODE_ELSEWHERE(EthTunnelingCfg)
