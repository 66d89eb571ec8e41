#pragma once

#include <QStringList>

#include <optional>

// What the connected logger has, in the order of its reply.
struct Capabilities
{
    static constexpr int needed = 7; // a logger without EtherCAT may leave out the last number

    int first = 0; // stored only
    int agm = 0;
    int gps = 0;
    int canChannels = 0;
    int lte = 0;
    int ethernet = 0;
    int rs485Ports = 0;
    int etherCatMasters = 0;

    // The values of the reply; none if there are too few.
    [[nodiscard]] static std::optional<Capabilities> fromValues(const QStringList &values)
    {
        if (values.size() < needed)
            return {};
        const auto number = [&values](int index) { return values.value(index).toInt(); };
        return Capabilities{number(0), number(1), number(2), number(3),
                            number(4), number(5), number(6), number(7)};
    }
};
