#pragma once

#include "app/state/appcontroller.h"
#include "link/logger_data_handler_class.h"
#include "tests/support/peerlogger.h"

// The tool without its window and without a logger.
struct OfflineTool
{
    OfflineTool() { controller.registerComponent(&handler); }

    AppController controller;
    Logger_Data_Handler_Class handler{&controller};
};

// The same, with a logger.
struct OnlineTool : OfflineTool
{
    explicit OnlineTool(PeerLogger::Answer answer)
        : peer(std::move(answer))
    {
        isConnected = handler.connectLogger(peer.address());
        controller.slotSetAppState(APP_STA_CONN_INIT);
    }
    // The logger gives the same reply to every text command, and echoes records.
    explicit OnlineTool(const QByteArray &reply)
        : OnlineTool(PeerLogger::Answer([reply](const protocol::Message &message) {
            return message.type == protocol::TextCommand ? textReply(message, reply)
                                                         : echo(message);
        }))
    {}
    ~OnlineTool() { handler.disconnectLogger(); }
    OnlineTool(const OnlineTool &) = delete;
    OnlineTool &operator=(const OnlineTool &) = delete;

    PeerLogger peer;
    bool isConnected = false;
};
