#pragma once

#include "app/liverate.h"
#include "app/loggerlink.h"

#include <QElapsedTimer>
#include <QObject>

class QLabel;
class QStatusBar;

// The fields of the main window's status bar: state of the link, version of the logger's software,
// live entries per second and those that were dropped.
class StatusFields : public QObject
{
    Q_OBJECT

public:
    StatusFields(QStatusBar *bar, const LoggerLink *link);

    void showState(AppSta_t state);
    void showVersion(int majorNumber, int minorNumber);

    // The counters after so much more time.
    void showLiveCounters(const LoggerLink::LiveCounters &counters, qint64 elapsed_ms);

private:
    QLabel *addField(const char *name, const QString &meaning);

    QStatusBar *m_bar;        // not owned
    const LoggerLink *m_link; // not owned
    QLabel *m_state;          // the labels belong to the status bar
    QLabel *m_version;
    QLabel *m_rate;
    QLabel *m_dropped;
    LiveRate m_liveRate;
    QElapsedTimer m_sinceUpdate;
};
