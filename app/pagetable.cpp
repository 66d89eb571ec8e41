#include "app/pagetable.h"

#include "app/state/appcomponentbaseclass.h"
#include "app/ui/plainpage.h"
#include "can/views/logger_can_view.h"
#include "link/views/dialogcmdwindow.h"
#include "link/views/logger_main_view.h"

namespace {

// Stands for an interface whose settings this version doesn't offer.
class EmptyPage : public PlainPage, public AppComponentBaseClass
{
public:
    explicit EmptyPage(const PageContext &context)
        : PlainPage(context.title,
                    QStringLiteral("This version has no settings for this interface."),
                    context.parent)
        , AppComponentBaseClass(context.controller, context.objectName)
    {}

    void appStateChanged(AppSta_t &) override {}
};

QWidget *emptyPage(const PageContext &context)
{
    return new EmptyPage(context);
}

QWidget *canPage(const PageContext &context)
{
    return new Logger_CAN_View(context.controller, context.objectName, context.title,
                               context.number, context.handler, *context.prompt, context.parent);
}

QWidget *mainPage(const PageContext &context)
{
    return new Logger_Main_View(context.controller, context.objectName, context.handler,
                                *context.prompt, *context.settings, context.parent);
}

} // namespace

bool isCapable(const Capabilities &capabilities, Needs needs, int number)
{
    switch (needs) {
    case Needs::Nothing:
        return true;
    case Needs::Agm:
        return capabilities.agm != 0;
    case Needs::Gps:
        return capabilities.gps != 0;
    case Needs::Can:
        return number < capabilities.canChannels;
    case Needs::Lte:
        return capabilities.lte != 0;
    case Needs::Ethernet:
        return capabilities.ethernet != 0;
    case Needs::Rs485:
        return number < capabilities.rs485Ports;
    case Needs::EtherCat:
        return capabilities.etherCatMasters >= 1;
    }
    return true;
}

std::vector<PageRow> pageTable()
{
    const auto row = [](const char *objectName, const char *treeText, Needs needs, int count,
                        PageRow::Factory make) {
        return PageRow{QLatin1String(objectName), QLatin1String(treeText), needs, count, make};
    };
    return {
        row("Logger_Main_View", "Datalogger", Needs::Nothing, 1, mainPage),
        row("Logger_Settings_View", "Settings", Needs::Nothing, 1, emptyPage),
        row("Logger_Gps_View", "GPS", Needs::Gps, 1, emptyPage),
        row("Logger_Agm_View", "Accel/Gyro/Mag", Needs::Agm, 1, emptyPage),
        row("Logger_LTE_View", "LTE", Needs::Lte, 1, emptyPage),
        row("Logger_EtherCAT_View", "EtherCAT", Needs::EtherCat, 1, emptyPage),
        row("Module_AIM_Messreaeder", "AIM(Wheel-Sensor)", Needs::Nothing, 1, emptyPage),
        row("Module_AIM_8_16_DMS", "AIM(8/16-DMS)", Needs::Nothing, 1, emptyPage),
        row("Logger_CAN_View_%1", "CAN-%1", Needs::Can, 12, canPage),
        row("Logger_RS485_View_%1", "RS485-%1", Needs::Rs485, 10, emptyPage),
        row("Logger_Ethernet_View_%1", "Automotive-Ethernet", Needs::Ethernet, 1, emptyPage),
    };
}

QWidget *makeDebugWindow(const PageContext &context)
{
    return new DialogCmdWindow(context.controller, context.handler, context.parent);
}

const std::vector<TreeRow> &treeTable()
{
    using icons::Symbol;
    static const std::vector<TreeRow> rows = {
        {nullptr, "Datalogger", 1, Symbol::Logger, "Log files, log trigger and auxiliary supply"},
        {"Datalogger", "Settings", 1, Symbol::Settings,
         "Network, clock and versions of the logger"},
        {"Datalogger", "Accel/Gyro/Mag", 1, Symbol::Motion,
         "Accelerometer, gyroscope and magnetometer"},
        {"Datalogger", "GPS", 1, Symbol::Position, "Satellite receiver"},
        {"Datalogger", "LTE", 1, Symbol::Mobile, "Mobile network"},
        {"Datalogger", "Interfaces", 1, Symbol::Group, "Buses and ports of the logger"},
        {"Interfaces", "CAN", 1, Symbol::Bus, "CAN and CAN-FD channels"},
        {"CAN", "CAN-%1", 12, Symbol::Bus, "CAN channel %1"},
        {"Interfaces", "Automotive-Ethernet", 1, Symbol::Ethernet,
         "Automotive ethernet port: XCP, tunneling, mirroring"},
        {"Interfaces", "EtherCAT", 1, Symbol::Ring, "EtherCAT master and its slaves"},
        {"Interfaces", "RS485", 1, Symbol::Serial, "RS485 ports with D4MOD modules"},
        {"RS485", "RS485-%1", 10, Symbol::Serial, "RS485 port %1"},
        {"Datalogger", "Modules", 1, Symbol::Group, "Measuring modules on CAN"},
        {"Modules", "AIM(8/16-DMS)", 1, Symbol::Module, "Strain gauge modules"},
        {"Modules", "AIM(Wheel-Sensor)", 1, Symbol::Wheel, "Wheel force sensors"},
    };
    return rows;
}
