#include "tests/support/goldenbytes.h"
#include "tests/support/recordrings.h"

#include <QTest>

namespace {

template <class R, int ListSize = 2>
RecordProbe configProbe(const char *name)
{
    return probe<R, ListSize>(QStringLiteral("config/%1.hex").arg(QLatin1String(name)));
}

QVector<RecordProbe> probes()
{
    return {
        configProbe<AimMsgMeta>("aimmsgmeta"),
        configProbe<AuxSupplyCfg>("auxsupplycfg"),
        configProbe<CanIdFilterElement>("canidfilterelement"),
        configProbe<EtherCatSignal>("ethercatsignal"),
        configProbe<EtherCatSlave>("ethercatslave"),
        configProbe<EthTunnelingCfg>("ethtunnelingcfg"),
        configProbe<LogTriggerCfg>("logtriggercfg"),
        configProbe<StreamingClass_Cfg_Ethernet>("streamingclass_cfg_ethernet"),
        configProbe<StreamingClass_DBC_Signal>("streamingclass_dbc_signal"),
        configProbe<TerminalAgmCfg>("terminalagmcfg"),
        configProbe<TerminalCanCfg>("terminalcancfg"),
        configProbe<TerminalD4ModCfg>("terminald4modcfg"),
        configProbe<TerminalEtherCatCfg>("terminalethercatcfg"),
        configProbe<TerminalGpsCfg>("terminalgpscfg"),
        configProbe<TerminalLteCfg>("terminalltecfg"),
        configProbe<TerminalRs485Cfg>("terminalrs485cfg"),
        configProbe<TerminalStruct, 0>("terminalstruct"),
        configProbe<TunnelingFilter>("tunnelingfilter"),
        configProbe<XcpRecord>("xcprecord"),
    };
}

} // namespace

// Golden bytes, round trip, later versions and damage of the configuration's records.
class tst_ConfigRecords : public RecordRings
{
    Q_OBJECT

public:
    tst_ConfigRecords()
        : RecordRings(probes())
    {}
};

QTEST_GUILESS_MAIN(tst_ConfigRecords)
#include "tst_configrecords.moc"
