#include "app/state/appstate.h"

#include <iterator>

namespace {

struct StateTexts
{
    const char *name;
    const char *description;
};

constexpr StateTexts stateTexts[] = {
    {"APP_STA_DISCONN", "Disconnected"},
    {"APP_STA_CONN_INIT", "Connected - Init"},
    {"APP_STA_CONN_LOG_ON", "Connected - Logging Enabled"},
    {"APP_STA_CONN_LOG_OFF", "Connected - Logging Disabled"},
    {"APP_STA_CONN_UPDATE", "Connected - Update Sent"},
    {"APP_STA_CONN_TRANSPARENT", "Connected - Transparent Mode"},
};

QString textOf(AppSta_t state, const char *StateTexts::*text)
{
    const auto index = static_cast<int>(state);
    if (index < 0 || index >= static_cast<int>(std::size(stateTexts)))
        return QStringLiteral("Unknown State!");
    return QLatin1String(stateTexts[index].*text);
}

} // namespace

QString appstate::name(AppSta_t state)
{
    return textOf(state, &StateTexts::name);
}

QString appstate::description(AppSta_t state)
{
    return textOf(state, &StateTexts::description);
}
