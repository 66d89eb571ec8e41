// The part of the journey that records, downloads and converts.

#include "MDF4Conversion/rawlog/drive/canbus.h"
#include "app/journey/conversioncheck.h"
#include "app/journey/journey.h"

#include <QCheckBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

#include <iterator>

namespace {

constexpr int recordTime_ms = 5000;

QStringList logsIn(const QDir &folder)
{
    return folder.entryList({QStringLiteral("*.rld")}, QDir::Files, QDir::Name);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// What the logger's demonstration buses send.
std::vector<MessageCycle> cyclesOfTheDrive()
{
    std::vector<MessageCycle> cycles;
    const std::vector<drive::CanMessage> buses[] = {drive::powertrainMessages(),
                                                    drive::fleetMessages()};
    for (int channel = 0; channel < int(std::size(buses)); ++channel) {
        for (const drive::CanMessage &message : buses[channel])
            cycles.push_back({channel, message.extended, message.id, message.period_us});
    }
    return cycles;
}

} // namespace

// Nobody is connected meanwhile. The next connection stops the recording.
bool Journey::letItRecord(QString &seen)
{
    const QStringList running{QStringLiteral("*.recording")};
    const bool hasBegun =
        waitUntil([&] { return !storage().entryList(running, QDir::Files).isEmpty(); });
    QElapsedTimer clock;
    clock.start();
    (void)waitUntil([&clock] { return clock.elapsed() >= recordTime_ms; }, 2 * recordTime_ms);
    seen = QStringLiteral("%1, %2 s")
               .arg(storage().entryList(running, QDir::Files).join(QLatin1Char(' ')))
               .arg(recordTime_ms / 1000);
    return hasBegun;
}

// The newest one is that of this journey: names begin with date and time.
bool Journey::listLogs(QString &seen)
{
    QWidget *page = openPage(QStringLiteral("Logger_Main_View"), QStringLiteral("Datalogger"));
    if (!click(page, "pushButton_refresh_storage"))
        return false;
    auto *table = page->findChild<QTableWidget *>(QStringLiteral("tableWidget_logfiles"));
    QStringList names;
    for (int row = 0; row < table->rowCount(); ++row)
        names += table->item(row, 0)->text();
    for (int row = 0; row < names.size(); ++row) {
        if (names.at(row) > m_log) {
            m_log = names.at(row);
            table->selectRow(row);
        }
    }
    seen = QStringLiteral("%1 of %2 free, %3 logs, newest %4")
               .arg(page->findChild<QLabel *>(QStringLiteral("label_disc_space_free"))->text(),
                    page->findChild<QLabel *>(QStringLiteral("label_disc_space_total"))->text())
               .arg(names.size())
               .arg(m_log);
    names.sort();
    return !names.isEmpty() && names == logsIn(storage());
}

bool Journey::downloadLog(QString &seen)
{
    QWidget *page = openPage(QStringLiteral("Logger_Main_View"), QStringLiteral("Datalogger"));
    m_prompt.folder = eventFolder().path();
    if (!click(page, "pushButton_add_selected_frolder_from_list"))
        return false;
    auto *mdf4 = page->findChild<QCheckBox *>(QStringLiteral("checkBox_generate_mdf4"));
    if (!mdf4->isChecked())
        mdf4->click();
    if (!click(page, "pushButton_download_selected_logfile"))
        return false;
    QWidget *dialog = waitForDialog("DialogTcpFileTransferClientDialog");
    if (dialog == nullptr)
        return false;
    const QDir arrived(eventFolder().filePath(QStringLiteral("raw_log_data")));
    const bool isThere = waitUntil([&] { return logsIn(arrived).contains(m_log); });
    takePicture(QStringLiteral("download"), dialog);
    const QByteArray bytes = contentOf(arrived.filePath(m_log));
    seen = QStringLiteral("%1, %2 bytes").arg(arrived.filePath(m_log)).arg(bytes.size());
    return isThere && !bytes.isEmpty() && bytes == contentOf(storage().filePath(m_log));
}

bool Journey::convertLog(QString &seen)
{
    QWidget *dialog = waitForDialog("DialogConverter_UI");
    if (dialog == nullptr)
        return false;
    const auto *end = dialog->findChild<QPushButton *>(QStringLiteral("pushButtonOk"));
    const bool hasEnded = waitUntil([end] { return end->isEnabled(); });
    takePicture(QStringLiteral("conversion"), dialog);
    seen = dialog->findChild<QLabel *>(QStringLiteral("label_status"))->text().simplified();
    return hasEnded && click(dialog, "pushButtonOk");
}

// What the logger has kept is the truth, not what was downloaded.
bool Journey::checkSamples(QString &seen)
{
    const QStringList made = eventFolder().entryList({QStringLiteral("*.mf4")}, QDir::Files);
    if (made.size() != 1) {
        seen = QStringLiteral("%1 MF4 files in %2").arg(made.size()).arg(eventFolder().path());
        return false;
    }
    const QString mf4 = eventFolder().filePath(made.first());
    const ConversionCheck check =
        checkConversion(storage().filePath(m_log), mf4, {m_expected, cyclesOfTheDrive()});
    for (const QString &line : check.found)
        print(QStringLiteral("     ") + line);
    seen = check.failure.isNull() ? QStringLiteral("%1, all %2 samples of %3 s")
                                        .arg(mf4)
                                        .arg(check.samples)
                                        .arg(check.length_s, 0, 'f', 2)
                                  : check.failure;
    return check.failure.isNull() && check.length_s >= recordTime_ms / 1000.0 - 0.5;
}
