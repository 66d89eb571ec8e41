#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// Makes lines of what a process writes, as it arrives. A line without an end is cut, so that no
// more than one line is ever held.
class OutputLines
{
public:
    static constexpr int maxLineBytes = 1000;

    // The lines that are whole by now.
    [[nodiscard]] QStringList feed(const QByteArray &bytes);
    // What stands behind the last line end, when no more follows.
    [[nodiscard]] QStringList finish();

private:
    QByteArray m_begun;
};
