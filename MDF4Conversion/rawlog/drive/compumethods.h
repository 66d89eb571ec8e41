#pragma once

#include <QString>

#include <vector>

struct StreamingClass_A2L_Module;

namespace drive {

// Each adds a conversion, with its table if it has one, to the module and gives its name. Texts are
// UTF-8.
struct NumberPair
{
    double raw;
    double physical;
};
struct TextPair
{
    int raw;
    const char *text;
};
enum class TableSteps { Interpolated, Held };

// internal = (a p^2 + b p + c) / (d p^2 + e p + f) of the physical value p
struct RationalCoefficients
{
    double a, b, c, d, e, f;
};

QString addIdentical(StreamingClass_A2L_Module &module, const char *unit);
// physical = factor * raw + offset
QString addLinear(StreamingClass_A2L_Module &module, const char *name, const char *unit,
                  double factor, double offset);
// A formula of the raw value X1.
QString addFormula(StreamingClass_A2L_Module &module, const char *name, const char *unit,
                   const char *formula);
QString addRational(StreamingClass_A2L_Module &module, const char *name, const char *unit,
                    const RationalCoefficients &coefficients);
QString addTable(StreamingClass_A2L_Module &module, const char *name, const char *unit,
                 const std::vector<NumberPair> &pairs, TableSteps steps);
QString addVerbalTable(StreamingClass_A2L_Module &module, const char *name,
                       const std::vector<TextPair> &pairs);

// The raw value for a physical one in a table whose physical values fall.
[[nodiscard]] double rawInFallingTable(const std::vector<NumberPair> &pairs, double physical);

} // namespace drive
