// Reads any bytes as the stream of the data socket, whole and in pieces, and decodes and delivers
// the entries in it as the tool does. The first byte tells where the stream is cut.

#include "app/state/appcontroller.h"
#include "eth/tunnelingmsg.h"
#include "link/logger_data_handler_class.h"
#include "link/protocol/framereader.h"

#include <QCoreApplication>

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <memory>

namespace {

void ignoreMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

// A view that looks at every byte it is given.
void watch(Logger_Data_Handler_Class &handler)
{
    using Handler = Logger_Data_Handler_Class;
    static quint64 sum = 0;
    const auto add = [](const QByteArray &bytes) {
        for (const char byte : bytes)
            sum += quint8(byte);
    };
    const auto takeEntry = [](uchar, quint8 *bytes, uint length) {
        const std::unique_ptr<quint8[]> owned(bytes);
        for (uint i = 0; i < length; ++i)
            sum += bytes[i];
    };
    QObject::connect(&handler, &Handler::signal_can_msg_list, &handler,
                     [add](int, const QList<CAN_Msg_Class *> &list) {
                         for (const CAN_Msg_Class *message : list)
                             add(message->data);
                     });
    QObject::connect(&handler, &Handler::signal_ethernet_frame_list, &handler,
                     [add](int, const QList<ETH_Frame_Class *> &list) {
                         for (const ETH_Frame_Class *frame : list)
                             add(frame->data);
                     });
    QObject::connect(&handler, &Handler::sigEthTunnelingMsgList, &handler,
                     [add](int, const QList<TunnelingMsg *> &list) {
                         for (const TunnelingMsg *message : list)
                             add(message->bytes());
                     });
    QObject::connect(&handler, &Handler::signal_ethercat_data_prot, &handler,
                     [](int, const unsigned char *data, int length) {
                         for (int i = 0; i < length; ++i)
                             sum += data[i];
                     });
    QObject::connect(&handler, &Handler::sigEthHSFZNfo, &handler, takeEntry);
    QObject::connect(&handler, &Handler::sigEthMirroringNfo, &handler, takeEntry);
}

Logger_Data_Handler_Class &handler()
{
    static int argc = 0;
    static QCoreApplication application(argc, nullptr);
    static AppController controller;
    static Logger_Data_Handler_Class instance(&controller);
    static const bool isWatched = (watch(instance), true);
    Q_UNUSED(isWatched)
    return instance;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    qInstallMessageHandler(ignoreMessage);
    std::cerr.setstate(std::ios::failbit);
    if (size == 0)
        return 0;
    const QByteArray stream(reinterpret_cast<const char *>(data) + 1, int(size) - 1);
    protocol::FrameReader whole;
    const QList<QByteArray> frames = whole.feed(stream);
    protocol::FrameReader pieces;
    const int cut = qMin(int(data[0]), stream.size());
    QList<QByteArray> again = pieces.feed(stream.left(cut));
    again += pieces.feed(stream.mid(cut));
    if (again != frames)
        std::abort();
    QList<QByteArray *> entries;
    for (const QByteArray &frame : frames)
        entries.append(new QByteArray(frame));
    handler().slot_take_logger_data(entries);
    handler().slot_process_logger_data();
    handler().send_signals_to_data_receivers();
    QCoreApplication::removePostedEvents(&handler());
    return 0;
}
