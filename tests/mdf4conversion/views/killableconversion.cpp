// Converts a log with the rld2xxx of the working folder and may be killed meanwhile:
//
//     zds-test-rld2xxx LOG OUTPUT
//
// Tells in a line when it begins and in another the key of its shared memory, and ends with 0 when the
// conversion found no errors.

#include "MDF4Conversion/views/widgetconverterrld2xxx.h"
#include "tests/app/scriptedprompt.h"

#include <QApplication>
#include <QProcess>
#include <QTimer>

#include <cstdio>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    constexpr int pollInterval_ms = 5;
    const QStringList arguments = QCoreApplication::arguments();
    ScriptedPrompt prompt;
    WidgetConverterRld2XXX widget(
        {ConversionGlobal::BLF, arguments.value(1), arguments.value(2), QString()}, prompt);
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&widget] {
        widget.poll();
        if (widget.isFinished())
            QCoreApplication::exit(widget.state() == conversionstate::finished ? 0 : 1);
    });
    std::puts("begun");
    std::fflush(stdout);
    widget.start();
    std::puts(qPrintable(widget.findChild<QProcess *>()->arguments().value(4)));
    std::fflush(stdout);
    timer.start(pollInterval_ms);
    return QApplication::exec();
}
