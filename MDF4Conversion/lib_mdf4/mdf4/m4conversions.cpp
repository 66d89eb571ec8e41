#include "MDF4Conversion/lib_mdf4/mdf4/m4conversions.h"

#include "MDF4Conversion/lib_mdf4/mdf4/m4blocks.h"
#include "MDF4Conversion/lib_mdf4/mdf4/mdirectfile.h"

#include <limits>

namespace {

constexpr std::size_t largestCount = std::numeric_limits<std::uint16_t>::max();

std::vector<double> alternating(const M4ValuePairs &pairs)
{
    std::vector<double> values;
    values.reserve(pairs.size() * 2);
    for (const auto &[key, value] : pairs) {
        values.push_back(key);
        values.push_back(value);
    }
    return values;
}

} // namespace

std::uint64_t M4CCBlock::attach(mDirectFile *f, unsigned flags)
{
    assert(m_fits);
    if (m4Block::attach(f, 0) == 0)
        return 0;
    for (std::size_t i = 0; i < m_texts.size(); ++i) {
        if (!m_texts[i])
            continue;
        M4TXBlock text(*m_texts[i]);
        const std::uint64_t position = text.attach(f);
        if (position == 0)
            return 0;
        setLink(cc_ref + i, position);
    }
    return m4Block::attach(f, flags);
}

double M4CCBlock::parameter(unsigned pNo) const
{
    assert(pNo < cc_val_count);
    return m_var[pNo];
}

void M4CCBlock::setValues(std::vector<double> values)
{
    if (values.size() > largestCount) {
        m_fits = false;
        return;
    }
    cc_val_count = static_cast<std::uint16_t>(values.size());
    m_var.assign(values.begin(), values.end());
}

void M4CCBlock::setTexts(std::vector<std::optional<std::string>> texts)
{
    if (texts.size() > largestCount) {
        m_fits = false;
        return;
    }
    cc_ref_count = static_cast<std::uint16_t>(texts.size());
    setLink(cc_ref + texts.size() - 1, 0);
    m_texts = std::move(texts);
}

M4CCIdentity::M4CCIdentity()
    : M4CCBlock(CC_T_IDENTITY)
{}

M4CCLinear::M4CCLinear(double offset, double factor)
    : M4CCBlock(CC_T_LINEAR)
{
    setValues({offset, factor});
}

M4CCRational::M4CCRational(const std::array<double, 6> &coefficients)
    : M4CCBlock(CC_T_RATIONAL)
{
    setValues({coefficients.begin(), coefficients.end()});
}

M4CCFormula::M4CCFormula(const std::string &formula)
    : M4CCBlock(CC_T_FORMULA)
{
    setTexts({formula});
}

M4CCN2NInterpol::M4CCN2NInterpol(const M4ValuePairs &pairs)
    : M4CCBlock(CC_T_N2N_INTERPOL)
{
    setValues(alternating(pairs));
}

M4CCN2N::M4CCN2N(const M4ValuePairs &pairs)
    : M4CCBlock(CC_T_N2N)
{
    setValues(alternating(pairs));
}

M4CCN2T::M4CCN2T(const std::vector<std::pair<double, std::string>> &pairs,
                 const std::optional<std::string> &defaultText)
    : M4CCBlock(CC_T_N2T)
{
    std::vector<double> keys;
    std::vector<std::optional<std::string>> texts;
    keys.reserve(pairs.size());
    texts.reserve(pairs.size() + 1);
    for (const auto &[key, text] : pairs) {
        keys.push_back(key);
        texts.emplace_back(text);
    }
    texts.push_back(defaultText);
    setValues(std::move(keys));
    setTexts(std::move(texts));
}
