#pragma once

#include "MDF4Conversion/lib_mdf4/mdf4/m4blocks.h"
#include "MDF4Conversion/lib_mdf4/mdf4/m4conversions.h"
#include "MDF4Conversion/lib_mdf4/mdf4/m4text.h"
#include "MDF4Conversion/lib_mdf4/mdf4/mdirectfile.h"

#include <map>
#include <memory>
#include <string>

// An MDF 4.10 file that is being written. Blocks are written when they are added and chained to the
// one before, which is freed, so memory stays bounded however many there are.
//
//     MDF4File file;
//     file.Create(path, M4_PROGRAM_ID, M4_VERSION);
//     file.addFH(startTime_ns, mdf4::fileHistoryComment({...}));
//     file.setComment(mdf4::headerComment({...}));
//     file.setStartTime(startTime_ns);
//     M4DGBlock *dg = file.addDG();
//     M4CGBlock *cg = file.addCG(dg, 1, recordSize);
//     cg->addTimeChannel(); M4CNBlock *cn = cg->addCN(...); cn->setUnit(...); cn->setConversion(...);
//     file.noteCycleCount(*cg); m4DZStreamEx stream(file, dg, ...); stream.write(...);
//     file.addCycles(1, count); stream.close();
//     if (!file.close()) ... file.lastError() ...; file.abort();
//
// Add operations return null and all others false when writing fails. The failure also sticks to the
// file (failed(), lastError()): check pointers before use, the rest may wait for what close() says.
// Streams end before the file does. Not thread-safe.
class MDF4File : public mDirectFile
{
public:
    explicit MDF4File(std::unique_ptr<FileDevice> device = makeSystemFile());
    ~MDF4File() override;

    // Makes the file under exactly this path and writes the id block and the header. `version` is
    // 410 for 4.10. On failure nothing is left behind.
    [[nodiscard]] bool Create(const std::u16string &path, const char *programId = M4_PROGRAM_ID,
                              unsigned version = M4_VERSION);
    // Writes the header once more, waits until the device has everything, and closes.
    bool close() override;

    M4FHBlock *addFH(std::unique_ptr<M4FHBlock> fh);
    M4DGBlock *addDG(std::unique_ptr<M4DGBlock> dg = std::make_unique<M4DGBlock>());
    M4CGBlock *addCG(M4DGBlock *dg, std::unique_ptr<M4CGBlock> cg);
    M4ATBlock *addAT(std::unique_ptr<M4ATBlock> at);
    M4EVBlock *addEV(std::unique_ptr<M4EVBlock> ev);

    // The file history entry with its XML comment; nanoseconds since 1970, UTC.
    M4FHBlock *addFH(std::uint64_t time_ns, std::string_view commentXml);
    // A group whose records have `dataBytes` bytes, the time channel's 8 included.
    M4CGBlock *addCG(M4DGBlock *dg, std::uint64_t recordId, std::uint32_t dataBytes);

    // The header's XML comment. It can be set once; a second attempt is refused and changes nothing.
    [[nodiscard]] bool setComment(std::string_view xml);
    // Nanoseconds since 1970, UTC.
    [[nodiscard]] bool setStartTime(std::uint64_t time_ns);
    [[nodiscard]] bool writeHD();

    // The number of records is known for certain only when all are written: note where the group's
    // count stands, add what was written, and patch. Closing a stream patches.
    void noteCycleCount(const M4CGBlock &cg);
    void addCycles(std::uint64_t recordId, std::uint64_t count);
    [[nodiscard]] bool patchCycleCounts();

private:
    struct CycleCount
    {
        std::uint64_t position = 0; // of cg_cycle_count in the file
        std::uint64_t count = 0;
    };

    template <class Block>
    Block *addToChain(std::unique_ptr<Block> &last, std::unique_ptr<Block> next,
                      std::size_t firstLink, std::size_t nextLink);

    M4HDBlock m_hd;
    std::unique_ptr<M4FHBlock> m_lastFH;
    std::unique_ptr<M4DGBlock> m_lastDG;
    std::unique_ptr<M4ATBlock> m_lastAT;
    std::unique_ptr<M4EVBlock> m_lastEV;
    std::map<std::uint64_t, CycleCount> m_cycleCounts; // by cg_record_id
};
