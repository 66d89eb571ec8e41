#pragma once

#include "app/state/appcomponentbaseclass.h"
#include "can/filterlimit.h"
#include "config/terminalstruct.h"
#include "link/capabilities.h"
#include "link/deliveries.h"
#include "link/liveentries.h"
#include "link/liveobjects.h"
#include "link/messagerate.h"
#include "link/protocol/commands.h"
#include "link/protocol/commandsender.h"
#include "link/protocol/messagetypes.h"
#include "link/protocol/reply.h"
#include "link/rawqueue.h"
#include "link/recordsunderway.h"

#include <QHostAddress>
#include <QObject>

#include <array>
#include <atomic>
#include <memory>
#include <vector>

class CMD_Handler_Class;
class D4MODTransparent;
class Data_Handler_Class;
class TunnelingMsg;

// The facade of the link: owns both socket workers and the one configuration. Lives on the GUI
// thread, where all functions are called; only slot_take_logger_data and takeRecordOver run on
// the workers'.
//
// A cmd_write_* doesn't change the configuration: it sends the record with the new value, and what
// the logger echoes is applied. Without a logger the same bytes are looped back.
class Logger_Data_Handler_Class : public QObject,
                                  public AppComponentBaseClass,
                                  public protocol::CommandSender
{
    Q_OBJECT

public:
    explicit Logger_Data_Handler_Class(AppController *controller, QObject *parent = nullptr);
    ~Logger_Data_Handler_Class() override;

    void appStateChanged(AppSta_t &) override {}

    // Opens both sockets, with up to ten seconds for each. Events are delivered meanwhile: the user's
    // input has to be kept to what may happen then. A failure is told by signal_show_tcp_error,
    // unless it was asked for. False, too, while another call is under way.
    [[nodiscard]] bool connectLogger(const QHostAddress &address);
    // Makes the connectLogger() that is under way fail without a word. disconnectLogger() makes it
    // fail, too.
    void cancelConnect();
    [[nodiscard]] bool isConnected() const;
    // False at once when either socket is lost. isConnected() follows when the news has come, which
    // is what the user is told of then.
    [[nodiscard]] bool areBothConnected() const;

    // The steps of connecting. On failure lastCommandError() tells why.
    [[nodiscard]] bool getSoftwareVersion(int &major, int &minor);
    [[nodiscard]] bool getSystemCapabilities();
    [[nodiscard]] bool subsystemsReady();
    [[nodiscard]] bool getHardwareVersion(int &version);
    [[nodiscard]] bool disableStopLogging();
    [[nodiscard]] bool requestConfiguration();
    void enableLiveData();
    [[nodiscard]] bool sendSoftwareUpdate(const QByteArray &image);
    // Switches transparent mode of all CPUs.
    [[nodiscard]] bool setTransparentMode(bool on);

    struct CanMessageToSend
    {
        int can_nr = 0;
        int extended = 0; // 1: identifier of 29 bits
        int remote = 0;   // 1: remote frame
        quint32 id = 0;
        QByteArray data;
    };
    [[nodiscard]] bool writeCanMessage(const CanMessageToSend &message);

    // Any command: the raw reply, empty when none came in time.
    [[nodiscard]] QByteArray sendCommand(const QByteArray &command, int timeout_ms) override;
    // A command of the table that answers "OK", or "key=values".
    [[nodiscard]] bool sendSetCommand(protocol::Command command, const QStringList &arguments = {});
    [[nodiscard]] std::optional<QStringList> sendGetCommand(protocol::Command command,
                                                            protocol::ValueCount count,
                                                            const QStringList &arguments = {});

    [[nodiscard]] QString lastCommandError() const { return m_lastCommandError; }
    [[nodiscard]] const Capabilities &capabilities() const { return m_capabilities; }
    [[nodiscard]] const TerminalStruct &terminal() const { return *m_terminal; }
    [[nodiscard]] const SystemInfos &systemInfos() const { return m_systemInfos; }
    [[nodiscard]] D4MODTransparent *d4modTransparent(int rs485_nr) const;

    // The file form; a failure leaves the configuration in memory as it is.
    [[nodiscard]] bool saveConfiguration(const QString &path, QString *error = nullptr) const;
    [[nodiscard]] bool loadConfiguration(const QString &path, QString *error = nullptr);
    // Sends a whole configuration, or takes it over without a logger.
    bool writeWholeConfiguration(const TerminalStruct &configuration);

    bool cmd_write_gps_enabled(quint8 value);
    bool cmd_write_agm_enabled(quint8 value);
    bool writeAgm(const TerminalAgmCfg &record);
    bool cmd_write_logtrigger_cfg(const LogTriggerCfg &record);
    bool writeEventMeasurement(const AuxSupplyCfg &record);
    bool cmd_write_aux_supply_control(quint8 mode);
    bool cmd_write_can_enabled(int can_nr, quint8 value);
    bool writeCcpXcpEnabled(int can_nr, quint8 value);
    bool writeCan(int can_nr, const TerminalCanCfg &record);
    bool cmd_write_eth_module_selection(int eth_nr, quint8 selection);
    bool cmd_write_xcp_enabled(int eth_nr, quint8 value);
    bool cmd_write_tunneling_enabled(int eth_nr, quint8 value);
    bool cmd_write_mirroring_enabled(int eth_nr, quint8 value);
    bool cmd_write_eth_cfg(int eth_nr, const StreamingClass_Cfg_Ethernet &record);
    bool cmd_write_rs485_supply_out_enabled(int rs485_nr, quint8 value);
    bool cmd_write_rs485_voltage_lvl(int rs485_nr, quint16 voltage_mV);
    bool cmd_write_d4mod_enabled(int rs485_nr, quint8 value);
    bool cmd_write_d4mod_mode(int rs485_nr, quint8 mode, quint8 rate, qint32 mode_value);
    bool cmd_write_ethercat_enabled(int ethercat_nr, quint8 value);
    bool cmd_write_ethercat_sample_rate(int ethercat_nr, quint16 value);
    bool writeEtherCat(int ethercat_nr, const TerminalEtherCatCfg &record);

    // Applies the records that the logger has sent so far, instead of when events are next delivered.
    // Behind a write, so that the next change begins with what its echo holds.
    void applyWaitingRecords();

    // How long writes wait for their echo.
    void setWriteTimeout(int timeout_ms) { m_writeTimeout_ms = timeout_ms; }

    struct LiveCounters
    {
        quint64 entries = 0; // decoded since the program started
        quint64 dropped = 0; // came faster than they were decoded
    };
    [[nodiscard]] LiveCounters liveCounters() const
    {
        return {m_liveEntries, m_rawQueue.dropped()};
    }

public slots:
    void disconnectLogger();
    void format_cmd_timeout_error(int cmd_type);
    void slot_streaming_prot_received(int type, QByteArray *data); // takes the bytes over
    void slot_take_logger_data(QList<QByteArray *> data);          // takes the entries over
    void slot_process_logger_data();
    void send_signals_to_data_receivers();
    void check_emit_tcp_error_signal(QString error_txt);
    void req_keep_alive();

signals:
    void signal_update_cfg_gps();
    void sigUpdCfgAgm();
    void signal_update_cfg_can(int can_nr);
    void signal_update_cfg_ethernet(int eth_nr);
    void signal_update_cfg_rs485(int rs485_nr);
    void signal_update_cfg_logtrigger();
    void signal_update_cfg_ethercat(int ethercat_nr);
    void signal_full_update();
    // The record of a CAN channel that was just taken, or the one that was written before, needs more
    // filters than the hardware has: the ticks of these signals are gone. Behind the signals that
    // tell of the new record.
    void signalFilterLimitCleared(int can_nr, QStringList signalNames);
    void signal_show_tcp_error(QString error_txt);
    void signal_show_error_if_connected(QString title, QString error_txt);
    // Each second in which a port of the logger doesn't answer: after so many more it has failed.
    void signal_connecting(int port, int left_s);

    // Live data. Receivers are connected directly and copy what they keep.
    void signal_can_msg_list(int can_nr, QList<CAN_Msg_Class *> can_msg_list);
    void signal_ccp_xcp_infos(int can_nr, uchar session_status, uchar last_slave_response_code);
    void signal_agm_data_list(QList<AGM_DataContainer *> agm_data_container);
    void signal_gps_data_list(QList<GPS_DataContainer *> signal_gps_data_container);
    void signal_lte_data_list(QList<LTE_DataContainer *> lte_data_list);
    void signal_d4mod_msg_list(int rs485_nr, QList<D4Mod_Msg_Class *> d4mod_msg_list);
    void signal_d4mod_TED_infos(int rs485_nr, int channel, QString TED);
    void signal_rs485_infos(int rs485_nr, uchar d4mod_session_status,
                            uint16_t rs485_voltage_measured_mV);
    void signal_d4mod_infos(int rs485_nr, int channel, uint16_t dti_voltage_mV);
    void signal_system_infos_received();
    void signal_ethercat_infos(int ethercat_nr, uchar masterState, ushort workingCounter,
                               ushort lastErrEnum, uchar lastErrSlave);
    // The entry from its type byte on.
    void signal_ethercat_data_prot(int ethercat_nr, unsigned char *data, int data_length);
    void signal_ethernet_frame_list(int eth_nr, QList<ETH_Frame_Class *> eth_frame_list);
    void sigEthTunnelingMsgList(int eth_nr, QList<TunnelingMsg *> tunneling_msg_list);
    void sigEthXcpNfos(uint8_t eth_nr, int8_t mainSta, int8_t subSta, int8_t subStaStep,
                       int8_t lastErr);
    // A copy of the whole entry, made with new[]; the one receiver owns it.
    void sigEthHSFZNfo(uchar eth_nr, quint8 *rldEntry, uint len);
    void sigEthMirroringNfo(uchar eth_nr, quint8 *rldEntry, uint len);

private:
    // Latest values of a port, and which of them views haven't seen.
    struct PortStatus
    {
        std::optional<live::Rs485Infos> infos;
        std::array<std::optional<quint16>, 16> dtiVoltages_mV;
        QList<std::pair<int, QString>> teds;
    };

    void connectWorkers();
    template <class Worker, class... Arguments>
    void connectNews(Worker *worker, void (Worker::*signal)(Arguments...),
                     void (Logger_Data_Handler_Class::*slot)(Arguments...));
    [[nodiscard]] bool openSockets(const QHostAddress &address);
    template <class Worker>
    bool openSocket(Worker &worker, const QHostAddress &address, quint16 port);
    void closeSockets();
    void dropLiveData();
    void showSocketFailure();
    bool sendStreaming(int type, const QByteArray &bytes);
    bool sendRecord(int type, const QByteArray &bytes);
    void fakeTransfer(int type, const QByteArray &bytes);
    template <class R>
    bool writeRecord(int type, const R &record, const char *name);
    template <class R>
    bool takeRecord(const QByteArray &data, R &record);
    template <class R, class Owner, class T>
    bool writeField(int type, R &record, Owner &owner, T Owner::*field, T value, const char *name);
    bool applyRecord(int type, const QByteArray &data);
    bool writeLimitedCan(int can_nr, const TerminalCanCfg &record, const char *name);
    template <class EmitUpdates>
    void takeChannels(int firstCan, int count, EmitUpdates emitUpdates);
    void takeRecordOver(int type, QByteArray *data);
    void applyFirstRecord();

    using Decoder = void (Logger_Data_Handler_Class::*)(const QByteArray &entry);
    static Decoder decoderOf(quint8 type);
    void decode(const QByteArray &entry);
    void takeCan(const QByteArray &entry);
    void takeAgm(const QByteArray &entry);
    void takeD4mod(const QByteArray &entry);
    void takeGps(const QByteArray &entry);
    void takeEtherCat(const QByteArray &entry);
    void takeEthernet(const QByteArray &entry);
    void takeTunnelingBlock(const QByteArray &entry);
    void takeEthernetInfo(const QByteArray &entry);
    void takeTransparentData(const QByteArray &entry);
    void takeEtherCatInfos(const QByteArray &entry);
    void takeDtiVoltages(const QByteArray &entry);
    void takeTed(const QByteArray &entry);
    void takeRs485Infos(const QByteArray &entry);
    void takeCcpXcpInfos(const QByteArray &entry);
    void takeLte(const QByteArray &entry);
    void takeSystemInfos(const QByteArray &entry);
    void ignoreEntry(const QByteArray &) {}
    void sendPortSignals(int rs485_nr, live::Deliveries &out);

    std::unique_ptr<TerminalStruct> m_terminal;
    std::unique_ptr<CMD_Handler_Class> m_commands;
    std::unique_ptr<Data_Handler_Class> m_data;
    std::vector<std::unique_ptr<D4MODTransparent>> m_d4modTransparent;
    Capabilities m_capabilities;
    QString m_lastCommandError;
    int m_writeTimeout_ms = 8000;
    bool m_showsErrors = false;
    bool m_isConnecting = false; // the sockets are being opened
    bool m_connectIsCancelled = false;
    std::atomic<int> m_connectionNumber{0}; // of attempts to connect; the workers' threads read it

    can::FilterLimit m_filterLimit;
    RawQueue m_rawQueue;               // the data worker puts in, this thread takes out
    RecordsUnderway m_recordsUnderway; // the command worker puts in, this thread takes out
    MessageRate m_refusedRecords;      // of the command worker's thread

    quint64 m_liveEntries = 0;
    MessageRate m_warnings;
    MessageRate m_recordLines{100};
    std::array<QList<CAN_Msg_Class *>, live::canChannels> m_canMessages; // all lists are owned
    std::array<std::optional<live::CcpXcpInfos>, live::canChannels> m_ccpXcpInfos;
    QList<AGM_DataContainer *> m_agmSamples;
    QList<GPS_DataContainer *> m_gpsFixes;
    std::array<QList<D4Mod_Msg_Class *>, live::rs485Ports> m_d4modValues;
    std::array<PortStatus, live::rs485Ports> m_ports;
    QList<LTE_DataContainer *> m_lteStatus;
    QList<TunnelingMsg *> m_tunnelingMessages;
    QList<ETH_Frame_Class *> m_ethernetFrames;
    SystemInfos m_systemInfos;
    bool m_systemInfosAreNew = false;
};
