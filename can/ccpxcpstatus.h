#pragma once

#include <QString>

struct StreamingClass_A2L_Module;

namespace can {

enum class SessionProtocol { Ccp, Xcp };

// What the module's A2L file describes: only XCP has a protocol version of the transport.
[[nodiscard]] SessionProtocol sessionProtocol(const StreamingClass_A2L_Module &module);

// The state of the logger's CCP or XCP session, as RLD_CCP_XCP_INFO tells it.
[[nodiscard]] QString sessionStatusText(quint8 status, SessionProtocol protocol);

// The slave's last answer: a command return code of CCP 2.1.
[[nodiscard]] QString slaveResponseText(quint8 code);

} // namespace can
