#include "a2l/records/a2lconstants.h"
#include "app/state/appcontroller.h"
#include "can/canfilters.h"
#include "link/logger_data_handler_class.h"
#include "tests/can/signalsamples.h"
#include "tests/support/messagecount.h"
#include "tests/support/simulatedlogger.h"

#include <QSignalSpy>
#include <QTest>

using Handler = Logger_Data_Handler_Class;
using Signal = StreamingClass_DBC_Signal;
using Switch = bool (Handler::*)(int can_nr, quint8 value);
Q_DECLARE_METATYPE(Switch)

// Whatever way a CAN channel's record comes to the tool, its filters fit the hardware afterwards.
class tst_FilterLimit : public QObject
{
    Q_OBJECT

private slots:
    void offlineAWrittenChannelIsLimited();
    void offlineAWholeConfigurationIsLimitedChannelByChannel();
    void theLoggerGetsAChannelWithinTheLimit();
    void theLoggerGetsAWholeConfigurationWithinTheLimit();
    void switchingAChannelKeepsToTheLimit_data();
    void switchingAChannelKeepsToTheLimit();
    void whatAWriteWithoutAnswerHasClearedIsToldWhenItIsSeen();
    void aWriteThatTheLoggerRefusesClearsNothing();
    void whatARefusingLoggerHoldsIsLimited();
    void aMessageThatADaqListNeedsIsClearedOnce();
    void aChannelThatTheLoggerSendsIsLimited();
    void theConfigurationOfALoggerIsLimited();
    void viewsAreToldOfTheRecordOnceItIsLimited();
    void theNoticeComesBehindTheUpdate();
    void aChannelWithinTheLimitRaisesNoNotice();
    void aRecordThatIsCutIsNotLimited();
};

namespace {

// Ticked signals; each has a message of its own.
int tickedOf(const TerminalCanCfg &channel)
{
    int count = 0;
    for (const Signal *signal : channel.dbc_signals)
        count += signal->selection_flags != 0 ? 1 : 0;
    return count;
}

struct Tool
{
    AppController controller;
    Handler handler{&controller};
    QSignalSpy notices{&handler, &Handler::signalFilterLimitCleared};

    [[nodiscard]] const TerminalCanCfg &channel(int number) const
    {
        return handler.terminal().can.at(std::size_t(number));
    }
    [[nodiscard]] int ticked(int number) const { return tickedOf(channel(number)); }
};

int tickedOf(SimulatedLogger &logger, int number)
{
    return logger.inspect([number](simulator::LoggerSimulator &s) {
        return tickedOf(s.state().configuration.can.at(std::size_t(number)));
    });
}

// A channel of so many messages, each with one recorded signal that is called s and its number.
void fill(TerminalCanCfg &channel, int messages)
{
    for (int i = 0; i < messages; ++i)
        sample::addSignal(channel.dbc_signals, ("s" + QByteArray::number(i)).constData(),
                          quint32(i), Signal::recordFlag);
}

TerminalCanCfg channelOf(int messages)
{
    TerminalCanCfg channel;
    fill(channel, messages);
    return channel;
}

const QStringList lastTwo{QStringLiteral("s128"), QStringLiteral("s129")};

} // namespace

void tst_FilterLimit::offlineAWrittenChannelIsLimited()
{
    Tool tool;
    QVERIFY(tool.handler.writeCan(6, channelOf(130)));
    QCOMPARE(tool.ticked(6), 128);
    QCOMPARE(tool.channel(6).dbc_signals.size(), 130);
    QCOMPARE(tool.notices.size(), 1);
    QCOMPARE(tool.notices.first(), (QVariantList{6, lastTwo}));
}

void tst_FilterLimit::offlineAWholeConfigurationIsLimitedChannelByChannel()
{
    TerminalStruct configuration;
    for (TerminalCanCfg &channel : configuration.can)
        fill(channel, 130);
    Tool tool;
    QVERIFY(tool.handler.writeWholeConfiguration(configuration));
    QCOMPARE(tool.notices.size(), 12);
    for (int i = 0; i < 12; ++i) {
        QCOMPARE(tool.ticked(i), 128);
        QCOMPARE(tool.notices.at(i), (QVariantList{i, lastTwo}));
    }
}

void tst_FilterLimit::theLoggerGetsAChannelWithinTheLimit()
{
    SimulatedLogger logger;
    Tool tool;
    const QSignalSpy updates(&tool.handler, &Handler::signal_update_cfg_can);
    QVERIFY(tool.handler.connectLogger(logger.address()));
    QVERIFY(tool.handler.writeCan(11, channelOf(130)));
    QCOMPARE(tickedOf(logger, 11), 128);
    QVERIFY(tool.notices.isEmpty());
    QTRY_COMPARE(tool.notices.size(), 1);
    QCOMPARE(updates.size(), 1);
    QCOMPARE(tool.notices.first(), (QVariantList{11, lastTwo}));
    QCOMPARE(tool.ticked(11), 128);
    // Told once: what is written next is within the limit.
    QVERIFY(tool.handler.writeCan(11, tool.channel(11)));
    QTRY_COMPARE(updates.size(), 2);
    QCOMPARE(tool.notices.size(), 1);
    tool.handler.disconnectLogger();
}

void tst_FilterLimit::theLoggerGetsAWholeConfigurationWithinTheLimit()
{
    SimulatedLogger logger;
    Tool tool;
    TerminalStruct configuration;
    fill(configuration.can[4], 130);
    QVERIFY(tool.handler.connectLogger(logger.address()));
    QVERIFY(tool.handler.writeWholeConfiguration(configuration));
    QCOMPARE(tickedOf(logger, 4), 128);
    QTRY_COMPARE(tool.notices.size(), 1);
    QCOMPARE(tool.notices.first(), (QVariantList{4, lastTwo}));
    tool.handler.disconnectLogger();
}

void tst_FilterLimit::switchingAChannelKeepsToTheLimit_data()
{
    QTest::addColumn<Switch>("change");
    QTest::newRow("channel") << Switch(&Handler::cmd_write_can_enabled);
    QTest::newRow("CCP or XCP") << Switch(&Handler::writeCcpXcpEnabled);
}

// "Live" is ticked without a word to the logger.
void tst_FilterLimit::switchingAChannelKeepsToTheLimit()
{
    QFETCH(Switch, change);
    SimulatedLogger logger;
    Tool tool;
    TerminalCanCfg channel = channelOf(129);
    channel.dbc_signals.at(128)->selection_flags = 0;
    QVERIFY(tool.handler.connectLogger(logger.address()));
    QVERIFY(tool.handler.writeCan(11, channel));
    tool.handler.applyWaitingRecords();
    tool.channel(11).dbc_signals.at(128)->selection_flags = Signal::liveFlag;
    QVERIFY((tool.handler.*change)(11, 1));
    tool.handler.applyWaitingRecords();
    QCOMPARE(tickedOf(logger, 11), 128);
    QCOMPARE(tool.ticked(11), 128);
    QCOMPARE(tool.notices.size(), 1);
    QCOMPARE(tool.notices.first(), (QVariantList{11, QStringList{QStringLiteral("s128")}}));
    tool.handler.disconnectLogger();
}

void tst_FilterLimit::whatAWriteWithoutAnswerHasClearedIsToldWhenItIsSeen()
{
    SimulatedLogger logger;
    Tool tool;
    QVERIFY(tool.handler.connectLogger(logger.address()));
    logger.setFault(QStringLiteral("lost-reply"));
    tool.handler.setWriteTimeout(50);
    QVERIFY(!tool.handler.writeCan(11, channelOf(130)));
    QVERIFY(tool.notices.isEmpty());
    logger.clearFaults();
    logger.push(protocol::Can + 11);
    QTRY_COMPARE(tool.notices.size(), 1);
    QCOMPARE(tool.notices.first(), (QVariantList{11, lastTwo}));
    tool.handler.disconnectLogger();
}

void tst_FilterLimit::aWriteThatTheLoggerRefusesClearsNothing()
{
    SimulatedLogger logger;
    Tool tool;
    const QSignalSpy updates(&tool.handler, &Handler::signal_update_cfg_can);
    QVERIFY(tool.handler.connectLogger(logger.address()));
    logger.setFault(QStringLiteral("refused-write"));
    (void)tool.handler.writeCan(11, channelOf(130));
    QTRY_COMPARE(updates.size(), 1);
    QCOMPARE(tool.ticked(11), 0);
    QVERIFY(tool.notices.isEmpty());
    tool.handler.disconnectLogger();
}

// As many signals, all ticked, as were written, but of more messages.
void tst_FilterLimit::whatARefusingLoggerHoldsIsLimited()
{
    SimulatedLogger logger;
    logger.inspect(
        [](simulator::LoggerSimulator &s) { s.state().configuration.can[11] = channelOf(130); });
    Tool tool;
    TerminalCanCfg oneMessage = channelOf(130);
    for (Signal *signal : oneMessage.dbc_signals)
        signal->msg_id = 1;
    QVERIFY(tool.handler.connectLogger(logger.address()));
    logger.setFault(QStringLiteral("refused-write"));
    (void)tool.handler.writeCan(11, oneMessage);
    QTRY_COMPARE(tool.notices.size(), 1);
    QCOMPARE(tool.notices.first(), (QVariantList{11, lastTwo}));
    QCOMPARE(tool.ticked(11), 128);
    tool.handler.disconnectLogger();
}

// Its filter stays, so there is still one too many when the record comes back.
void tst_FilterLimit::aMessageThatADaqListNeedsIsClearedOnce()
{
    SimulatedLogger logger;
    Tool tool;
    TerminalCanCfg channel = channelOf(129);
    channel.a2l.config.active_interface = ACTIVE_A2L_IF_CCP_XCP_O_CAN;
    for (const quint32 id : {0x600U, 128U})
        channel.a2l.config.cfg.daq_lists.add().can_id = id;
    QVERIFY(tool.handler.connectLogger(logger.address()));
    QVERIFY(tool.handler.writeCan(11, channel));
    tool.handler.applyWaitingRecords();
    QCOMPARE(tool.notices.size(), 1);
    QCOMPARE(tool.notices.first(),
             (QVariantList{11, QStringList{QStringLiteral("s127"), QStringLiteral("s128")}}));
    QCOMPARE(tickedOf(logger, 11), 127);
    QCOMPARE(tool.ticked(11), 127);
    const QSignalSpy updates(&tool.handler, &Handler::signal_update_cfg_can);
    logger.push(protocol::Can + 11);
    QTRY_COMPARE(updates.size(), 1);
    QCOMPARE(tool.ticked(11), 127);
    QCOMPARE(tool.notices.size(), 1);
    tool.handler.disconnectLogger();
}

void tst_FilterLimit::aChannelThatTheLoggerSendsIsLimited()
{
    SimulatedLogger logger;
    Tool tool;
    QVERIFY(tool.handler.connectLogger(logger.address()));
    logger.inspect(
        [](simulator::LoggerSimulator &s) { s.state().configuration.can[11] = channelOf(130); });
    logger.push(protocol::Can + 11);
    QTRY_COMPARE(tool.notices.size(), 1);
    QCOMPARE(tool.notices.first(), (QVariantList{11, lastTwo}));
    QCOMPARE(tool.ticked(11), 128);
    tool.handler.disconnectLogger();
}

void tst_FilterLimit::theConfigurationOfALoggerIsLimited()
{
    SimulatedLogger logger;
    logger.inspect(
        [](simulator::LoggerSimulator &s) { s.state().configuration.can[3] = channelOf(130); });
    Tool tool;
    QVERIFY(tool.handler.connectLogger(logger.address()));
    QVERIFY(tool.handler.requestConfiguration());
    QTRY_COMPARE(tool.notices.size(), 1);
    QCOMPARE(tool.notices.first(), (QVariantList{3, lastTwo}));
    QCOMPARE(tool.ticked(3), 128);
    tool.handler.disconnectLogger();
}

void tst_FilterLimit::viewsAreToldOfTheRecordOnceItIsLimited()
{
    Tool tool;
    QList<int> ticked;
    connect(&tool.handler, &Handler::signal_update_cfg_can,
            [&](int can_nr) { ticked.append(tool.ticked(can_nr)); });
    connect(&tool.handler, &Handler::signal_full_update, [&] { ticked.append(tool.ticked(0)); });
    QVERIFY(tool.handler.writeCan(0, channelOf(200)));
    TerminalStruct configuration;
    fill(configuration.can[0], 200);
    QVERIFY(tool.handler.writeWholeConfiguration(configuration));
    QCOMPARE(ticked, (QList<int>{128, 128}));
}

void tst_FilterLimit::theNoticeComesBehindTheUpdate()
{
    Tool tool;
    QSignalSpy updates(&tool.handler, &Handler::signal_update_cfg_can);
    int updatesBefore = 0;
    connect(&tool.handler, &Handler::signalFilterLimitCleared,
            [&] { updatesBefore = updates.size(); });
    QVERIFY(tool.handler.writeCan(0, channelOf(129)));
    QCOMPARE(updatesBefore, 1);
}

void tst_FilterLimit::aChannelWithinTheLimitRaisesNoNotice()
{
    Tool tool;
    QVERIFY(tool.handler.writeCan(0, channelOf(128)));
    QCOMPARE(tool.ticked(0), 128);
    QVERIFY(tool.notices.isEmpty());
}

void tst_FilterLimit::aRecordThatIsCutIsNotLimited()
{
    Tool tool;
    const MessageCount lines("A record of the logger is not whole, it is dropped.");
    const QByteArray cut = record::toBytes(channelOf(130)).chopped(1);
    tool.handler.slot_streaming_prot_received(protocol::Can, new QByteArray(cut));
    QCOMPARE(lines.value(), 1);
    QVERIFY(tool.notices.isEmpty());
    QVERIFY(tool.channel(0).dbc_signals.isEmpty());
}

QTEST_GUILESS_MAIN(tst_FilterLimit)
#include "tst_filterlimit.moc"
