#include "app/droppedfiles.h"

#include <QTest>

class tst_DroppedFiles : public QObject
{
    Q_OBJECT

private slots:
    void filesAreSortedByTheirKind_data();
    void filesAreSortedByTheirKind();
};

void tst_DroppedFiles::filesAreSortedByTheirKind_data()
{
    QTest::addColumn<QStringList>("urls");
    QTest::addColumn<QStringList>("rawLogs");
    QTest::addColumn<QString>("configuration");
    const auto row = [](const char *name, const char *urls, const char *rawLogs,
                        const char *configuration) {
        const auto list = [](const char *text) {
            return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        };
        QTest::newRow(name) << list(urls) << list(rawLogs) << QString::fromLatin1(configuration);
    };
    row("none", "", "", "");
    row("one log", "file:///a.rld", "/a.rld", "");
    row("logs in their order", "file:///b.rld file:///a.RLD", "/b.rld /a.RLD", "");
    row("escaped name", "file:///a%23b.rld", "/a#b.rld", "");
    row("configuration", "file:///a.Zdc", "", "/a.Zdc");
    row("two configurations", "file:///a.zdc file:///b.zdc", "", "");
    row("log and configuration", "file:///a.rld file:///b.zdc", "", "");
    row("configuration and log", "file:///b.zdc file:///a.rld", "", "");
    row("log and picture", "file:///a.rld file:///b.png", "", "");
    row("of the network", "http://host/a.rld", "", "");
}

void tst_DroppedFiles::filesAreSortedByTheirKind()
{
    QFETCH(QStringList, urls);
    QList<QUrl> list;
    for (const QString &url : qAsConst(urls))
        list += QUrl(url);
    const DroppedFiles files = DroppedFiles::of(list);
    QTEST(files.raw_logs, "rawLogs");
    QTEST(files.configuration, "configuration");
    QCOMPARE(files.isEmpty(), files.raw_logs.isEmpty() && files.configuration.isEmpty());
}

QTEST_GUILESS_MAIN(tst_DroppedFiles)
#include "tst_droppedfiles.moc"
