#pragma once

#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "config/terminalstruct.h"

// A configuration with something of everything.
[[nodiscard]] inline std::unique_ptr<TerminalStruct> sampleConfiguration()
{
    auto configuration = std::make_unique<TerminalStruct>();
    configuration->event.event_name = QStringLiteral("Brake \u001b[31mtest");
    configuration->event.aux_mode = 1;
    configuration->gps.gps_enabled = 1;

    TerminalCanCfg &can = configuration->can[2];
    can.enabled = 1;
    can.can_mode = 2;
    can.clk_div = 6;
    can.tseg1 = 14;
    can.tseg2 = 5;
    can.termination = 1;
    CanIdFilterElement &filter = can.filters.add();
    filter.filter_type = 2;
    filter.reject = 1;
    filter.id1 = 0x100;
    filter.id2 = 0x7FF;
    StreamingClass_DBC_Signal &speed = can.dbc_signals.add();
    speed.name = QStringLiteral("Speed");
    speed.unit = QStringLiteral("km/h");
    speed.start_bit = 8;
    speed.bit_length = 16;
    speed.little_endian = 1;
    speed.factor = 0.01;
    speed.maximum = 655.35;
    speed.selection_flags = StreamingClass_DBC_Signal::recordFlag;
    speed.dlc = 8;
    speed.msg_id = 0x18FEF100;
    speed.extended_id = 1;
    AimMsgMeta &aim = can.aim_modules.add();
    aim.MsgId = 0x321;
    aim.msgLength = 8;
    aim.channelsInMsg = 2;
    aim.samplesInMsg = 2;
    aim.sampleSizeInBytes = 2;
    aim.isSigned = true;
    aim.name = QStringLiteral("DMS");
    aim.unit = QStringLiteral("mV");

    StreamingClass_A2L_Module &module = configuration->can[5].a2l;
    module.a2l_file_name = QStringLiteral("ecu.a2l");
    module.config.enabled = 1;
    module.config.active_interface = 1;
    StreamingClass_A2L_CFG &cfg = module.config.cfg;
    cfg.protocol_version = 0x201;
    cfg.can_id_send = 0x700;
    cfg.can_id_recv = 0x80000701;
    cfg.baudrate = 500000;
    StreamingClass_A2L_RASTER_EVENT &event = cfg.rasters.add();
    event.name = QStringLiteral("10 ms task");
    event.channel_no = 3;
    event.period_cse = 6;
    event.period_rate = 10;
    StreamingClass_A2L_DAQ &daq = cfg.daq_lists.add();
    daq.name = QStringLiteral("fast");
    daq.can_id = 0x702;
    daq.event_channel = 3;
    daq.first_pid = 60;
    daq.max_odt = 4;
    daq.odt_capacity = 7;
    StreamingClass_A2L_ODT_ELEMENT &element = daq.odts.add().elements.add();
    element.size = 4;
    element.names.append(QStringLiteral("torque"));
    A2lMeasurement &torque = module.measurements.add();
    torque.name = QStringLiteral("torque");
    torque.data_type = 8;
    torque.conversion = QStringLiteral("Nm");
    torque.upper_limit = 500;
    torque.ecu_address = 0x80001000;
    A2lCompuMethod &method = module.compu_methods.add();
    method.name = QStringLiteral("Nm");
    method.conversion_type = 2;
    method.unit = QStringLiteral("Nm");
    method.linear_a = 0.5;
    method.linear_b = -10;

    configuration->rs485[1].supply_out = 1;
    configuration->rs485[1].d4mod.enabled = 1;
    TerminalEtherCatCfg &master = configuration->ethercat[0];
    master.enabled = 1;
    EtherCatSlave &slave = master.slaves.add();
    slave.slave_number = 1;
    slave.name = QStringLiteral("Terminal");
    EtherCatSignal &force = slave.slave_signals.add();
    force.name = QStringLiteral("Force");
    force.bit_length = 32;
    force.data_type = 4;
    force.mdf4_flags = 1;
    configuration->eth.module_selection = 1;
    configuration->eth.custom_name = QStringLiteral("Gateway");
    TunnelingFilter &tunnel = configuration->eth.tunneling.filters.add();
    tunnel.channel = 2;
    tunnel.from_id = 0x100;
    tunnel.to_id = 0x1FF;
    return configuration;
}

// Entries of several sources with a gap, garbage and an entry that is cut short.
[[nodiscard]] inline QByteArray sampleEntries()
{
    using namespace rawlog;
    AgmSample sample;
    sample.temperature = 41;
    const CanFrame frame{0x18FEF100, true, QByteArray(8, '\1')};
    return utcStartEntry(1700000000123456) + syncStampEntry(1000000, 0)
           + debugCountersEntry(0, 0, 1) + canEntry(1500000, 2, frame)
           + agmEntry(1600000, 0, sample) + canEntry(4000000, 2, frame) + QByteArrayLiteral("noise")
           + syncStampEntry(5000000, 0) + canEntry(6000000, 2, frame).left(20);
}
