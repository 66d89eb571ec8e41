#include "MDF4Conversion/mdf4_datachannel.h"

#include "MDF4Conversion/lib_mdf4/mdf4/m4conversions.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <set>

namespace {

// Keys strictly ascending, as the standard wants them; what is no number is left out.
M4ValuePairs ascending(const QVector<std::pair<double, double>> &pairs)
{
    M4ValuePairs sorted;
    std::copy_if(pairs.begin(), pairs.end(), std::back_inserter(sorted), [](const auto &pair) {
        return !std::isnan(pair.first) && !std::isnan(pair.second);
    });
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    const auto sameKey = [](const auto &a, const auto &b) { return a.first == b.first; };
    sorted.erase(std::unique(sorted.begin(), sorted.end(), sameKey), sorted.end());
    return sorted;
}

template <class Block>
std::unique_ptr<M4CCBlock> tableBlock(const QVector<std::pair<double, double>> &pairs)
{
    const M4ValuePairs sorted = ascending(pairs);
    if (sorted.empty())
        return nullptr;
    return std::make_unique<Block>(sorted);
}

} // namespace

void MDF4_DataChannel::setPhysicalRange(double, double)
{
    rangeMin = rangeMax = 0;
}

void MDF4_DataChannel::setRange(double lower, double upper)
{
    const bool usable = std::isfinite(lower) && std::isfinite(upper);
    rangeMin = usable ? qMin(lower, upper) : 0;
    rangeMax = usable ? qMax(lower, upper) : 0;
}

// Limits of 0 and 0 mean that there are none.
void MDF4_DataChannel_Linear::setPhysicalRange(double lower, double upper)
{
    if (factor == 0 || (lower == 0 && upper == 0))
        setRange(0, 0);
    else
        setRange((lower - offset) / factor, (upper - offset) / factor);
}

void MDF4_DataChannel_Formula::setPhysicalRange(double lower, double upper)
{
    if (m_rational)
        setRange(lower, upper);
    else
        setRange(0, 0);
}

void MDF4_DataChannel_Formula::setRationalFunction(const a2l::RationalFunction &function)
{
    m_rational = true;
    m_function = function;
    formula = QStringLiteral("X");
    dataType = MdfDataType::RealLittleEndian;
    size = sizeof(double);
}

void MDF4_DataChannel_Formula::store(const ExtractedValue &value, RecordBuffer &record) const
{
    if (!m_rational) {
        MDF4_DataChannel::store(value, record);
        return;
    }
    const double physical = m_function.physical(value.toDouble());
    quint64 bits = 0;
    std::memcpy(&bits, &physical, sizeof bits);
    record.append(bits, sizeof bits);
}

std::unique_ptr<M4CCBlock> MDF4_DataChannel_Identity::conversionBlock() const
{
    return std::make_unique<M4CCIdentity>();
}

std::unique_ptr<M4CCBlock> MDF4_DataChannel_Linear::conversionBlock() const
{
    if (!std::isfinite(offset) || !std::isfinite(factor))
        return nullptr;
    return std::make_unique<M4CCLinear>(offset, factor);
}

std::unique_ptr<M4CCBlock> MDF4_DataChannel_Rational::conversionBlock() const
{
    if (!std::all_of(coefficients.begin(), coefficients.end(),
                     [](double c) { return !std::isnan(c); }))
        return nullptr;
    return std::make_unique<M4CCRational>(coefficients);
}

std::unique_ptr<M4CCBlock> MDF4_DataChannel_Formula::conversionBlock() const
{
    if (formula.trimmed().isEmpty())
        return nullptr;
    return std::make_unique<M4CCFormula>(formula.toStdString());
}

std::unique_ptr<M4CCBlock> MDF4_DataChannel_Val2Val_Table_Interpolated::conversionBlock() const
{
    return tableBlock<M4CCN2NInterpol>(pairs);
}

std::unique_ptr<M4CCBlock> MDF4_DataChannel_Val2Val_Table_nonInterpolated::conversionBlock() const
{
    return tableBlock<M4CCN2N>(pairs);
}

std::unique_ptr<M4CCBlock> MDF4_DataChannel_Val2Txt_Table::conversionBlock() const
{
    std::vector<std::pair<double, std::string>> pairs;
    std::set<double> keys;
    for (const auto &[key, text] : texts) {
        if (keys.insert(key).second)
            pairs.emplace_back(key, text.toStdString());
    }
    if (pairs.empty())
        return nullptr;
    return std::make_unique<M4CCN2T>(pairs);
}
