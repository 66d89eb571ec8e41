#include "app/journey/journey.h"

#include "MDF4Conversion/rawlog/drive/drive.h"
#include "app/dialogs.h"
#include "app/handlerlink.h"
#include "app/journey/demodbc.h"
#include "config/configfile.h"
#include "link/logger_data_handler_class.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QPushButton>
#include <QSaveFile>
#include <QTreeWidget>

#include <cstdio>

namespace {

constexpr int watchTime_ms = 2000;

// An address that hardly anybody listens on, so that a running simulator is no obstacle.
QString ownAddress()
{
    const qint64 process = QCoreApplication::applicationPid();
    return QStringLiteral("127.77.%1.%2").arg(process / 250 % 250).arg(process % 250 + 1);
}

} // namespace

void print(const QString &line)
{
    std::fputs(qPrintable(line + QLatin1Char('\n')), stdout);
    std::fflush(stdout);
}

bool waitUntil(const std::function<bool()> &holds, int timeout_ms)
{
    QElapsedTimer clock;
    clock.start();
    while (!holds()) {
        if (clock.elapsed() > timeout_ms)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
        // Only a loop of its own would delete what is due.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

void JourneyPrompt::inform(const QString &title, const QString &text)
{
    print(QStringLiteral("     box \"%1\": %2").arg(title, text.simplified()));
}

void JourneyPrompt::warn(const QString &title, const QString &text, const QString &reason)
{
    ++warnings;
    print(QStringLiteral("     warning \"%1\": %2 %3").arg(title, text.simplified(), reason));
}

bool JourneyPrompt::ask(const QString &title, const QString &text)
{
    print(QStringLiteral("     question \"%1\": %2 Yes").arg(title, text.simplified()));
    return true;
}

Journey::Journey(const QDir &folder)
    : m_folder(folder)
    , m_address(ownAddress())
    , m_settings(folder.filePath(QStringLiteral("usr_settings.ini")))
{
    m_settings.setIpAddress(m_address);
    auto link = std::make_unique<HandlerLink>(&m_controller);
    m_handler = link->handler();
    MainWindowParts parts;
    parts.link = std::move(link);
    parts.prompt = &m_prompt;
    parts.settings = &m_settings;
    setDialogs(parts, m_prompt);
    m_window =
        std::make_unique<MainWindow>(&m_controller, QStringLiteral("MainWindow"), std::move(parts));
    m_window->registerToController();
    m_window->show();
}

Journey::~Journey()
{
    m_window.reset();
    m_logger.terminate();
    if (!m_logger.waitForFinished(stepTimeout_ms))
        m_logger.kill();
}

bool Journey::run()
{
    static constexpr Step steps[] = {
        {"make a configuration and DBC files", &Journey::makeFiles},
        {"start the logger", &Journey::startLogger},
        {"connect", &Journey::connectLogger},
        {"read the configuration", &Journey::readConfiguration},
        {"choose signals of CAN-0", &Journey::chooseSignalsOfFirstChannel},
        {"choose signals of CAN-1", &Journey::chooseSignalsOfSecondChannel},
        {"change a value", &Journey::changeValue},
        {"watch live data", &Journey::watchLiveData},
        {"save the configuration", &Journey::saveConfiguration},
        {"disconnect", &Journey::disconnectLogger},
        {"let the logger record", &Journey::letItRecord},
        {"connect again", &Journey::connectLogger},
        {"list the logs", &Journey::listLogs},
        {"download the log", &Journey::downloadLog},
        {"convert it", &Journey::convertLog},
        {"check its samples", &Journey::checkSamples},
        {"disconnect", &Journey::disconnectLogger}};
    takePicture(QStringLiteral("start"));
    for (const Step &step : steps) {
        QString seen;
        const bool isDone = (this->*step.function)(seen);
        takePicture(QString::fromLatin1(step.name));
        const bool works = isDone && m_prompt.warnings == 0 && m_arePicturesSaved;
        print(QStringLiteral("%1 %2: %3")
                  .arg(works ? QStringLiteral("ok  ") : QStringLiteral("FAIL"),
                       QString::fromLatin1(step.name), seen));
        if (!works)
            return false;
    }
    return true;
}

QWidget *Journey::openPage(const QString &objectName, const QString &treeText)
{
    auto *tree = m_window->findChild<QTreeWidget *>(QStringLiteral("treeWidget"));
    const auto items = tree->findItems(treeText, Qt::MatchExactly | Qt::MatchRecursive);
    if (items.isEmpty())
        return nullptr;
    tree->setCurrentItem(items.first());
    auto *page = m_window->findChild<QWidget *>(objectName);
    return page != nullptr && page->isVisible() ? page : nullptr;
}

QWidget *Journey::waitForDialog(const char *objectName)
{
    QWidget *shown = nullptr;
    (void)waitUntil([&] {
        const auto dialogs = m_window->findChildren<QWidget *>(QString::fromLatin1(objectName));
        for (QWidget *dialog : dialogs)
            shown = dialog->isVisible() ? dialog : shown;
        return shown != nullptr;
    });
    return shown;
}

bool Journey::click(QWidget *parent, const char *button)
{
    auto *found =
        parent != nullptr ? parent->findChild<QPushButton *>(QString::fromLatin1(button)) : nullptr;
    if (found == nullptr || !found->isEnabled()) {
        print(QStringLiteral("     %1 can't be pressed").arg(QString::fromLatin1(button)));
        return false;
    }
    found->click();
    return true;
}

void Journey::takePicture(const QString &name, QWidget *shown)
{
    QCoreApplication::processEvents();
    QString file = QStringLiteral("%1-%2.png").arg(++m_pictures, 2, 10, QLatin1Char('0')).arg(name);
    file.replace(QLatin1Char(' '), QLatin1Char('-'));
    QWidget *widget = shown != nullptr ? shown : m_window.get();
    if (!widget->grab().save(m_folder.filePath(file))) {
        m_arePicturesSaved = false;
        print(QStringLiteral("     %1 can't be written").arg(m_folder.filePath(file)));
    }
}

// The logger is that of the drive, but nobody has chosen signals of its channels yet.
bool Journey::makeFiles(QString &seen)
{
    const drive::Drive drive;
    record::copy(drive.configuration(), m_expected);
    m_expected.event.event_name = QStringLiteral("Journey");
    for (const int channel : {0, 1}) {
        const auto &inDrive = drive.configuration().can[std::size_t(channel)].dbc_signals;
        QSaveFile file(m_folder.filePath(QStringLiteral("can%1.dbc").arg(channel)));
        const QByteArray text = dbcText(inDrive.items());
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit()) {
            seen = file.errorString();
            return false;
        }
        seen += QStringLiteral("%1 signals of CAN-%2, ").arg(inDrive.size()).arg(channel);
    }
    for (TerminalCanCfg &can : m_expected.can) {
        can.dbc_signals.clear();
        can.filters.clear();
    }
    const QString zdc = m_folder.filePath(QStringLiteral("logger.zdc"));
    const bool areFoldersMade =
        m_folder.mkpath(storage().path()) && m_folder.mkpath(eventFolder().path());
    QString error;
    const bool isSaved = configfile::save(m_expected, zdc, &error);
    seen += isSaved ? zdc : error;
    return areFoldersMade && isSaved;
}

bool Journey::startLogger(QString &seen)
{
    m_logger.setProcessChannelMode(QProcess::MergedChannels);
    m_logger.start(
        QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("zds-logger-sim")),
        {QStringLiteral("--address"), m_address, QStringLiteral("--config"),
         m_folder.filePath(QStringLiteral("logger.zdc")), QStringLiteral("--log-dir"),
         storage().path()});
    const bool speaks = m_logger.waitForReadyRead(stepTimeout_ms);
    seen = QString::fromUtf8(m_logger.readAll()).simplified();
    return speaks && seen.startsWith(QLatin1String("ready"));
}

bool Journey::connectLogger(QString &seen)
{
    const auto *box = m_window->findChild<QComboBox *>(QStringLiteral("comboBox_ipAddr"));
    QElapsedTimer clock;
    clock.start();
    (void)click(m_window.get(), "pushButton_connect_disconnect");
    seen = QStringLiteral("%1, %2 in %3 ms")
               .arg(box->currentText(), m_controller.appStateDescription())
               .arg(clock.elapsed());
    return m_controller.appState() == APP_STA_CONN_LOG_OFF;
}

bool Journey::readConfiguration(QString &seen)
{
    const bool isRead = waitUntil([this] { return handler().terminal() == m_expected; });
    int channels = 0;
    for (const TerminalCanCfg &can : handler().terminal().can)
        channels += can.enabled != 0 ? 1 : 0;
    seen = QStringLiteral("%1 bytes, %2 CAN channels enabled")
               .arg(record::toBytes(handler().terminal()).size())
               .arg(channels);
    return isRead;
}

bool Journey::changeValue(QString &seen)
{
    const TerminalCanCfg &can = handler().terminal().can.back();
    const quint8 before = can.enabled;
    const quint8 after = before != 0 ? 0 : 1;
    const bool isSent =
        handler().cmd_write_can_enabled(int(TerminalStruct::canChannels) - 1, after);
    const bool isHeldBack = can.enabled == before;
    const bool isEchoed = waitUntil([&can, after] { return can.enabled == after; });
    m_expected.can.back().enabled = after;
    seen = QStringLiteral("enabled of CAN-11 %1, echoed as %2").arg(before).arg(can.enabled);
    return isSent && isHeldBack && isEchoed && handler().terminal() == m_expected;
}

bool Journey::watchLiveData(QString &seen)
{
    int frames = 0;
    int fixes = 0;
    QObject context;
    QObject::connect(m_handler, &Logger_Data_Handler_Class::signal_can_msg_list, &context,
                     [&frames](int, const QList<CAN_Msg_Class *> &list) { frames += list.size(); });
    QObject::connect(m_handler, &Logger_Data_Handler_Class::signal_gps_data_list, &context,
                     [&fixes](const QList<GPS_DataContainer *> &list) { fixes += list.size(); });
    const auto before = handler().liveCounters();
    QElapsedTimer clock;
    clock.start();
    (void)waitUntil([&clock] { return clock.elapsed() >= watchTime_ms; }, 2 * watchTime_ms);
    const auto after = handler().liveCounters();
    seen = QStringLiteral("%1 entries in %2 s, %3 CAN frames and %4 fixes among them, %5 dropped")
               .arg(after.entries - before.entries)
               .arg(watchTime_ms / 1000)
               .arg(frames)
               .arg(fixes)
               .arg(after.dropped);
    return frames > 100 && fixes > 0 && after.dropped == 0;
}

bool Journey::saveConfiguration(QString &seen)
{
    m_prompt.file = m_folder.filePath(QStringLiteral("saved.zdc"));
    (void)click(m_window.get(), "pushButton_save_as_configuration");
    TerminalStruct saved;
    const bool isSaved = configfile::load(saved, m_prompt.file, &seen);
    if (isSaved)
        seen = m_prompt.file;
    return isSaved && saved == m_expected;
}

bool Journey::disconnectLogger(QString &seen)
{
    (void)click(m_window.get(), "pushButton_connect_disconnect");
    seen = m_controller.appStateDescription();
    return m_controller.appState() == APP_STA_DISCONN;
}
