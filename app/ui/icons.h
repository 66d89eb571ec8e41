#pragma once

#include <QIcon>

// Icons that are drawn with the colours of the palette, sharp at every size.
namespace icons {

enum class Symbol {
    Connect,
    Disconnect,
    Network,
    Info,
    NewFile,
    OpenFile,
    SaveFile,
    SaveFileAs,
    Convert,
    Console,
    Logger,
    Settings,
    Motion,
    Position,
    Mobile,
    Bus,
    Ethernet,
    Ring,
    Serial,
    Group,
    Module,
    Wheel
};

[[nodiscard]] QIcon icon(Symbol symbol);

} // namespace icons
