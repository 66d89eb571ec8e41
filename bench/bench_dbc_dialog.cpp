// How quickly the selection of DBC signals answers, over 20,000 signals:
//
//     bench_dbc_dialog [--smoke]
//
// A keystroke in the filter, until the table is drawn again; a tick, until the remaining filters
// are shown; each with the table sorted, and with many signals ticked. Of each the fastest of three
// runs is taken, so that other programs don't count, and the slowest of all these is judged. With
// --smoke the file is smaller and no bar is judged. It needs no display.

#include "app/ui/appstyle.h"
#include "app/ui/userprompt.h"
#include "bench/bars.h"
#include "can/views/dialog_dbc_signal_selector.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QTableView>
#include <QTemporaryDir>

#include <algorithm>
#include <cstring>
#include <vector>

using Signal = StreamingClass_DBC_Signal;

namespace {

constexpr double keystrokeBar_ms = 50;
constexpr double tickBar_ms = 20;

class NobodyToAsk : public UserPrompt
{
public:
    void inform(const QString &, const QString &) override {}
    void warn(const QString &, const QString &, const QString &) override {}
    bool ask(const QString &, const QString &) override { return false; }
    QString pickFolder(const QString &, const QString &) override { return {}; }
    QString pickFile(const QString &, const QString &, const QString &) override { return {}; }
    QStringList pickFiles(const QString &, const QString &, const QString &) override { return {}; }
    QString pickFileToSave(const QString &, const QString &, const QString &) override
    {
        return {};
    }
};

// Ten signals a message; every other message has a multiplexor and signals that it selects.
QList<Signal *> signalsOfAFile(int count)
{
    const QStringList words{QStringLiteral("Engine"),  QStringLiteral("Brake"),
                            QStringLiteral("Wheel"),   QStringLiteral("Steering"),
                            QStringLiteral("Battery"), QStringLiteral("Coolant"),
                            QStringLiteral("Yaw")};
    const QStringList kinds{QStringLiteral("Speed"), QStringLiteral("Pressure"),
                            QStringLiteral("Temperature"), QStringLiteral("Rpm"),
                            QStringLiteral("Status")};
    QList<Signal *> records;
    for (int i = 0; i < count; ++i) {
        auto *signal = new Signal;
        signal->name = words.at(i % words.size()) + kinds.at(i / 3 % kinds.size())
                       + QLatin1Char('_') + QString::number(i);
        signal->unit = QStringLiteral("1/min");
        signal->description = QStringLiteral("What the %1 reports, filtered with 10 Hz")
                                  .arg(words.at(i % words.size()));
        signal->msg_id = quint32(0x100 + i / 10);
        signal->start_bit = quint16(i % 10 * 6);
        signal->bit_length = 6;
        signal->factor = 0.25;
        if (i / 10 % 2 == 0)
            signal->mux_kind = i % 10 == 0 ? MultiplexorSignal : MultiplexedSignal;
        records.append(signal);
    }
    return records;
}

// A channel that has some of the signals already, and others at their place.
TerminalCanCfg channelWith(const QList<Signal *> &records)
{
    TerminalCanCfg channel;
    for (int i = 0; i < records.size(); i += 4) {
        Signal &signal = channel.dbc_signals.add();
        signal = *records.at(i);
        signal.factor = i % 8;
        signal.selection_flags = i < 1'000 ? Signal::recordFlag : 0;
    }
    return channel;
}

// Whether a widget has been drawn.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QWidget *widget)
        : m_widget(widget)
    {
        widget->installEventFilter(this);
    }
    void start() { m_isPainted = false; }
    // Draws it if the event loop hasn't.
    void finish()
    {
        if (!m_isPainted)
            m_widget->repaint();
    }
    bool eventFilter(QObject *, QEvent *event) override
    {
        m_isPainted = m_isPainted || event->type() == QEvent::Paint;
        return false;
    }

private:
    QWidget *m_widget;
    bool m_isPainted = false;
};

class Measurement
{
public:
    explicit Measurement(int signalCount)
        : m_records(signalsOfAFile(signalCount))
        , m_dialog(channelWith(m_records), m_records, m_nobody)
        , m_table(m_dialog.findChild<QTableView *>())
        , m_filter(m_dialog.findChild<QLineEdit *>())
        , m_tableWatch(m_table->viewport())
        , m_numberWatch(m_dialog.findChild<QLabel *>(QStringLiteral("label_remaining_filters")))
    {
        m_dialog.resize(1200, 900);
        m_dialog.show();
        m_table->horizontalHeader()->setSortIndicator(nameColumn, Qt::AscendingOrder);
        timed(m_tableWatch, [] {});
    }

    // Types the text letter by letter, and deletes it again. Each keystroke in ms.
    std::vector<double> type(const QString &text)
    {
        std::vector<double> times;
        for (const QChar letter : text)
            times.push_back(timed(m_tableWatch, [&] { press(0, letter); }));
        for (int i = 0; i < text.size(); ++i)
            times.push_back(timed(m_tableWatch, [&] { press(Qt::Key_Backspace, {}); }));
        return times;
    }

    // Turns one box after the other, in ms.
    std::vector<double> tick(int count)
    {
        std::vector<double> times;
        for (int i = 0; i < count; ++i) {
            const QModelIndex box = m_table->model()->index(i, 0);
            const bool isTicked = box.data(Qt::CheckStateRole).toInt() == Qt::Checked;
            times.push_back(timed(m_numberWatch, [&] {
                m_table->model()->setData(box, isTicked ? Qt::Unchecked : Qt::Checked,
                                          Qt::CheckStateRole);
            }));
        }
        return times;
    }

    double selectAll_ms()
    {
        return timed(m_numberWatch, [this] { click("pushButton_select_all"); });
    }
    double unselectAll_ms()
    {
        return timed(m_numberWatch, [this] { click("pushButton_unselect_all"); });
    }

private:
    static constexpr int nameColumn = 2;

    void press(int key, QChar letter)
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier,
                        letter.isNull() ? QString() : QString(letter));
        QCoreApplication::sendEvent(m_filter, &event);
    }
    void click(const char *button)
    {
        m_dialog.findChild<QPushButton *>(QLatin1String(button))->click();
    }
    // With all that the action has queued, until the widget is drawn again.
    template <class Action>
    double timed(PaintWatch &watch, Action action)
    {
        watch.start();
        QElapsedTimer clock;
        clock.start();
        action();
        QCoreApplication::processEvents();
        watch.finish();
        return double(clock.nsecsElapsed()) / 1e6;
    }

    NobodyToAsk m_nobody;
    const QList<Signal *> m_records; // the dialog's
    Dialog_DBC_Signal_Selector m_dialog;
    QTableView *m_table;
    QLineEdit *m_filter;
    PaintWatch m_tableWatch;
    PaintWatch m_numberWatch;
};

// The slowest of the steps that a run times, each as it was in the fastest of three runs.
template <class Run>
double slowestStep(Run run)
{
    std::vector<double> fastest = run();
    for (int repetition = 1; repetition < 3; ++repetition) {
        const std::vector<double> times = run();
        std::transform(times.begin(), times.end(), fastest.begin(), fastest.begin(),
                       [](double a, double b) { return std::min(a, b); });
    }
    return *std::max_element(fastest.begin(), fastest.end());
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QApplication application(argc, argv);
    appstyle::apply(application);
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    const bool isSmoke = argc > 1 && std::strcmp(argv[1], "--smoke") == 0;

    Measurement measurement(isSmoke ? 2'000 : 20'000);
    Bars bars;
    double keystroke_ms = 0;
    for (const char *text : {"engine", "*rpm", "*_1", "wheelrpm_19"})
        keystroke_ms = std::max(
            keystroke_ms, slowestStep([&] { return measurement.type(QString::fromLatin1(text)); }));
    const auto ticks = [&measurement] { return measurement.tick(50); };
    bars.judge("keystroke to redrawn table", keystroke_ms, keystrokeBar_ms, "ms");
    bars.judge("tick to remaining filters", slowestStep(ticks), tickBar_ms, "ms");
    std::printf("%-44s %10.2f ms\n", "unselect all", measurement.unselectAll_ms());
    std::printf("%-44s %10.2f ms\n", "select all", measurement.selectAll_ms());
    bars.judge("tick with all signals ticked", slowestStep(ticks), tickBar_ms, "ms");
    return isSmoke || bars.allMet ? 0 : 1;
}
