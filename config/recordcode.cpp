// The streaming code of all records of this folder.

#include "config/aimmsgmeta.h"
#include "config/auxsupplycfg.h"
#include "config/canidfilterelement.h"
#include "config/ethercatsignal.h"
#include "config/ethercatslave.h"
#include "config/ethtunnelingcfg.h"
#include "config/logtriggercfg.h"
#include "config/streamingclass_cfg_ethernet.h"
#include "config/streamingclass_dbc_signal.h"
#include "config/terminalagmcfg.h"
#include "config/terminalcancfg.h"
#include "config/terminald4modcfg.h"
#include "config/terminalethercatcfg.h"
#include "config/terminalgpscfg.h"
#include "config/terminalltecfg.h"
#include "config/terminalrs485cfg.h"
#include "config/terminalstruct.h"
#include "config/tunnelingfilter.h"
#include "config/xcprecord.h"

RECORD_CODE_HERE(AimMsgMeta)
RECORD_CODE_HERE(AuxSupplyCfg)
RECORD_CODE_HERE(CanIdFilterElement)
RECORD_CODE_HERE(EtherCatSignal)
RECORD_CODE_HERE(EtherCatSlave)
RECORD_CODE_HERE(EthTunnelingCfg)
RECORD_CODE_HERE(LogTriggerCfg)
RECORD_CODE_HERE(StreamingClass_Cfg_Ethernet)
RECORD_CODE_HERE(StreamingClass_DBC_Signal)
RECORD_CODE_HERE(TerminalAgmCfg)
RECORD_CODE_HERE(TerminalCanCfg)
RECORD_CODE_HERE(TerminalD4ModCfg)
RECORD_CODE_HERE(TerminalEtherCatCfg)
RECORD_CODE_HERE(TerminalGpsCfg)
RECORD_CODE_HERE(TerminalLteCfg)
RECORD_CODE_HERE(TerminalRs485Cfg)
RECORD_CODE_HERE(TerminalStruct)
RECORD_CODE_HERE(TunnelingFilter)
RECORD_CODE_HERE(XcpRecord)
