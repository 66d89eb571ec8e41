// The streaming code of all records of this folder.

#include "a2l/records/a2lcompumethod.h"
#include "a2l/records/a2lcomputab.h"
#include "a2l/records/a2lcomputabpair.h"
#include "a2l/records/a2lcompuvtab.h"
#include "a2l/records/a2lcompuvtabpair.h"
#include "a2l/records/a2lmeasurement.h"
#include "a2l/records/a2lmoduleconfig.h"
#include "a2l/records/streamingclass_a2l_cfg.h"
#include "a2l/records/streamingclass_a2l_daq.h"
#include "a2l/records/streamingclass_a2l_module.h"
#include "a2l/records/streamingclass_a2l_odt.h"
#include "a2l/records/streamingclass_a2l_odt_element.h"
#include "a2l/records/streamingclass_a2l_raster_event.h"

RECORD_CODE_HERE(A2lCompuMethod)
RECORD_CODE_HERE(A2lCompuTab)
RECORD_CODE_HERE(A2lCompuTabPair)
RECORD_CODE_HERE(A2lCompuVTab)
RECORD_CODE_HERE(A2lCompuVTabPair)
RECORD_CODE_HERE(A2lMeasurement)
RECORD_CODE_HERE(A2lModuleConfig)
RECORD_CODE_HERE(StreamingClass_A2L_CFG)
RECORD_CODE_HERE(StreamingClass_A2L_DAQ)
RECORD_CODE_HERE(StreamingClass_A2L_Module)
RECORD_CODE_HERE(StreamingClass_A2L_ODT)
RECORD_CODE_HERE(StreamingClass_A2L_ODT_ELEMENT)
RECORD_CODE_HERE(StreamingClass_A2L_RASTER_EVENT)
