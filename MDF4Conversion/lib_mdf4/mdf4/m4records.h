#pragma once

#include <cstddef>
#include <cstdint>

// Fixed records and link numbers of the ASAM MDF 4.10 blocks, as they stand in the file: little-endian
// and without padding, which the assertions behind each record verify. A block writes its record as
// it lies in memory, so the host has to be little-endian.
#if defined(__BYTE_ORDER__) && defined(__ORDER_LITTLE_ENDIAN__)
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__,
              "records are written as they lie in memory");
#endif

struct m4IDRecord // the first 64 bytes of a file; not a block
{
    char id_file[8];
    char id_vers[8];
    char id_prog[8];
    std::uint8_t id_reserved1[4] = {};
    std::uint16_t id_ver = 0;
    std::uint8_t id_reserved2[34] = {};
};
static_assert(sizeof(m4IDRecord) == 64 && offsetof(m4IDRecord, id_ver) == 28);

struct m4BlockHeader
{
    char hdr_hdr[2] = {'#', '#'};
    std::uint16_t hdr_id = 0;
    std::uint8_t hdr_reserved[4] = {};
    std::uint64_t hdr_len = 0;   // bytes of header, links, record and variable part
    std::uint64_t hdr_links = 0; // number of links
};
static_assert(sizeof(m4BlockHeader) == 24 && offsetof(m4BlockHeader, hdr_len) == 8);

struct m4HDRecord
{
    enum Link {
        hd_dg_first,
        hd_fh_first,
        hd_ch_first,
        hd_at_first,
        hd_ev_first,
        hd_md_comment,
        LinkCount
    };
    std::uint64_t hd_start_time_ns = 0; // since 1970-01-01, UTC
    std::int16_t hd_tz_offset_min = 0;
    std::int16_t hd_dst_offset_min = 0;
    std::uint8_t hd_time_flags = 0;
    std::uint8_t hd_time_class = 0;
    std::uint8_t hd_flags = 0;
    std::uint8_t hd_reserved = 0;
    double hd_start_angle_rad = 0;
    double hd_start_distance_m = 0;
};
static_assert(sizeof(m4HDRecord) == 32 && offsetof(m4HDRecord, hd_time_flags) == 12
              && offsetof(m4HDRecord, hd_start_angle_rad) == 16);

struct m4FHRecord
{
    enum Link { fh_fh_next, fh_md_comment, LinkCount };
    std::uint64_t fh_time_ns = 0; // since 1970-01-01, UTC
    std::int16_t fh_tz_offset_min = 0;
    std::int16_t fh_dst_offset_min = 0;
    std::uint8_t fh_time_flags = 0;
    std::uint8_t fh_reserved[3] = {};
};
static_assert(sizeof(m4FHRecord) == 16 && offsetof(m4FHRecord, fh_time_flags) == 12);

struct m4DGRecord
{
    enum Link { dg_dg_next, dg_cg_first, dg_data, dg_md_comment, LinkCount };
    std::uint8_t dg_rec_id_size = 0;
    std::uint8_t dg_reserved[7] = {};
};
static_assert(sizeof(m4DGRecord) == 8);

struct m4CGRecord
{
    enum Link {
        cg_cg_next,
        cg_cn_first,
        cg_tx_acq_name,
        cg_si_acq_source,
        cg_sr_first,
        cg_md_comment,
        LinkCount
    };
    std::uint64_t cg_record_id = 0;
    std::uint64_t cg_cycle_count = 0; // number of records
    std::uint16_t cg_flags = 0;
    std::uint16_t cg_path_separator = 0;
    std::uint8_t cg_reserved[4] = {};
    std::uint32_t cg_data_bytes = 0;
    std::uint32_t cg_inval_bytes = 0;
};
static_assert(sizeof(m4CGRecord) == 32 && offsetof(m4CGRecord, cg_cycle_count) == 8
              && offsetof(m4CGRecord, cg_data_bytes) == 24);

struct m4CNRecord
{
    enum Link {
        cn_cn_next,
        cn_composition,
        cn_tx_name,
        cn_si_source,
        cn_cc_conversion,
        cn_data,
        cn_md_unit,
        cn_md_comment,
        LinkCount
    };
    std::uint8_t cn_type = 0;
    std::uint8_t cn_sync_type = 0;
    std::uint8_t cn_data_type = 0;
    std::uint8_t cn_bit_offset = 0;
    std::uint32_t cn_byte_offset = 0;
    std::uint32_t cn_bit_count = 0;
    std::uint32_t cn_flags = 0;
    std::uint32_t cn_inval_bit_pos = 0;
    std::uint8_t cn_precision = 0;
    std::uint8_t cn_reserved = 0;
    std::uint16_t cn_attachment_count = 0;
    double cn_val_range_min = 0; // raw values
    double cn_val_range_max = 0;
    double cn_limit_min = 0;
    double cn_limit_max = 0;
    double cn_limit_ext_min = 0;
    double cn_limit_ext_max = 0;
};
static_assert(sizeof(m4CNRecord) == 72 && offsetof(m4CNRecord, cn_bit_count) == 8
              && offsetof(m4CNRecord, cn_precision) == 20
              && offsetof(m4CNRecord, cn_val_range_min) == 24);

struct m4CCRecord
{
    // cc_ref_count further links follow
    enum Link {
        cc_tx_name,
        cc_md_unit,
        cc_md_comment,
        cc_cc_inverse,
        LinkCount,
        cc_ref = LinkCount
    };
    std::uint8_t cc_type = 0;
    std::uint8_t cc_precision = 0;
    std::uint16_t cc_flags = 0;
    std::uint16_t cc_ref_count = 0;
    std::uint16_t cc_val_count = 0; // doubles in the variable part
    double cc_phy_range_min = 0;
    double cc_phy_range_max = 0;
};
static_assert(sizeof(m4CCRecord) == 24 && offsetof(m4CCRecord, cc_phy_range_min) == 8);

struct m4HLRecord
{
    enum Link { hl_dl_first, LinkCount };
    std::uint16_t hl_flags = 0;
    std::uint8_t hl_zip_type = 0;
    std::uint8_t hl_reserved[5] = {};
};
static_assert(sizeof(m4HLRecord) == 8 && offsetof(m4HLRecord, hl_zip_type) == 2);

struct m4DLRecord
{
    // dl_count further links follow; the variable part is dl_equal_length, unsigned 64
    enum Link { dl_dl_next, LinkCount, dl_data = LinkCount };
    std::uint8_t dl_flags = 0;
    std::uint8_t dl_reserved[3] = {};
    std::uint32_t dl_count = 0;
};
static_assert(sizeof(m4DLRecord) == 8 && offsetof(m4DLRecord, dl_count) == 4);

struct m4DZRecord
{
    enum Link { LinkCount };
    std::uint16_t dz_org_block_type = 0;
    std::uint8_t dz_zip_type = 0;
    std::uint8_t dz_reserved = 0;
    std::uint32_t dz_zip_parameter = 0; // record size: number of columns of the transposition
    std::uint64_t dz_org_data_length = 0;
    std::uint64_t dz_data_length = 0;
};
static_assert(sizeof(m4DZRecord) == 24 && offsetof(m4DZRecord, dz_org_data_length) == 8);

struct m4ATRecord
{
    enum Link { at_at_next, at_tx_filename, at_tx_mimetype, at_md_comment, LinkCount };
    std::uint16_t at_flags = 0;
    std::uint16_t at_creator_index = 0;
    std::uint8_t at_reserved[4] = {};
    std::uint8_t at_md5_checksum[16] = {};
    std::uint64_t at_original_size = 0;
    std::uint64_t at_embedded_size = 0;
};
static_assert(sizeof(m4ATRecord) == 40 && offsetof(m4ATRecord, at_original_size) == 24);

struct m4CARecord
{
    enum Link { ca_composition, LinkCount };
    std::uint8_t ca_type = 0;
    std::uint8_t ca_storage = 0;
    std::uint16_t ca_ndim = 0;
    std::uint32_t ca_flags = 0;
    std::int32_t ca_byte_offset_base = 0;
    std::uint32_t ca_inval_bit_pos_base = 0;
};
static_assert(sizeof(m4CARecord) == 16);

struct m4CHRecord
{
    // three further links for each element follow
    enum Link { ch_ch_next, ch_ch_first, ch_tx_name, ch_md_comment, LinkCount };
    std::uint32_t ch_element_count = 0;
    std::uint8_t ch_type = 0;
    std::uint8_t ch_reserved[3] = {};
};
static_assert(sizeof(m4CHRecord) == 8);

struct m4EVRecord
{
    enum Link { ev_ev_next, ev_ev_parent, ev_ev_range, ev_tx_name, ev_md_comment, LinkCount };
    std::uint8_t ev_type = 0;
    std::uint8_t ev_sync_type = 0;
    std::uint8_t ev_range_type = 0;
    std::uint8_t ev_cause = 0;
    std::uint8_t ev_flags = 0;
    std::uint8_t ev_reserved[3] = {};
    std::uint32_t ev_scope_count = 0;
    std::uint16_t ev_attachment_count = 0;
    std::uint16_t ev_creator_index = 0;
    std::int64_t ev_sync_base_value = 0;
    double ev_sync_factor = 0;
};
static_assert(sizeof(m4EVRecord) == 32 && offsetof(m4EVRecord, ev_sync_base_value) == 16);

struct m4SIRecord
{
    enum Link { si_tx_name, si_tx_path, si_md_comment, LinkCount };
    std::uint8_t si_type = 0;
    std::uint8_t si_bus_type = 0;
    std::uint8_t si_flags = 0;
    std::uint8_t si_reserved[5] = {};
};
static_assert(sizeof(m4SIRecord) == 8);

struct m4SRRecord
{
    enum Link { sr_sr_next, sr_data, LinkCount };
    std::uint64_t sr_cycle_count = 0;
    double sr_interval = 0;
    std::uint8_t sr_sync_type = 0;
    std::uint8_t sr_flags = 0;
    std::uint8_t sr_reserved[6] = {};
};
static_assert(sizeof(m4SRRecord) == 24);
