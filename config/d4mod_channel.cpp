#include "config/d4mod_channel.h"

namespace {

// The text between the '=' behind the key and the next '$'; null without one.
QString tedValue(const QString &block, QLatin1String key)
{
    const int keyAt = block.indexOf(key);
    if (keyAt < 0)
        return {};
    const int equalsAt = block.indexOf(QLatin1Char('='), keyAt + key.size());
    if (equalsAt < 0)
        return {};
    const int endAt = block.indexOf(QLatin1Char('$'), equalsAt + 1);
    if (endAt < 0)
        return {};
    return block.mid(equalsAt + 1, endAt - equalsAt - 1).simplified();
}

// True when the text is a number, which then is in value.
bool takeNumber(const QString &text, double &value)
{
    bool valid = false;
    const double number = text.toDouble(&valid);
    if (valid)
        value = number;
    return valid;
}

} // namespace

void D4Mod_Channel::parseTedBlock(const QString &block)
{
    teds_block = block;
    sensor_id = block.mid(1, 10);
    location = tedValue(block, QLatin1String("LOCAT"));
    physical_unit = tedValue(block, QLatin1String("PHYSU"));

    bool equationValid = false;
    const int number = tedValue(block, QLatin1String("SENEQ")).toInt(&equationValid);
    if (equationValid)
        equation = number;

    sensitivity_a = 0.0;
    sensitivity_b = 1.0;
    const bool hasA = takeNumber(tedValue(block, QLatin1String("SENSA")), sensitivity_a);
    const bool hasB = takeNumber(tedValue(block, QLatin1String("SENSB")), sensitivity_b);
    use_scaling = equation == 0 && hasA && hasB;
}
