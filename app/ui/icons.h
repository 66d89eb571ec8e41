#pragma once

#include <QColor>
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
    Wheel,
    Question,
    Warning
};

[[nodiscard]] QIcon icon(Symbol symbol);
// In one colour, whatever the state of its widget.
[[nodiscard]] QIcon icon(Symbol symbol, const QColor &colour);

} // namespace icons
