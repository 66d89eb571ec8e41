#pragma once

#include <QMetaType>
#include <QString>

// The one state of the whole tool: whether a logger is connected and in which condition. The
// numbers are used as they stand: they index the text tables, and views compare them with <.
enum AppSta_t : int {
    APP_STA_DISCONN = 0,         // no logger; the configuration in memory is edited offline
    APP_STA_CONN_INIT = 1,       // both sockets are up, the connect sequence runs
    APP_STA_CONN_LOG_ON = 2,     // logging; the configuration is read-only
    APP_STA_CONN_LOG_OFF = 3,    // logging stopped by the user; the configuration can be written
    APP_STA_CONN_UPDATE = 4,     // another software version; only the update question is open
    APP_STA_CONN_TRANSPARENT = 5 // the RS485 processors pass bytes through; read-only
};
Q_DECLARE_METATYPE(AppSta_t)

namespace appstate {

// The name of the enumerator; "Unknown State!" for a value that has none.
[[nodiscard]] QString name(AppSta_t state);

// The text for window title and logs; "Unknown State!" for a value that has none.
[[nodiscard]] QString description(AppSta_t state);

} // namespace appstate
