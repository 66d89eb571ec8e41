#include "can/dbcfileparser.h"

#include "can/dbcdecoding.h"
#include "can/dbcpasses.h"
#include "config/shorttext.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <utility>

namespace {

constexpr qint64 reportInterval = 0x100000; // bytes between two reports of progress
constexpr int stepCount = 3;
constexpr int mostDumped = 500;    // signals
constexpr int longestDumped = 200; // UTF-16 units of a text

void dumpRow()
{
    qDebug("%s", QByteArray(60, '-').constData());
}

void dumpSignal(const StreamingClass_DBC_Signal &signal)
{
    const QByteArray name = shortText(signal.name, longestDumped).toUtf8();
    const QByteArray description = shortText(signal.description, longestDumped).toUtf8();
    qDebug("Signal: %s msgID: %08X StBit:%i BitLen:%i", name.constData(), signal.msg_id,
           signal.start_bit, signal.bit_length);
    if (signal.mux_kind == MultiplexorSignal)
        qDebug("%s Multiplexor-Signal ", name.constData());
    else if (signal.mux_kind == MultiplexedSignal)
        qDebug("%s Multiplexed mux-value: %i -Signal-Description %s", name.constData(),
               signal.mux_value, description.constData());
    else
        qDebug("%s -Signal-Description %s", name.constData(), description.constData());
}

} // namespace

void DbcFileParser::clear()
{
    qDeleteAll(m_signals);
    m_signals.clear();
    m_errorText.clear();
    m_summary = {};
    m_isCancelled = false;
}

bool DbcFileParser::load(const QString &path)
{
    clear();
    QFile file(path);
    // Opening a pipe would wait for its writer.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return false;
    QElapsedTimer clock;
    clock.start();
    qDebug() << "readed filesize = " << file.size();
    QByteArray bytes = readFile(file);
    if (m_errorText.isEmpty() && !m_isCancelled)
        parse(dbc::decoded(std::move(bytes)));
    qDebug() << "dbc-file load processtime= " << clock.elapsed() << "msec";
    if (m_isCancelled) {
        clear();
        m_isCancelled = true;
    }
    return m_errorText.isEmpty() && !m_isCancelled;
}

QByteArray DbcFileParser::readFile(QFile &file)
{
    m_fileSize = file.size();
    m_nextReport = 0;
    QByteArray bytes;
    if (m_fileSize <= maxFileSize)
        bytes.reserve(int(m_fileSize + reportInterval));
    // The size is checked while reading: a file may grow, and some don't know theirs.
    qint64 count = m_fileSize <= maxFileSize ? 1 : 0;
    while (count > 0 && bytes.size() <= maxFileSize
           && mayGoOn(Step::Reading, bytes.size(), m_fileSize)) {
        const int size = bytes.size();
        bytes.resize(size + int(reportInterval));
        count = file.read(bytes.data() + size, reportInterval);
        bytes.resize(size + int(qMax<qint64>(count, 0)));
    }
    if (count < 0)
        m_errorText =
            QStringLiteral("DBC-File: Unable to read the file: %1").arg(file.errorString());
    else if (qMax<qint64>(m_fileSize, bytes.size()) > maxFileSize)
        m_errorText = QStringLiteral("DBC-File: The file is too large, at most %1 MiB are read")
                          .arg(maxFileSize >> 20);
    return bytes;
}

void DbcFileParser::parse(const QByteArray &text)
{
    const std::string_view view(text.constData(), std::size_t(text.size()));
    const auto checkOf = [&](Step step) {
        m_nextReport = 0;
        return [this, step, size = text.size()](std::size_t position) {
            return mayGoOn(step, qint64(position), size);
        };
    };
    m_errorText = dbc::readSignals(view, m_signals, m_summary, checkOf(Step::Signals));
    if (m_errorText.isEmpty() && !m_isCancelled)
        m_errorText = dbc::readComments(view, m_signals, m_summary, checkOf(Step::Comments));
}

// The steps take a third of the progress each.
bool DbcFileParser::mayGoOn(Step step, qint64 position, qint64 length)
{
    if (position < m_nextReport || !m_progress)
        return true;
    m_nextReport = position + reportInterval;
    const qint64 ofStep = length == 0 ? 0 : m_fileSize * qMin(position, length) / length;
    m_isCancelled = !m_progress((qint64(step) * m_fileSize + ofStep) / stepCount, m_fileSize);
    return !m_isCancelled;
}

QList<StreamingClass_DBC_Signal *> DbcFileParser::takeSignals()
{
    return std::exchange(m_signals, {});
}

void DbcFileParser::debugDump() const
{
    dumpRow();
    qDebug("Debug DBC-Output");
    dumpRow();
    int withMultiplex = 0;
    QSet<quint64> messages;
    for (int i = 0; i < m_signals.size(); ++i) {
        const StreamingClass_DBC_Signal *signal = m_signals.at(i);
        if (i < mostDumped)
            dumpSignal(*signal);
        withMultiplex += signal->mux_kind == PlainSignal ? 0 : 1;
        messages.insert(quint64(signal->extended_id) << 32 | signal->msg_id);
    }
    if (m_signals.size() > mostDumped)
        qDebug("and %i more signals", m_signals.size() - mostDumped);
    dumpRow();
    qDebug() << " -> Message-Count " << messages.size();
    qDebug() << " -> Signal-Count with mux" << withMultiplex;
}
