#include "MDF4Conversion/rawlog/drive/drive.h"

#include "MDF4Conversion/rawlog/drive/sources.h"

namespace drive {

Drive::Drive()
    : m_configuration(QStringLiteral("Demonstration"))
{
    addLoggerStatus(m_configuration, m_schedule);
    addGps(m_configuration, m_schedule, m_vehicle);
    addAgm(m_configuration, m_schedule, m_vehicle);
    addPowertrainBus(m_configuration, m_schedule, m_vehicle);
    addFleetBus(m_configuration, m_schedule, m_vehicle);
    addSurroundBus(m_configuration, m_schedule, m_vehicle);
    addEngineEcu(m_configuration, m_schedule, m_vehicle);
    addChassisEcu(m_configuration, m_schedule, m_vehicle);
    addAssistanceEcu(m_configuration, m_schedule, m_vehicle);
    addStrainGauges(m_configuration, m_schedule, m_vehicle);
    addAimModules(m_configuration, m_schedule, m_vehicle);
    addEtherCat(m_configuration, m_schedule, m_vehicle);
}

QByteArray Drive::entriesUntil(qint64 end_us)
{
    QByteArray entries;
    m_schedule.recordUntil(end_us, entries);
    return entries;
}

} // namespace drive
