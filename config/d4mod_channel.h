#pragma once

#include <QString>

// One channel of an RS485 port, as its module reports it at run time. Not streamed.
struct D4Mod_Channel
{
    quint16 dti_voltage_mV = 0;
    QString teds_block; // as received
    QString sensor_id;
    QString location;           // LOCAT
    QString physical_unit;      // PHYSU
    qint32 equation = -1;       // SENEQ; 0: linear
    double sensitivity_a = 0.0; // SENSA
    double sensitivity_b = 1.0; // SENSB
    bool use_scaling = false;   // apply the linear scaling

    // Takes the values out of a transducer data sheet. Each is a key, '=', the value and a closing
    // '$'. A block without a valid SENEQ leaves the equation as it was.
    void parseTedBlock(const QString &block);
};
