#include "MDF4Conversion/lib_mdf4/mdf4/mdf4file.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <exception>

namespace {

// Copies a text into a field of fixed size, padded with blanks.
template <std::size_t size>
void setPadded(char (&field)[size], const char *text)
{
    std::memset(field, ' ', size);
    std::memcpy(field, text, std::min(size, std::strlen(text)));
}

m4IDRecord idRecord(const char *programId, unsigned version)
{
    char versionText[32];
    std::snprintf(versionText, sizeof versionText, "%d.%02d", static_cast<int>(version / 100),
                  static_cast<int>(version % 100));
    m4IDRecord id;
    setPadded(id.id_file, "MDF");
    setPadded(id.id_vers, versionText);
    setPadded(id.id_prog, programId != nullptr ? programId : M4_DEFAULT_PROGRAM_ID);
    id.id_ver = static_cast<std::uint16_t>(version);
    return id;
}

} // namespace

MDF4File::MDF4File(std::unique_ptr<FileDevice> device)
    : mDirectFile(std::move(device))
{}

MDF4File::~MDF4File()
{
    MDF4File::close();
}

bool MDF4File::Create(const std::u16string &path, const char *programId, unsigned version)
{
    std::filesystem::path nativePath;
    try {
        nativePath = path;
    } catch (const std::exception &) { // the standard's only way to report a lone surrogate
        return fail("the file name is not valid Unicode");
    }
    if (!open(nativePath))
        return false;
    const m4IDRecord id = idRecord(programId, version);
    m_hd.hd_time_flags = TIME_FL_OFFSETS_VALID;
    if (write(allocate(sizeof id, false), sizeof id, &id) && m_hd.attach(this) != 0 && flush())
        return true;
    abort();
    return false;
}

bool MDF4File::close()
{
    if (isOpen() && !failed())
        static_cast<void>(m_hd.write(true, true)); // a failure shows in what close() returns
    return mDirectFile::close();
}

// Writes `next` to the file and chains it to the last block of its kind, or to the header.
template <class Block>
Block *MDF4File::addToChain(std::unique_ptr<Block> &last, std::unique_ptr<Block> next,
                            std::size_t firstLink, std::size_t nextLink)
{
    if (next->attach(this) == 0)
        return nullptr;
    m4Block *before = last ? static_cast<m4Block *>(last.get()) : &m_hd;
    before->setLink(last ? nextLink : firstLink, next->position());
    if (!before->write(true, false))
        return nullptr;
    last = std::move(next);
    return last.get();
}

M4FHBlock *MDF4File::addFH(std::unique_ptr<M4FHBlock> fh)
{
    assert(fh->hdrID() == M4ID_FH);
    return addToChain(m_lastFH, std::move(fh), m4HDRecord::hd_fh_first, m4FHRecord::fh_fh_next);
}

M4DGBlock *MDF4File::addDG(std::unique_ptr<M4DGBlock> dg)
{
    assert(dg->hdrID() == M4ID_DG);
    return addToChain(m_lastDG, std::move(dg), m4HDRecord::hd_dg_first, m4DGRecord::dg_dg_next);
}

M4ATBlock *MDF4File::addAT(std::unique_ptr<M4ATBlock> at)
{
    assert(at->hdrID() == M4ID_AT);
    return addToChain(m_lastAT, std::move(at), m4HDRecord::hd_at_first, m4ATRecord::at_at_next);
}

M4EVBlock *MDF4File::addEV(std::unique_ptr<M4EVBlock> ev)
{
    assert(ev->hdrID() == M4ID_EV);
    return addToChain(m_lastEV, std::move(ev), m4HDRecord::hd_ev_first, m4EVRecord::ev_ev_next);
}

M4CGBlock *MDF4File::addCG(M4DGBlock *dg, std::unique_ptr<M4CGBlock> cg)
{
    return dg != nullptr ? dg->addCG(std::move(cg)) : nullptr;
}

M4FHBlock *MDF4File::addFH(std::uint64_t time_ns, std::string_view commentXml)
{
    auto fh = std::make_unique<M4FHBlock>();
    fh->fh_time_ns = time_ns;
    fh->fh_time_flags = TIME_FL_OFFSETS_VALID;
    M4FHBlock *added = addFH(std::move(fh));
    M4MDBlock md(commentXml);
    return added != nullptr && added->setComment(m4FHRecord::fh_md_comment, md) ? added : nullptr;
}

M4CGBlock *MDF4File::addCG(M4DGBlock *dg, std::uint64_t recordId, std::uint32_t dataBytes)
{
    auto cg = std::make_unique<M4CGBlock>();
    cg->cg_record_id = recordId;
    cg->cg_data_bytes = dataBytes;
    return addCG(dg, std::move(cg));
}

bool MDF4File::setComment(std::string_view xml)
{
    if (!isOpen())
        return fail("the file is not open");
    if (m_hd.link(m4HDRecord::hd_md_comment) != 0)
        return false;
    M4MDBlock md(xml);
    assert(md.hdrID() == M4ID_MD);
    return m_hd.setComment(m4HDRecord::hd_md_comment, md);
}

bool MDF4File::setStartTime(std::uint64_t time_ns)
{
    m_hd.hd_start_time_ns = time_ns;
    return writeHD();
}

bool MDF4File::writeHD()
{
    return isOpen() ? m_hd.write(true, true) : fail("the file is not open");
}

void MDF4File::noteCycleCount(const M4CGBlock &cg)
{
    const std::uint64_t recordAt =
        cg.position() + sizeof(m4BlockHeader) + cg.linkCount() * sizeof(std::uint64_t);
    m_cycleCounts[cg.cg_record_id] = {recordAt + offsetof(m4CGRecord, cg_cycle_count),
                                      cg.cg_cycle_count};
}

void MDF4File::addCycles(std::uint64_t recordId, std::uint64_t count)
{
    const auto entry = m_cycleCounts.find(recordId);
    assert(entry != m_cycleCounts.end());
    entry->second.count += count;
}

bool MDF4File::patchCycleCounts()
{
    for (const auto &[recordId, cycles] : m_cycleCounts) {
        if (cycles.count != 0 && !write(cycles.position, sizeof cycles.count, &cycles.count))
            return false;
    }
    return !failed();
}
