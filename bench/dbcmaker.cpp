#include "dbcmaker.h"

#include <array>
#include <cstdio>
#include <random>

namespace {

constexpr std::array words = {"Air",  "Brake", "Crank", "Dew",   "Engine", "Fuel", "Gear", "Heat",
                              "Idle", "Knock", "Lamp",  "Motor", "Nozzle", "Oil",  "Pump", "Rail"};
constexpr std::array units = {"", "rpm", "km/h", "degC", "bar", "%", "Nm", "V", "A", "kPa", "ms"};
constexpr std::array lengths = {1, 1, 2, 3, 4, 8, 8, 12, 16, 16, 24, 32};
struct Scale
{
    const char *factor;
    const char *offset;
};
constexpr std::array<Scale, 5> scales = {
    {{"1", "0"}, {"0.1", "0"}, {"0.5", "-40"}, {"0.01", "0"}, {"0.00390625", "-125"}}};
constexpr int longestLine = 400;

class Maker
{
public:
    QByteArray make(int size)
    {
        m_head = "VERSION \"bench\"\n\nNS_ :\n\tCM_\n\tVAL_\n\nBS_:\n\nBU_: Node0 Node1 Node2\n\n";
        for (int i = 1;
             m_head.size() + m_comments.size() + m_values.size() + m_attributes.size() < size; ++i)
            addMessage(i);
        return m_head + m_comments + m_attributes + m_values;
    }

private:
    template <class List>
    auto pick(const List &list)
    {
        return list[m_random() % list.size()];
    }

    template <class... Arguments>
    static void add(QByteArray &text, const char *format, Arguments... arguments)
    {
        std::array<char, longestLine> line;
        text +=
            QByteArray(line.data(), std::snprintf(line.data(), line.size(), format, arguments...));
    }

    void addMessage(int number)
    {
        constexpr int standardMessages = 1800;
        const unsigned identifier =
            number <= standardMessages ? unsigned(number) : 0x80010000u + unsigned(number) * 16;
        const int bits = number % 10 != 0 ? 64 : 512;
        add(m_head, "BO_ %u %s_%s_%05d: %d Node%u\n", identifier, pick(words), pick(words), number,
            bits / 8, unsigned(m_random() % 3));
        int bit = 0;
        for (int signal = 0; signal < 40; ++signal) {
            const int length = pick(lengths);
            if (bit + length > bits)
                break;
            addSignal(identifier, number, signal, bit, length);
            bit += length;
        }
        m_head += '\n';
        add(m_attributes, "BA_ \"GenMsgCycleTime\" BO_ %u %u;\n", identifier,
            unsigned(m_random() % 100));
    }

    void addSignal(unsigned identifier, int message, int signal, int bit, int length)
    {
        std::array<char, longestLine> name;
        std::snprintf(name.data(), name.size(), "%s%s_Act_%05d_%02d", pick(words), pick(words),
                      message, signal);
        std::array<char, 8> multiplex{};
        if (message % 9 == 0)
            std::snprintf(multiplex.data(), multiplex.size(), signal == 0 ? " M" : " m%d",
                          signal % 4);
        const Scale scale = pick(scales);
        const bool isIntel = m_random() % 5 < 3;
        const int start = isIntel ? bit : bit / 8 * 8 + 7 - bit % 8;
        add(m_head, " SG_ %s%s : %d|%d@%d%s (%s,%s) [%s|%.1f] \"%s\" Node1,Node2\n", name.data(),
            multiplex.data(), start, length, isIntel ? 1 : 0, m_random() % 4 == 0 ? "-" : "+",
            scale.factor, scale.offset, scale.offset, double(1ull << length) - 1.0, pick(units));
        if (m_random() % 2 == 0)
            addComment(identifier, name.data());
        if (m_random() % 4 == 0)
            addValues(identifier, name.data());
    }

    void addComment(unsigned identifier, const char *name)
    {
        add(m_comments, "CM_ SG_ %u %s \"%s %s:", identifier, name, pick(words), pick(words));
        for (unsigned count = 2 + unsigned(m_random() % 8); count > 0; --count)
            add(m_comments, " %s", pick(words));
        m_comments += "\";\n";
    }

    void addValues(unsigned identifier, const char *name)
    {
        add(m_values, "VAL_ %u %s", identifier, name);
        for (unsigned value = 0; value < 2 + m_random() % 7; ++value)
            add(m_values, " %u \"%s %s\"", value, pick(words), pick(words));
        m_values += " ;\n";
    }

    std::mt19937 m_random{1};
    QByteArray m_head; // up to the last message
    QByteArray m_comments;
    QByteArray m_attributes;
    QByteArray m_values;
};

} // namespace

QByteArray bench::makeDbc(int size)
{
    return Maker().make(size);
}
