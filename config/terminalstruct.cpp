#include "config/terminalstruct.h"

template void record::write(QDataStream &, const TerminalStruct &);
template void record::read(QDataStream &, TerminalStruct &);
template void record::reset(TerminalStruct &);
template bool record::equal(const TerminalStruct &, const TerminalStruct &);
