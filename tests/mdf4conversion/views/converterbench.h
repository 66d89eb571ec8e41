#pragma once

#include "MDF4Conversion/conversionbatch.h"
#include "MDF4Conversion/views/widgetconverterbase.h"
#include "tests/app/scriptedprompt.h"

#include <QTemporaryDir>

// Raw logs and a folder for what becomes of them, and the stand-in for rld2xxx in the working
// folder, which misbehaves as told.
class ConverterBench
{
public:
    static constexpr int timeout_ms = 30000;

    ConverterBench();
    ~ConverterBench();
    ConverterBench(const ConverterBench &) = delete;
    ConverterBench &operator=(const ConverterBench &) = delete;

    ScriptedPrompt prompt;

    // See standin_rld2xxx.cpp.
    static void setStandIn(const char *mode) { qputenv("STANDIN_RLD2XXX", mode); }
    // A working folder without rld2xxx.
    void hideStandIn();

    // A raw log with one signal; rubbish between its frames gives an error.
    QString makeLog(const QString &name, int frames = 10, const QByteArray &rubbish = {}) const;
    [[nodiscard]] QString outputDir() const { return m_folder.filePath(QStringLiteral("out")); }
    [[nodiscard]] QString output(const char *name) const;
    // Where rld2xxx makes an output.
    [[nodiscard]] QString growing(const char *name) const;
    // A raw log of these bytes.
    [[nodiscard]] QString writeLog(const QString &name, const QByteArray &bytes) const;
    // All that stands in the output folder.
    [[nodiscard]] QString left() const;
    [[nodiscard]] PlannedConversion plan(const QString &log,
                                         ConversionGlobal::OutputFormat format) const;

    // Polls until the conversion has finished; false when that takes too long.
    [[nodiscard]] static bool pollToTheEnd(WidgetConverterBase &widget);

private:
    QTemporaryDir m_folder;
    const QString m_workingDir;
};

[[nodiscard]] QByteArray contentOf(const QString &path);
