#include "config/streamingtest.h"

#include "config/record/samplevalues.h"
#include "config/streamingclass_cfg_ethernet.h"

#include <QDebug>

#include <algorithm>
#include <iterator>

namespace {

template <class R>
bool survivesStream(const char *name)
{
    R written;
    record::SampleValues().fill(written);
    R read;
    record::copy(written, read);
    const bool passed = read == written;
    qDebug().nospace() << name << (passed ? " - Passed" : " - Failed");
    return passed;
}

} // namespace

bool StreamingTest::run() const
{
    const bool results[] = {
        survivesStream<StreamingClass_A2L_CFG>("StreamingClass_A2L_CFG"),
        survivesStream<StreamingClass_A2L_DAQ>("StreamingClass_A2L_DAQ"),
        survivesStream<StreamingClass_A2L_ODT>("StreamingClass_A2L_ODT"),
        survivesStream<StreamingClass_A2L_ODT_ELEMENT>("StreamingClass_A2L_ODT_ELEMENT"),
        survivesStream<StreamingClass_A2L_RASTER_EVENT>("StreamingClass_A2L_RASTER_EVENT"),
        survivesStream<StreamingClass_Cfg_Ethernet>("StreamingClass_Cfg_Ethernet"),
    };
    const bool allPassed =
        std::all_of(std::begin(results), std::end(results), [](bool passed) { return passed; });
    qDebug() << "Returning all passed.." << allPassed;
    return allPassed;
}
