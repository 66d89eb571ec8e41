#include "tests/mdf4conversion/views/converterbench.h"

#include "MDF4Conversion/growingfile.h"
#include "MDF4Conversion/outputnames.h"
#include "tests/support/conversionharness.h"
#include "tests/support/logconfigurations.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

ConverterBench::ConverterBench()
    : m_workingDir(QDir::currentPath())
{
    QDir(m_folder.path()).mkdir(QStringLiteral("out"));
    QDir::setCurrent(QStringLiteral(ZDS_STANDIN_DIR));
    qunsetenv("STANDIN_RLD2XXX");
}

ConverterBench::~ConverterBench()
{
    QDir::setCurrent(m_workingDir);
}

void ConverterBench::hideStandIn()
{
    QDir::setCurrent(m_folder.path());
}

QString ConverterBench::makeLog(const QString &name, int frames, const QByteArray &rubbish) const
{
    constexpr quint32 messageId = 0x123;
    ConversionHarness log;
    testlog::addSignal(log.configuration.can[0], QStringLiteral("Speed"), messageId, 0, 16);
    testlog::addSignal(log.configuration.can[0], QStringLiteral("Never"), messageId + 1, 0, 16);
    QByteArray bytes = log.log();
    for (int frame = 0; frame < frames; ++frame) {
        bytes += testlog::can(quint32(frame) * 10U, 0, messageId, "0102030405060708");
        if (frame == frames / 2)
            bytes += rubbish;
    }
    return writeLog(name, bytes);
}

QString ConverterBench::writeLog(const QString &name, const QByteArray &bytes) const
{
    QFile file(m_folder.filePath(name));
    if (!QDir().mkpath(QFileInfo(file).path()) || !file.open(QIODevice::WriteOnly)
        || file.write(bytes) != bytes.size())
        qFatal("A file of the test can't be written.");
    return file.fileName();
}

QString ConverterBench::output(const char *name) const
{
    return QDir(outputDir()).filePath(QString::fromUtf8(name));
}

QString ConverterBench::growing(const char *name) const
{
    return QDir(growingfile::partOf(output(name))).filePath(QString::fromUtf8(name));
}

QString ConverterBench::left() const
{
    return QDir(outputDir())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                   QDir::Name)
        .join(QLatin1Char(' '));
}

PlannedConversion ConverterBench::plan(const QString &log,
                                       ConversionGlobal::OutputFormat format) const
{
    OutputNames names;
    return conversionbatch::plan({log}, outputDir(), format, names).constFirst();
}

bool ConverterBench::pollToTheEnd(WidgetConverterBase &widget)
{
    return QTest::qWaitFor(
        [&widget] {
            widget.poll();
            return widget.isFinished();
        },
        timeout_ms);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
