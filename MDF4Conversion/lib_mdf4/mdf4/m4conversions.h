#pragma once

#include "MDF4Conversion/lib_mdf4/mdf4/m4block.h"

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// A conversion of raw to physical values. Its texts go into the file together with it.
class M4CCBlock : public m4BlockImpl<m4CCRecord, double, M4ID_CC>
{
public:
    std::uint64_t attach(mDirectFile *f, unsigned flags = WriteAll) override;

    // False when there are more values or texts than the 16-bit counts can tell; the block is empty
    // then and must not be written.
    bool fits() const { return m_fits; }
    double parameter(unsigned pNo) const;

protected:
    explicit M4CCBlock(std::uint8_t type) { cc_type = type; }
    void setValues(std::vector<double> values);
    // A text that is missing becomes a null link.
    void setTexts(std::vector<std::optional<std::string>> texts);

private:
    std::vector<std::optional<std::string>> m_texts;
    bool m_fits = true;
};

class M4CCIdentity : public M4CCBlock
{
public:
    M4CCIdentity();
};

class M4CCLinear : public M4CCBlock // offset + factor * raw
{
public:
    M4CCLinear(double offset, double factor);
};

class M4CCRational : public M4CCBlock // (p1 x^2 + p2 x + p3) / (p4 x^2 + p5 x + p6)
{
public:
    explicit M4CCRational(const std::array<double, 6> &coefficients);
};

class M4CCFormula : public M4CCBlock // algebraic text with X for the raw value
{
public:
    explicit M4CCFormula(const std::string &formula);
};

// Raw key and physical value.
using M4ValuePairs = std::vector<std::pair<double, double>>;

class M4CCN2NInterpol : public M4CCBlock // at most 32,767 pairs
{
public:
    explicit M4CCN2NInterpol(const M4ValuePairs &pairs);
};

class M4CCN2N : public M4CCBlock // at most 32,767 pairs
{
public:
    explicit M4CCN2N(const M4ValuePairs &pairs);
};

// Raw key and text. At most 65,534 pairs; one more reference holds the default, a null link if none.
class M4CCN2T : public M4CCBlock
{
public:
    explicit M4CCN2T(const std::vector<std::pair<double, std::string>> &pairs,
                     const std::optional<std::string> &defaultText = std::nullopt);
};
