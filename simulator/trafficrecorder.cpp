#include "simulator/trafficrecorder.h"

#include "link/protocol/messagetypes.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

namespace simulator {

TrafficRecorder::TrafficRecorder(const QString &path)
    : m_file(path)
{
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        m_failure = QStringLiteral("%1: %2").arg(path, m_file.errorString());
}

void TrafficRecorder::record(Sender sender, const protocol::Message &message)
{
    if (!ok())
        return;
    QJsonObject line{
        {QStringLiteral("time"), QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs)},
        {QStringLiteral("from"),
         sender == Sender::Tool ? QStringLiteral("tool") : QStringLiteral("logger")},
        {QStringLiteral("type"), message.type},
        {QStringLiteral("sequence"), message.sequence}};
    const QByteArray payload = message.payload.left(maxPayloadBytes);
    if (message.type == protocol::TextCommand) {
        line.insert(QStringLiteral("text"), QString::fromLatin1(payload));
    } else {
        line.insert(QStringLiteral("bytes"), message.payload.size());
        line.insert(QStringLiteral("payload"), QString::fromLatin1(payload.toHex()));
    }
    const QByteArray bytes = QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
    if (m_file.write(bytes) != bytes.size() || !m_file.flush())
        m_failure = QStringLiteral("%1: %2").arg(m_file.fileName(), m_file.errorString());
}

} // namespace simulator
