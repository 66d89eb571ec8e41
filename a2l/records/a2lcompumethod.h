#pragma once

#include "config/record/record.h"

#include <QString>

// How the raw value of a measurement becomes its physical value.
struct A2lCompuMethod
{
    QString name;
    QString long_identifier;
    quint8 conversion_type = 0; // A2lConversionType
    QString unit;
    double coeff_a = 0.0; // RAT_FUNC: raw = (a x^2 + b x + c) / (d x^2 + e x + f)
    double coeff_b = 0.0;
    double coeff_c = 0.0;
    double coeff_d = 0.0;
    double coeff_e = 0.0;
    double coeff_f = 0.0;
    double linear_a = 0.0; // LINEAR: physical = a raw + b
    double linear_b = 0.0;
    QString table_name; // table of a TAB_ method
    QString formula;    // text of a FORM method

    static constexpr qint32 streamVersion = 1;
    static constexpr auto fields()
    {
        using record::field;
        using R = A2lCompuMethod;
        return std::make_tuple(
            field("name", &R::name), field("long_identifier", &R::long_identifier),
            field("conversion_type", &R::conversion_type), field("unit", &R::unit),
            field("coeff_a", &R::coeff_a), field("coeff_b", &R::coeff_b),
            field("coeff_c", &R::coeff_c), field("coeff_d", &R::coeff_d),
            field("coeff_e", &R::coeff_e), field("coeff_f", &R::coeff_f),
            field("linear_a", &R::linear_a), field("linear_b", &R::linear_b),
            field("table_name", &R::table_name), field("formula", &R::formula));
    }
};

RECORD_CODE_ELSEWHERE(A2lCompuMethod)
