#pragma once

#include "MDF4Conversion/interface_extractdata.h"
#include "a2l/rationalfunction.h"
#include "can/extractedvalue.h"

#include <QString>
#include <QVector>

#include <array>
#include <memory>
#include <utility>

class M4CCBlock;

// cn_data_type of the standard, as far as channels use it.
enum class MdfDataType : quint8 {
    UnsignedLittleEndian = 0,
    SignedLittleEndian = 2,
    RealLittleEndian = 4,
    CanOpenTime = 14
};

// A channel of a group: what it is called in the MDF4 file, how its stored values become physical
// ones, and, by the base, how it takes them from entries.
class MDF4_DataChannel : public virtual Interface_ExtractData
{
public:
    bool extractData(const StdLogEntry &entry, RecordBuffer &record) override = 0;

    // The CC block, not yet attached to a file. Null for a conversion that no reader could follow:
    // coefficients that are no numbers, an empty formula or table.
    [[nodiscard]] virtual std::unique_ptr<M4CCBlock> conversionBlock() const = 0;

    // Sets the range of the stored values from physical limits, and leaves it open where they can't
    // be converted back.
    virtual void setPhysicalRange(double lower, double upper);

    QString name;
    MdfDataType dataType = MdfDataType::UnsignedLittleEndian;
    quint32 size = 1; // bytes in the record
    QString unit;
    double rangeMin = 0; // both 0 when unknown
    double rangeMax = 0;

protected:
    void setRange(double lower, double upper);
    // Stores the value; overridden where the record holds another one than the entry.
    void store(const ExtractedValue &value, RecordBuffer &record) const
    {
        record.append(value.bits, size);
    }
};

class MDF4_DataChannel_Identity : public MDF4_DataChannel
{
public:
    static constexpr const char *conversionName = "Identity";

    [[nodiscard]] std::unique_ptr<M4CCBlock> conversionBlock() const final;
    void setPhysicalRange(double lower, double upper) final { setRange(lower, upper); }
};

// physical = stored x factor + offset
class MDF4_DataChannel_Linear : public MDF4_DataChannel
{
public:
    static constexpr const char *conversionName = "Linear";

    [[nodiscard]] std::unique_ptr<M4CCBlock> conversionBlock() const final;
    void setPhysicalRange(double lower, double upper) final;

    double factor = 1;
    double offset = 0;
};

// physical = (p1 x^2 + p2 x + p3) / (p4 x^2 + p5 x + p6)
class MDF4_DataChannel_Rational : public MDF4_DataChannel
{
public:
    static constexpr const char *conversionName = "Rational";

    [[nodiscard]] std::unique_ptr<M4CCBlock> conversionBlock() const final;

    std::array<double, 6> coefficients{};
};

// A formula of X. With a rational function of the A2L the record holds the physical value already,
// as a real of 8 bytes, and the formula is X.
class MDF4_DataChannel_Formula : public MDF4_DataChannel
{
public:
    static constexpr const char *conversionName = "Formula";

    [[nodiscard]] std::unique_ptr<M4CCBlock> conversionBlock() const final;
    void setPhysicalRange(double lower, double upper) final;

    // Makes this the channel of a rational function.
    void setRationalFunction(const a2l::RationalFunction &function);

    QString formula;

protected:
    void store(const ExtractedValue &value, RecordBuffer &record) const;

private:
    bool m_rational = false;
    a2l::RationalFunction m_function;
};

class MDF4_DataChannel_Val2Val : public MDF4_DataChannel
{
public:
    // Stored value and physical value, in any order; of equal keys the first one counts.
    QVector<std::pair<double, double>> pairs;
};

class MDF4_DataChannel_Val2Val_Table_Interpolated : public MDF4_DataChannel_Val2Val
{
public:
    static constexpr const char *conversionName = "Val2Val_Table_Interpolated";

    [[nodiscard]] std::unique_ptr<M4CCBlock> conversionBlock() const final;
};

class MDF4_DataChannel_Val2Val_Table_nonInterpolated : public MDF4_DataChannel_Val2Val
{
public:
    static constexpr const char *conversionName = "Val2Val_Table_nonInterpolated";

    [[nodiscard]] std::unique_ptr<M4CCBlock> conversionBlock() const final;
};

class MDF4_DataChannel_Val2Txt_Table : public MDF4_DataChannel
{
public:
    static constexpr const char *conversionName = "Val2Txt_Table";

    [[nodiscard]] std::unique_ptr<M4CCBlock> conversionBlock() const final;

    // Of equal keys the first one counts.
    QVector<std::pair<double, QString>> texts; // stored value and its text
};
