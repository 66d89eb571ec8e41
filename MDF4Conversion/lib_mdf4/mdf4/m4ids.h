#pragma once

#include <cstdint>

// The two-letter block ids of ASAM MDF 4.10, as the 16-bit values that stand in a block's header,
// and the other constants of the format that the writer uses.

constexpr std::uint16_t m4Id(char first, char second)
{
    return static_cast<std::uint16_t>(static_cast<unsigned char>(first)
                                      | static_cast<unsigned char>(second) << 8);
}

constexpr std::uint16_t M4ID_AT = m4Id('A', 'T'); // attachment
constexpr std::uint16_t M4ID_CA = m4Id('C', 'A'); // channel array
constexpr std::uint16_t M4ID_CC = m4Id('C', 'C'); // channel conversion
constexpr std::uint16_t M4ID_CG = m4Id('C', 'G'); // channel group
constexpr std::uint16_t M4ID_CH = m4Id('C', 'H'); // channel hierarchy
constexpr std::uint16_t M4ID_CN = m4Id('C', 'N'); // channel
constexpr std::uint16_t M4ID_DG = m4Id('D', 'G'); // data group
constexpr std::uint16_t M4ID_DL = m4Id('D', 'L'); // data list
constexpr std::uint16_t M4ID_DT = m4Id('D', 'T'); // data
constexpr std::uint16_t M4ID_DZ = m4Id('D', 'Z'); // compressed data
constexpr std::uint16_t M4ID_EV = m4Id('E', 'V'); // event
constexpr std::uint16_t M4ID_FH = m4Id('F', 'H'); // file history
constexpr std::uint16_t M4ID_HD = m4Id('H', 'D'); // header
constexpr std::uint16_t M4ID_HL = m4Id('H', 'L'); // header of a list of compressed data
constexpr std::uint16_t M4ID_MD = m4Id('M', 'D'); // XML text
constexpr std::uint16_t M4ID_RD = m4Id('R', 'D'); // reduction data
constexpr std::uint16_t M4ID_SD = m4Id('S', 'D'); // signal data
constexpr std::uint16_t M4ID_SI = m4Id('S', 'I'); // source information
constexpr std::uint16_t M4ID_SR = m4Id('S', 'R'); // sample reduction
constexpr std::uint16_t M4ID_TX = m4Id('T', 'X'); // plain text

constexpr unsigned M4_VERSION = 410;
constexpr const char *M4_PROGRAM_ID = "WrtrEx";
constexpr const char *M4_DEFAULT_PROGRAM_ID = "drugli"; // stands in when a caller names none

enum : std::uint16_t { CG_FL_VLSD = 0x0001 }; // cg_flags: variable length signal data

enum : std::uint8_t { // cn_type
    CN_T_VALUE = 0,
    CN_T_MASTER = 2,
};

enum : std::uint8_t { // cn_sync_type
    CN_S_NONE = 0,
    CN_S_TIME = 1,
};

enum : std::uint8_t { // cn_data_type, the little-endian numbers
    CN_D_UNSIGNED_LE = 0,
    CN_D_SIGNED_LE = 2,
    CN_D_REAL_LE = 4,
};

enum : std::uint32_t { CN_F_VAL_RANGE_OK = 0x0008 }; // cn_flags: cn_val_range_min and max hold

enum : std::uint8_t { // cc_type
    CC_T_IDENTITY = 0,
    CC_T_LINEAR = 1,
    CC_T_RATIONAL = 2,
    CC_T_FORMULA = 3,
    CC_T_N2N_INTERPOL = 4,
    CC_T_N2N = 5,
    CC_T_N2T = 7,
};

enum : std::uint8_t { TIME_FL_OFFSETS_VALID = 2 }; // hd_time_flags, fh_time_flags

enum : std::uint8_t { DL_FL_EQUAL_LENGTH = 1 }; // dl_flags and hl_flags

enum : std::uint8_t { // dz_zip_type, hl_zip_type
    DZ_ZIP_DEFLATE = 0,
    DZ_ZIP_TRANSPOSED = 1, // transposed first, then deflated
};
