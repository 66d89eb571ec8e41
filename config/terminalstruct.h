#pragma once

#include "config/auxsupplycfg.h"
#include "config/logtriggercfg.h"
#include "config/record/record.h"
#include "config/streamingclass_cfg_ethernet.h"
#include "config/terminalagmcfg.h"
#include "config/terminalcancfg.h"
#include "config/terminalethercatcfg.h"
#include "config/terminalgpscfg.h"
#include "config/terminalltecfg.h"
#include "config/terminalrs485cfg.h"

#include <QString>

#include <array>

// The whole configuration of one logger: edited by the views, sent to the logger, saved in a file
// and embedded at the head of every raw log.
struct TerminalStruct
{
    static constexpr std::size_t canChannels = 12;
    static constexpr std::size_t rs485Ports = 10;
    static constexpr std::size_t etherCatMasters = 8;

    explicit TerminalStruct(const QString &terminalName = QStringLiteral("MASTER - Local"))
        : name(terminalName)
    {}

    // Saves to a configuration file; a failure leaves an existing file as it was.
    [[nodiscard]] bool write_to_file(const QString &path) const;
    // Loads a configuration file; a failure leaves the configuration as it was.
    [[nodiscard]] bool read_from_file(const QString &path);

    qint32 version = 0; // of the stream that was last read
    QString name;       // not streamed
    std::array<TerminalCanCfg, canChannels> can;
    TerminalAgmCfg agm;
    TerminalGpsCfg gps;
    TerminalLteCfg lte;
    LogTriggerCfg trigger;
    AuxSupplyCfg event;
    std::array<TerminalRs485Cfg, rs485Ports> rs485;
    std::array<TerminalEtherCatCfg, etherCatMasters> ethercat;
    StreamingClass_Cfg_Ethernet eth;

    static constexpr qint32 streamVersion = 6;
    static constexpr auto fields()
    {
        using record::field;
        using R = TerminalStruct;
        return std::make_tuple(field("can", &R::can), field("agm", &R::agm), field("gps", &R::gps),
                               field("lte", &R::lte), field("trigger", &R::trigger, 2),
                               field("event", &R::event, 3), field("rs485", &R::rs485, 4),
                               field("ethercat", &R::ethercat, 5), field("eth", &R::eth, 6));
    }

    void versionRead(qint32 streamVersionRead) { version = streamVersionRead; }
};

RECORD_CODE_ELSEWHERE(TerminalStruct)

extern template void record::write(QDataStream &, const TerminalStruct &);
extern template void record::read(QDataStream &, TerminalStruct &);
extern template void record::reset(TerminalStruct &);
extern template bool record::equal(const TerminalStruct &, const TerminalStruct &);
