#include "MDF4Conversion/rawlog/drive/compumethods.h"

#include "a2l/records/a2lconstants.h"
#include "a2l/records/streamingclass_a2l_module.h"

namespace drive {
namespace {

A2lCompuMethod &addMethod(StreamingClass_A2L_Module &module, const char *name, const char *unit,
                          quint8 type)
{
    A2lCompuMethod &method = module.compu_methods.add();
    method.name = QString::fromUtf8(name);
    method.unit = QString::fromUtf8(unit);
    method.conversion_type = type;
    return method;
}

A2lCompuMethod &addTableMethod(StreamingClass_A2L_Module &module, const char *name,
                               const char *unit, quint8 type)
{
    A2lCompuMethod &method = addMethod(module, name, unit, type);
    method.table_name = method.name + QLatin1String("_Table");
    return method;
}

} // namespace

QString addIdentical(StreamingClass_A2L_Module &module, const char *unit)
{
    const QByteArray name = QByteArray("Identical_") + unit;
    return addMethod(module, name.constData(), unit, A2lConversionType::Identical).name;
}

QString addLinear(StreamingClass_A2L_Module &module, const char *name, const char *unit,
                  double factor, double offset)
{
    A2lCompuMethod &method = addMethod(module, name, unit, A2lConversionType::Linear);
    method.linear_a = factor;
    method.linear_b = offset;
    return method.name;
}

QString addFormula(StreamingClass_A2L_Module &module, const char *name, const char *unit,
                   const char *formula)
{
    A2lCompuMethod &method = addMethod(module, name, unit, A2lConversionType::Form);
    method.formula = QString::fromUtf8(formula);
    return method.name;
}

QString addRational(StreamingClass_A2L_Module &module, const char *name, const char *unit,
                    const RationalCoefficients &coefficients)
{
    A2lCompuMethod &method = addMethod(module, name, unit, A2lConversionType::RatFunc);
    method.coeff_a = coefficients.a;
    method.coeff_b = coefficients.b;
    method.coeff_c = coefficients.c;
    method.coeff_d = coefficients.d;
    method.coeff_e = coefficients.e;
    method.coeff_f = coefficients.f;
    return method.name;
}

QString addTable(StreamingClass_A2L_Module &module, const char *name, const char *unit,
                 const std::vector<NumberPair> &pairs, TableSteps steps)
{
    const quint8 type = steps == TableSteps::Interpolated ? A2lConversionType::TabIntp
                                                          : A2lConversionType::TabNoIntp;
    const A2lCompuMethod &method = addTableMethod(module, name, unit, type);
    A2lCompuTab &table = module.compu_tabs.add();
    table.name = method.table_name;
    table.conversion_type = type;
    table.pair_count = static_cast<quint16>(pairs.size());
    for (const NumberPair &pair : pairs) {
        A2lCompuTabPair &row = table.pairs.add();
        row.x = pair.raw;
        row.y = pair.physical;
    }
    return method.name;
}

QString addVerbalTable(StreamingClass_A2L_Module &module, const char *name,
                       const std::vector<TextPair> &pairs)
{
    const A2lCompuMethod &method = addTableMethod(module, name, "", A2lConversionType::TabVerb);
    A2lCompuVTab &table = module.compu_vtabs.add();
    table.name = method.table_name;
    table.conversion_type = A2lConversionType::TabVerb;
    table.pair_count = static_cast<quint16>(pairs.size());
    for (const TextPair &pair : pairs) {
        A2lCompuVTabPair &row = table.pairs.add();
        row.value = pair.raw;
        row.text = QString::fromUtf8(pair.text);
    }
    return method.name;
}

double rawInFallingTable(const std::vector<NumberPair> &pairs, double physical)
{
    for (std::size_t i = 0; i + 1 < pairs.size(); ++i) {
        const NumberPair &a = pairs[i];
        const NumberPair &b = pairs[i + 1];
        if (physical > a.physical)
            return a.raw;
        if (physical >= b.physical)
            return a.raw + (b.raw - a.raw) * (a.physical - physical) / (a.physical - b.physical);
    }
    return pairs.back().raw;
}

} // namespace drive
