// Reads any bytes as the stream of the command socket, whole and in pieces, and applies the records
// in it as the tool does. The first byte tells where the stream is cut.

#include "app/state/appcontroller.h"
#include "link/logger_data_handler_class.h"
#include "link/protocol/envelope.h"

#include <QCoreApplication>

#include <cstdint>
#include <cstdlib>

namespace {

void ignoreMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

Logger_Data_Handler_Class &handler()
{
    static int argc = 0;
    static QCoreApplication application(argc, nullptr);
    static AppController controller;
    static Logger_Data_Handler_Class instance(&controller);
    return instance;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    qInstallMessageHandler(ignoreMessage);
    if (size == 0)
        return 0;
    const QByteArray stream(reinterpret_cast<const char *>(data) + 1, int(size) - 1);
    QVector<protocol::Message> messages;
    protocol::EnvelopeReader whole;
    whole.feed(stream, [&messages](const protocol::Message &message) { messages += message; });
    QVector<protocol::Message> again;
    const auto takeAgain = [&again](const protocol::Message &message) { again += message; };
    protocol::EnvelopeReader pieces;
    const int cut = qMin(int(data[0]), stream.size());
    pieces.feed(stream.left(cut), takeAgain);
    pieces.feed(stream.mid(cut), takeAgain);
    if (again != messages || whole.isBroken() != pieces.isBroken())
        std::abort();
    for (const protocol::Message &message : messages)
        handler().slot_streaming_prot_received(message.type, new QByteArray(message.payload));
    return 0;
}
