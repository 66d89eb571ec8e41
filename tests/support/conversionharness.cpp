#include "tests/support/conversionharness.h"

#include "MDF4Conversion/rawlog/logconfiguration.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

namespace {

// Behind the length of the outer byte array and of the record's frame.
constexpr int mainVersionAt = 8;

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Where the environment asks for it, outputs are kept for a checker of the format.
void keepOutput(const QString &path)
{
    static int number = 0;
    const QString folder = qEnvironmentVariable("ZDS_KEEP_MF4");
    if (folder.isEmpty())
        return;
    const QString name = QStringLiteral("%1_%2.mf4")
                             .arg(QFileInfo(QCoreApplication::applicationFilePath()).fileName(),
                                  QString::number(++number));
    QFile::copy(path, QDir(folder).filePath(name));
}

} // namespace

QStringList ConversionResult::groupNames() const
{
    QStringList names;
    for (const ConversionSummary::Group &group : summary.groups)
        names.append(group.name);
    return names;
}

QStringList ConversionResult::channelNames(int group) const
{
    QStringList names;
    for (const mdf4reader::Channel &channel : file.groups.at(size_t(group)).channels) {
        if (channel.type != 2)
            names.append(QString::fromStdString(channel.name));
    }
    return names;
}

const mdf4reader::Channel &ConversionResult::channel(int group, const char *name) const
{
    static const mdf4reader::Channel missing;
    if (size_t(group) >= file.groups.size())
        return missing;
    const mdf4reader::Channel *found = file.groups[size_t(group)].channel(name);
    return found ? *found : missing;
}

template <class T, class Read>
QVector<T> ConversionResult::perRecord(int group, const char *name, Read read) const
{
    QVector<T> values;
    if (size_t(group) >= file.groups.size() || !file.groups[size_t(group)].channel(name))
        return values;
    const mdf4reader::Channel &source = channel(group, name);
    const std::vector<unsigned char> &bytesOfGroup = records.at(size_t(group));
    const size_t size = file.groups[size_t(group)].dataBytes;
    for (size_t at = 0; at + size <= bytesOfGroup.size(); at += size)
        values.append(read(source, bytesOfGroup.data() + at));
    return values;
}

QVector<double> ConversionResult::raw(int group, const char *name) const
{
    return perRecord<double>(group, name, mdf4reader::rawValue);
}

QVector<quint64> ConversionResult::bits(int group, const char *name) const
{
    return perRecord<quint64>(group, name, mdf4reader::rawBits);
}

QVector<double> ConversionResult::physical(int group, const char *name) const
{
    return perRecord<double>(group, name, [](const auto &source, const unsigned char *record) {
        return mdf4reader::physicalValue(source, record).value_or(qQNaN());
    });
}

QStringList ConversionResult::texts(int group, const char *name) const
{
    const auto read = [](const auto &source, const unsigned char *record) {
        return QString::fromStdString(mdf4reader::textValue(source, record));
    };
    return QStringList(perRecord<QString>(group, name, read).toList());
}

QVector<quint64> ConversionResult::times(int group) const
{
    return bits(group, "Timestamp");
}

QString ConversionResult::status(const QString &part) const
{
    const QStringList found = statuses.filter(part);
    return found.size() == 1 ? found.first() : QString();
}

ConversionHarness::ConversionHarness()
{
    const QDir dir(m_folder.path());
    job.inputFile = dir.filePath(QStringLiteral("log.rld"));
    job.outputFile = dir.filePath(QStringLiteral("log.mf4"));
    job.temporaryDir = dir.filePath(QStringLiteral("tmp_1"));
}

void ConversionHarness::setMainVersion(qint32 version)
{
    m_block = rawlog::encodeConfiguration(configuration);
    qToBigEndian(version, m_block.data() + mainVersionAt);
}

QByteArray ConversionHarness::log() const
{
    const QByteArray block =
        m_block.isEmpty() ? rawlog::encodeConfiguration(configuration) : m_block;
    QByteArray size(4, 0);
    qToLittleEndian(quint32(block.size()), size.data());
    return size + block + m_entries;
}

QStringList ConversionHarness::leftFiles() const
{
    return QDir(m_folder.path())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                   QDir::Name);
}

ConversionResult ConversionHarness::convert()
{
    QFile file(job.inputFile);
    if (!file.open(QIODevice::WriteOnly) || file.write(log()) < 0)
        qFatal("The log of the test can't be written.");
    file.close();
    return convertFile();
}

ConversionResult ConversionHarness::convertFile()
{
    ConversionResult result;
    WorkerConvertMDF4 worker(job);
    const auto note = [&result](QStringList &list, const char *kind) {
        return [&result, &list, kind](const QString &text) {
            list.append(text);
            result.messages.append(QLatin1String(kind) + text);
        };
    };
    QObject::connect(&worker, &WorkerConvertMDF4::sig_status, note(result.statuses, "Status: "));
    QObject::connect(&worker, &WorkerConvertMDF4::sig_warning, note(result.warnings, "Warning: "));
    QObject::connect(&worker, &WorkerConvertMDF4::sig_error, note(result.errors, "Error: "));
    QObject::connect(&worker, &WorkerConvertMDF4::sig_progress,
                     [&result](int percentage) { result.progress.append(percentage); });
    if (onStatus)
        QObject::connect(&worker, &WorkerConvertMDF4::sig_status, onStatus);
    if (prepare)
        prepare(worker);
    worker.process();
    result.summary = worker.summary();
    if (!job.outputFile.isEmpty())
        result.bytes = contentOf(job.outputFile);
    if (!result.summary.written)
        return result;
    keepOutput(job.outputFile);
    mdf4reader::Reader reader;
    if (reader.open(job.outputFile.toStdU16String())) {
        for (const mdf4reader::Group &group : reader.file().groups)
            result.records.push_back(reader.records(group));
    }
    result.file = reader.file();
    result.readFailure = QString::fromStdString(reader.error());
    return result;
}
