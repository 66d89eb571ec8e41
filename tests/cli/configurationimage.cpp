#include "configurationimage.h"

#include <QtEndian>

#include <cstring>

namespace {

class Bytes
{
public:
    Bytes &u8(unsigned value) { return add(quint8(value)); }
    Bytes &u16(unsigned value) { return add(quint16(value)); }
    Bytes &u32(quint32 value) { return add(value); }
    Bytes &u64(quint64 value) { return add(value); }
    Bytes &real(double value)
    {
        quint64 bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        return add(bits);
    }
    Bytes &text(const QString &value)
    {
        if (value.isNull())
            return u32(0xFFFFFFFF);
        u32(quint32(value.size()) * 2);
        for (const QChar character : value)
            u16(character.unicode());
        return *this;
    }
    Bytes &zeros(int count)
    {
        m_bytes.append(count, '\0');
        return *this;
    }
    Bytes &frame(const Bytes &record)
    {
        u32(quint32(record.m_bytes.size()));
        m_bytes += record.m_bytes;
        return *this;
    }
    [[nodiscard]] const QByteArray &bytes() const { return m_bytes; }

private:
    template <class T>
    Bytes &add(T value)
    {
        char raw[sizeof value];
        qToBigEndian(value, raw);
        m_bytes.append(raw, int(sizeof raw));
        return *this;
    }

    QByteArray m_bytes;
};

Bytes dbcSignal(const QString &name)
{
    Bytes signal;
    signal.u32(1).text(name).text(QStringLiteral("km/h")).text({}).u8(2).u32(quint32(-3));
    signal.u16(7).u16(12).u8(1).u8(0).real(0.5).real(-40).real(0).real(250);
    return signal.u8(3).u8(8).u32(0x1ABCDEF0).u8(1);
}

Bytes emptySignal()
{
    Bytes signal;
    return signal.u32(1).text({}).text({}).text({}).zeros(1 + 4 + 2 + 2 + 1 + 1 + 4 * 8 + 1 + 1 + 4
                                                          + 1);
}

Bytes filter()
{
    Bytes row;
    return row.u32(1).u8(1).u8(2).u8(1).u32(0x18DA00F1).u32(0x1FFFFFFF);
}

Bytes odtElement(const RecordVersions &frames, const RecordVersions &content)
{
    Bytes element;
    element.u32(quint32(frames.element)).u8(4).u8(2).u8(1).u32(0x80001234);
    element.u32(2).text(QStringLiteral("speed")).text(QStringLiteral("torque"));
    if (frames.element >= 2)
        element.u8(content.element >= 2 ? 1 : 0).u8(content.element >= 2 ? 3 : 0);
    return element;
}

Bytes daqList(const RecordVersions &frames, const RecordVersions &content)
{
    Bytes odt;
    odt.u32(1).u8(60).u8(1).u32(1).frame(odtElement(frames, content));
    Bytes daq;
    daq.u32(quint32(frames.daq)).text(QStringLiteral("10ms")).u16(6).u32(10).u16(2).u16(5);
    daq.u32(0x80000123).u8(9).u8(60).u32(1).frame(odt);
    if (frames.daq >= 2)
        daq.u16(content.daq >= 2 ? 7 : 0);
    return daq;
}

// What an A2L file brings, or the defaults.
Bytes cfg(bool filled, const RecordVersions &frames, const RecordVersions &content)
{
    Bytes record;
    record.u32(quint32(frames.cfg));
    if (!filled) {
        record.zeros(2 + 2 + 4 + 4 + 2 + 2 + 4 + 8).u32(0).u32(0).u32(0).u16(0).text({}).text({});
    } else {
        Bytes event;
        event.u32(1).text(QStringLiteral("task")).text({}).u8(3).u16(6).u32(100);
        record.u16(0x201).u16(0x105).u32(0x700).u32(0x80000701).u16(0x4321).u16(1).u32(500000);
        record.u8(75).u8(1).u8(16).u8(2).u8(3).u8(10).u8(0x5A).u8(4);
        record.u32(2).u32(5).u32(0xFFFFFFFE).u32(1).frame(event);
        record.u32(1).frame(daqList(frames, content));
        record.u16(5555).text(QStringLiteral("192.168.0.7")).text(QStringLiteral("1.1"));
    }
    if (frames.cfg >= 3)
        record.u32(filled && content.cfg >= 3 ? 0x10 : 0).u8(filled && content.cfg >= 3 ? 77 : 191);
    return record;
}

Bytes module(bool filled, const RecordVersions &frames, const RecordVersions &content)
{
    Bytes config;
    config.u32(1).u8(filled ? 1 : 0).u8(filled ? 1 : 0).frame(cfg(filled, frames, content));
    Bytes record;
    record.u32(quint32(frames.module)).text(filled ? QStringLiteral("ecu.a2l") : QString());
    record.u32(0).u32(0).u32(0).u32(0).frame(config);
    return record.u8(filled ? 2 : 0).u32(filled ? 0xCAFE : 0);
}

Bytes canChannel(bool filled, const RecordVersions &frames, const RecordVersions &content)
{
    Bytes can;
    can.u32(quint32(frames.can)).u8(filled ? 1 : 0).zeros(4).u16(filled ? 40 : 15);
    can.u8(11).u8(4).u8(1).u8(15).u8(11).u8(4).u8(1).u8(0).u8(0);
    if (filled)
        can.u32(1).frame(filter()).u32(1).frame(dbcSignal(QStringLiteral("Drehzahl ü")));
    else
        can.u32(0).u32(0);
    if (frames.can >= 2)
        can.frame(module(filled && content.can >= 2, frames, content));
    if (frames.can >= 3)
        can.text(filled && content.can >= 3 ? QStringLiteral("Motor") : QString())
            .u8(filled && content.can >= 3 ? 2 : 0);
    if (frames.can >= 4 && filled && content.can >= 4) {
        can.u32(1).u32(0x321).u32(8).u32(2).u32(2).u8(2).u8(0).u8(1).u8(1).u8(1);
        can.text(QStringLiteral("AIM 1")).text(QStringLiteral("V"));
    } else if (frames.can >= 4) {
        can.u32(0);
    }
    return can;
}

Bytes agm()
{
    Bytes record;
    record.u32(1).u8(1).u16(4096).u16(4096).u16(4096).u16(0xFFFE).zeros(16).u16(2).u16(3);
    return record.u8(1).u8(0).u8(0).u8(1).u8(1);
}

Bytes trigger(bool filled)
{
    Bytes record;
    record.u32(1).u8(filled ? 1 : 0).u8(0).u8(filled ? 2 : 1).u32(filled ? 30 : 0);
    record.u8(filled ? 1 : 0).real(filled ? 1.5 : 0).u8(filled ? 3 : 0);
    record.frame(filled ? dbcSignal(QStringLiteral("Start")) : emptySignal());
    return record.frame(emptySignal());
}

Bytes event(bool filled, const RecordVersions &frames, const RecordVersions &content)
{
    Bytes record;
    record.u32(quint32(frames.event)).text(filled ? QStringLiteral("Winter test") : QString());
    if (frames.event >= 2)
        record.u8(filled && content.event >= 2 ? 2 : 0);
    return record;
}

Bytes rs485(bool filled)
{
    Bytes d4mod;
    d4mod.u32(1).u8(filled ? 1 : 0).u8(filled ? 3 : 0).u8(filled ? 1 : 0).u32(filled ? 2000 : 1000);
    Bytes port;
    return port.u32(1).u8(filled ? 1 : 0).u16(filled ? 12000 : 5500).frame(d4mod);
}

Bytes etherCat(bool filled)
{
    Bytes master;
    master.u32(1).u8(filled ? 1 : 0).u16(filled ? 250 : 100);
    if (!filled)
        return master.u32(0);
    Bytes signal;
    signal.u32(1).text(QStringLiteral("Force")).text(QStringLiteral("N")).text({});
    signal.u16(16).u16(32).u8(4).u16(0x1234).u8(5).real(0.1).real(2).real(3).real(4).u8(1);
    Bytes slave;
    slave.u32(1).u16(1).text(QStringLiteral("Terminal")).u32(2).u32(0xFFFFFFFF).u32(3);
    slave.u32(1).frame(signal);
    return master.u32(1).frame(slave);
}

Bytes tunneling(bool filled)
{
    Bytes record;
    record.u32(2).u8(0).u16(filled ? 1234 : 56789);
    record.text(filled ? QStringLiteral("10.0.0.1") : QStringLiteral("169.254.174.64"));
    record.text(QStringLiteral("169.254.86.68"));
    if (filled)
        record.u32(1).u32(0x7FF).u32(0x100).u8(2).u8(0);
    else
        record.u32(0);
    return record.u8(filled ? 1 : 0).u8(0).u8(0x0F).u8(filled ? 0x55 : 0x0F).u32(filled ? 3 : 0);
}

Bytes ethernet(bool filled, const RecordVersions &frames, const RecordVersions &content)
{
    Bytes xcp;
    xcp.u32(0).u8(0).frame(module(filled, frames, content));
    Bytes record;
    record.u32(quint32(frames.ethernet)).u8(filled ? 1 : 0).frame(xcp);
    if (frames.ethernet >= 1)
        record.frame(tunneling(filled && content.ethernet >= 1));
    if (frames.ethernet >= 2)
        record.text(filled && content.ethernet >= 2 ? QStringLiteral("Gateway") : QString())
            .u8(filled && content.ethernet >= 2 ? 1 : 0);
    return record;
}

} // namespace

QByteArray configurationImage(const RecordVersions &frames, const RecordVersions &content)
{
    constexpr int canInUse = 3;
    constexpr int rs485InUse = 9;
    constexpr int etherCatInUse = 7;
    Bytes terminal;
    terminal.u32(quint32(frames.terminal));
    for (int i = 0; i < 12; ++i)
        terminal.frame(canChannel(i == canInUse, frames, content));
    terminal.frame(agm()).frame(Bytes().u32(1).u8(1)).frame(Bytes().u32(1).u8(1).u8(7));
    if (frames.terminal >= 2)
        terminal.frame(trigger(content.terminal >= 2));
    if (frames.terminal >= 3)
        terminal.frame(event(content.terminal >= 3, frames, content));
    for (int i = 0; frames.terminal >= 4 && i < 10; ++i)
        terminal.frame(rs485(content.terminal >= 4 && i == rs485InUse));
    for (int i = 0; frames.terminal >= 5 && i < 8; ++i)
        terminal.frame(etherCat(content.terminal >= 5 && i == etherCatInUse));
    if (frames.terminal >= 6)
        terminal.frame(ethernet(content.terminal >= 6, frames, content));
    return Bytes().frame(terminal).bytes();
}

QByteArray configurationFileOf(const QByteArray &image)
{
    qint64 sum = 0;
    for (const char byte : image)
        sum += qint8(byte);
    const auto checksum = quint32(sum == 0 ? 1 : sum);
    return Bytes().u32(quint32(image.size())).bytes() + image + Bytes().u32(checksum).bytes();
}

QByteArray logFileOf(const QByteArray &image)
{
    char size[4];
    qToLittleEndian(quint32(image.size() + 4), size);
    return QByteArray(size, 4) + Bytes().u32(quint32(image.size())).bytes() + image;
}
