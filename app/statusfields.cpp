#include "app/statusfields.h"

#include <QLabel>
#include <QLocale>
#include <QStatusBar>
#include <QTimer>

namespace {

constexpr int updatePeriod_ms = 1000;

QString colourOf(AppSta_t state)
{
    switch (state) {
    case APP_STA_DISCONN:
        return QStringLiteral("#8A949E");
    case APP_STA_CONN_LOG_ON:
    case APP_STA_CONN_LOG_OFF:
        return QStringLiteral("#2E8B57");
    case APP_STA_CONN_INIT:
    case APP_STA_CONN_UPDATE:
    case APP_STA_CONN_TRANSPARENT:
        break;
    }
    return QStringLiteral("#C77700");
}

} // namespace

StatusFields::StatusFields(QStatusBar *bar, const LoggerLink *link)
    : QObject(bar)
    , m_bar(bar)
    , m_link(link)
    , m_state(addField("label_link_state", QStringLiteral("State of the link to the logger")))
    , m_version(addField("label_logger_version",
                         QStringLiteral("Software version of the connected logger")))
    , m_rate(addField("label_live_entries",
                      QStringLiteral("Entries that came from the logger in the last second [1/s]")))
    , m_dropped(addField("label_dropped_entries",
                         QStringLiteral("Live entries that came faster than they could be shown, "
                                        "since the program started. Recorded logs are complete.")))
{
    auto *timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this,
            [this] { showLiveCounters(m_link->liveCounters(), m_sinceUpdate.restart()); });
    timer->start(updatePeriod_ms);
    m_sinceUpdate.start();
    showState(APP_STA_DISCONN);
    showLiveCounters(m_link->liveCounters(), 0);
}

QLabel *StatusFields::addField(const char *name, const QString &meaning)
{
    auto *label = new QLabel(m_bar);
    label->setObjectName(QLatin1String(name));
    label->setAccessibleDescription(meaning); // the name is the text, which has to be read out
    label->setToolTip(meaning);
    label->setContentsMargins(6, 0, 6, 0);
    m_bar->addPermanentWidget(label);
    return label;
}

void StatusFields::showState(AppSta_t state)
{
    m_state->setText(QStringLiteral("<span style='color:%1'>&#9679;</span>&nbsp;%2")
                         .arg(colourOf(state), appstate::description(state).toHtmlEscaped()));
    if (state == APP_STA_DISCONN)
        m_version->setText(QStringLiteral("Logger software: -"));
}

void StatusFields::showVersion(int majorNumber, int minorNumber)
{
    m_version->setText(QStringLiteral("Logger software: V%1.%2").arg(majorNumber).arg(minorNumber));
}

void StatusFields::showLiveCounters(const LoggerLink::LiveCounters &counters, qint64 elapsed_ms)
{
    const quint64 rate = m_liveRate.update(counters.entries, elapsed_ms);
    m_rate->setText(QStringLiteral("Live: %1 entries/s").arg(QLocale().toString(rate)));
    m_dropped->setText(QStringLiteral("Dropped: %1").arg(QLocale().toString(counters.dropped)));
    m_dropped->setStyleSheet(counters.dropped > 0 ? QStringLiteral("color: #B3261E") : QString());
}
