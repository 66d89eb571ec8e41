#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

// The manual pages against the programs' own words.
class tst_ManPages : public QObject
{
    Q_OBJECT

private slots:
    void everyOptionIsInTheManual_data();
    void everyOptionIsInTheManual();
};

void tst_ManPages::everyOptionIsInTheManual_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("page");
    QTest::newRow("zds-convert") << QStringLiteral(ZDS_CONVERT)
                                 << QStringLiteral(ZDS_MAN_DIR "/zds-convert.1");
    QTest::newRow("zds-inspect") << QStringLiteral(ZDS_INSPECT)
                                 << QStringLiteral(ZDS_MAN_DIR "/zds-inspect.1");
    QTest::newRow("zds-logger-sim") << QStringLiteral(ZDS_LOGGER_SIM)
                                    << QStringLiteral(ZDS_SIMULATOR_MAN_DIR "/zds-logger-sim.1");
}

void tst_ManPages::everyOptionIsInTheManual()
{
    QFETCH(QString, program);
    QFETCH(QString, page);
    QFile file(page);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString manual =
        QString::fromUtf8(file.readAll()).replace(QLatin1String("\\-"), QLatin1String("-"));

    QProcess process;
    process.start(program, {QStringLiteral("--help")}, QIODevice::ReadOnly);
    QVERIFY(process.waitForFinished());
    const QString help = QString::fromUtf8(process.readAllStandardOutput());
    const QRegularExpression option(QStringLiteral("(?<=\\s)--[a-z-]+"));
    int count = 0;
    for (auto match = option.globalMatch(help); match.hasNext(); ++count) {
        const QString name = match.next().captured();
        QVERIFY2(manual.contains(name), qPrintable(name));
    }
    QVERIFY(count > 3);
}

QTEST_GUILESS_MAIN(tst_ManPages)
#include "tst_manpages.moc"
