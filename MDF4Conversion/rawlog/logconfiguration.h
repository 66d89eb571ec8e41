#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

struct TerminalStruct;

// The configuration block at the head of a raw log.
namespace rawlog {

// A larger block counts as unreadable and is not read.
constexpr quint32 maxConfigurationSize = 64U * 1024 * 1024;

struct ConfigurationBlock
{
    QByteArray bytes; // empty when it could not be read
    quint32 size = 0; // as announced at the head of the file
    QString failure;  // why the block is empty, for the user
};

// Reads the block of the raw log at `path`.
[[nodiscard]] ConfigurationBlock readConfigurationBlock(const QString &path);

// The record in a block; null for an empty one. Items that the block is too short for read
// as zero or null.
[[nodiscard]] std::unique_ptr<TerminalStruct> decodeConfiguration(const QByteArray &block);

// The block that holds `configuration`, with the record at its current version.
[[nodiscard]] QByteArray encodeConfiguration(const TerminalStruct &configuration);

} // namespace rawlog
