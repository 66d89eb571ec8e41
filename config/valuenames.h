#pragma once

#include <QString>

#include <cstddef>

// What the numbers of configuration fields mean to the user. Each table begins with 0. UTF-8.
namespace valuenames {

inline constexpr const char *auxModes[] = {"always on", "terminal 15 controled",
                                           "CAN-0 traffic controlled"};

inline constexpr const char *agmRates[] = {"1000 Hz", "250 Hz", "125 Hz", "31.25 Hz"};
inline constexpr const char *accScales[] = {"2 g", "4 g", "8 g"};
inline constexpr const char *gyroScales[] = {"32 °/s",  "64 °/s",   "128 °/s",  "256 °/s",
                                             "512 °/s", "1024 °/s", "2048 °/s", "4096 °/s"};

inline constexpr const char *d4modModes[] = {"high speed", "frame", "refresh bus voltage",
                                             "ZDS speed"};
inline constexpr const char *d4modRates[] = {"20 kHz", "10 kHz", "5 kHz", "1 kHz"};

inline constexpr const char *canModes[] = {"CAN", "CAN-FD", "CAN-FD, fast data"};
inline constexpr const char *canFilterTypes[] = {"Range", "Dual", "Classic", "Range T2"};

inline constexpr const char *a2lInterfaces[] = {"none", "CCP or XCP on CAN", "XCP on UDP",
                                                "XCP on TCP"};
// Keywords of ASAM MCD-2 MC.
inline constexpr const char *a2lDataTypes[] = {"UBYTE",        "SBYTE",       "UWORD",    "SWORD",
                                               "ULONG",        "SLONG",       "A_UINT64", "A_INT64",
                                               "FLOAT32_IEEE", "FLOAT64_IEEE"};
inline constexpr const char *a2lConversionTypes[] = {
    "IDENTICAL", "FORM", "LINEAR", "RAT_FUNC", "TAB_INTP", "TAB_NOINTP", "TAB_VERB"};

// The name of a value; the number where the table has none.
template <std::size_t N>
[[nodiscard]] QString nameOf(const char *const (&names)[N], std::size_t value)
{
    return value < N ? QString::fromUtf8(names[value]) : QString::number(value);
}

} // namespace valuenames
