#include "tests/support/aimlog.h"

#include "tests/support/logconfigurations.h"

AimMsgMeta &AimLog::addModule()
{
    AimMsgMeta &meta = configuration.can[bus].aim_modules.add();
    meta.MsgId = messageId;
    meta.msgLength = 8;
    meta.channelsInMsg = 2;
    meta.samplesInMsg = 2;
    meta.sampleSizeInBytes = 2;
    meta.name = QStringLiteral("Module");
    meta.unit = QStringLiteral("V");
    return meta;
}

void AimLog::addMessage(quint32 timestamp_us, const char *hex)
{
    add(testlog::can(timestamp_us, bus, messageId, hex));
}
