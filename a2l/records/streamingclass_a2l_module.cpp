#include "a2l/records/streamingclass_a2l_module.h"

template void record::write(QDataStream &, const StreamingClass_A2L_Module &);
template void record::read(QDataStream &, StreamingClass_A2L_Module &);
template bool record::equal(const StreamingClass_A2L_Module &, const StreamingClass_A2L_Module &);
