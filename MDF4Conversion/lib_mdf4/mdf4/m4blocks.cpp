#include "MDF4Conversion/lib_mdf4/mdf4/m4blocks.h"

#include "MDF4Conversion/lib_mdf4/mdf4/m4conversions.h"
#include "MDF4Conversion/lib_mdf4/mdf4/m4text.h"

#include <algorithm>
#include <cmath>
#include <limits>

M4TXBlock::M4TXBlock(std::string_view utf8)
    : M4TXBlock(M4ID_TX, utf8)
{}

M4TXBlock::M4TXBlock(std::uint16_t id, std::string_view utf8)
    : m4Block(id, 0)
    , m_text(mdf4::cleanText(utf8))
{}

const void *M4TXBlock::varData([[maybe_unused]] unsigned index,
                               [[maybe_unused]] std::uint64_t &szRemain) const
{
    assert(index == 0 && szRemain == varSize());
    return m_text.c_str();
}

M4MDBlock::M4MDBlock(std::string_view xml)
    : M4TXBlock(M4ID_MD, xml)
{}

bool M4CNBlock::setUnit(std::string_view utf8)
{
    M4TXBlock unit(utf8);
    return setTX(cn_md_unit, unit);
}

bool M4CNBlock::setConversion(M4CCBlock &cc)
{
    if (!cc.fits())
        return false;
    const std::uint64_t position = cc.attach(file());
    if (position == 0)
        return false;
    setLink(cn_cc_conversion, position);
    return write(true, false);
}

void M4CNBlock::setRange(double min, double max)
{
    const bool given = std::isfinite(min) && std::isfinite(max) && (min != 0 || max != 0);
    cn_val_range_min = given ? std::min(min, max) : 0;
    cn_val_range_max = given ? std::max(min, max) : 0;
    cn_flags = given ? cn_flags | CN_F_VAL_RANGE_OK : cn_flags & ~std::uint32_t{CN_F_VAL_RANGE_OK};
}

M4CNBlock *M4CGBlock::addCN(std::unique_ptr<M4CNBlock> cn, std::string_view name)
{
    assert(cn->hdrID() == M4ID_CN);
    M4TXBlock tx(name);
    if (cn->attach(file()) == 0 || !cn->setTX(m4CNRecord::cn_tx_name, tx))
        return nullptr;
    m4Block *before = m_lastCN ? static_cast<m4Block *>(m_lastCN.get()) : this;
    before->setLink(m_lastCN ? std::size_t{m4CNRecord::cn_cn_next} : std::size_t{cg_cn_first},
                    cn->position());
    if (!before->write(true, false))
        return nullptr;
    m_lastCN = std::move(cn);
    return m_lastCN.get();
}

M4CNBlock *M4CGBlock::addCN(std::string_view name, std::uint8_t type, std::uint8_t dataType,
                            std::uint32_t byteOffset, std::uint32_t size, double rangeMin,
                            double rangeMax)
{
    assert(size <= std::numeric_limits<std::uint32_t>::max() / 8);
    auto cn = std::make_unique<M4CNBlock>();
    cn->cn_type = type;
    cn->cn_sync_type = type == CN_T_MASTER ? CN_S_TIME : CN_S_NONE;
    cn->cn_data_type = dataType;
    cn->cn_byte_offset = byteOffset;
    cn->cn_bit_count = size * 8;
    cn->setRange(rangeMin, rangeMax);
    return addCN(std::move(cn), name);
}

M4CNBlock *M4CGBlock::addTimeChannel()
{
    M4CNBlock *time = addCN("Timestamp", CN_T_MASTER, CN_D_UNSIGNED_LE, 0, 8);
    M4CCLinear microseconds(0, 1e-6);
    return time != nullptr && time->setConversion(microseconds) && time->setUnit("s") ? time
                                                                                      : nullptr;
}

bool M4CGBlock::setCycleCount(std::uint64_t count)
{
    cg_cycle_count = count;
    return write(true, false);
}

M4CGBlock *M4DGBlock::addCG(std::unique_ptr<M4CGBlock> cg)
{
    assert(cg->hdrID() == M4ID_CG);
    if (cg->attach(file()) == 0)
        return nullptr;
    m4Block *before = m_lastCG ? static_cast<m4Block *>(m_lastCG.get()) : this;
    before->setLink(m_lastCG ? std::size_t{m4CGRecord::cg_cg_next} : std::size_t{dg_cg_first},
                    cg->position());
    if (!before->write(true, false))
        return nullptr;
    m_lastCG = std::move(cg);
    return m_lastCG.get();
}
