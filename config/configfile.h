#pragma once

#include "config/terminalstruct.h"

// The configuration file (*.zdc), all big-endian: quint32 length of the payload, the payload, which
// is the TerminalStruct in its frame, and its checksum as qint32.
namespace configfile {

// No configuration comes near this; larger ones are neither read nor written.
inline constexpr qint64 maxPayloadBytes = 64 * 1024 * 1024;

// Sum of the bytes as signed 8-bit values, wrapping at 32 bits. Never 0: a sum of 0 gives 1.
[[nodiscard]] qint32 checksum(const QByteArray &payload);

// Writes the file whole or not at all. On a failure, error gets a text for the user.
[[nodiscard]] bool save(const TerminalStruct &config, const QString &path,
                        QString *error = nullptr);

// Reads a file of any record version. On a failure the configuration stays as it was and error gets
// a text for the user.
[[nodiscard]] bool load(TerminalStruct &config, const QString &path, QString *error = nullptr);

} // namespace configfile
