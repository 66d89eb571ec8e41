#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "app/journey/conversioncheck.h"
#include "tests/support/conversionharness.h"

#include <QTest>

namespace {

using Signal = StreamingClass_DBC_Signal;

constexpr quint32 speedId = 0x100;
constexpr quint32 pagesId = 0x1ABCDEF0;

// Two messages with signals of every kind, and frames of them.
class Log
{
public:
    // Without the frames of the speed from `missing` on, so many as told.
    explicit Log(int missing = 0, int count = 0)
    {
        add("Intel", speedId, 0, 12);
        add("Motorola", speedId, 23, 16).little_endian = 0;
        add("Signed", speedId, 32, 10).is_signed = 1;
        add("Page", pagesId, 0, 4).mux_kind = MultiplexorSignal;
        add("OnEveryPage", pagesId, 32, 8);
        add("OnPage0", pagesId, 8, 16).mux_kind = MultiplexedSignal;
        Signal &onPage1 = add("OnPage1", pagesId, 8, 7);
        onPage1.mux_kind = MultiplexedSignal;
        onPage1.mux_value = 1;
        for (int i = 0; i < 50; ++i) {
            if (i < missing || i >= missing + count)
                addFrame(i * 2, speedId, QByteArray::fromHex("a5c37e811ff00f55").mid(i % 4));
            addFrame(i * 2 + 1, pagesId, QByteArray(1, char(i % 3)) + QByteArray(7, char(3 * i)));
        }
    }

    void addFrame(int time_ms, quint32 id, const QByteArray &data)
    {
        harness.add(rawlog::canEntry(quint32(time_ms) * 1000, 3,
                                     {id, id == pagesId, data.leftJustified(8, '\x2A')}));
    }

    // Of the log as it stands now with what it was converted to before `change` was made.
    [[nodiscard]] ConversionCheck checkAfter(const std::function<void()> &change)
    {
        const ConversionResult result = harness.convert();
        change();
        QFile log(harness.job.inputFile);
        if (!log.open(QIODevice::WriteOnly) || log.write(harness.log()) < 0)
            qFatal("The log of the test can't be written.");
        log.close();
        const ExpectedLog expected{chosen ? *chosen : harness.configuration,
                                   {{3, false, speedId, 2000}, {3, true, pagesId, 2000}}};
        return checkConversion(harness.job.inputFile, result.summary.outputFile, expected);
    }

    ConversionHarness harness;
    const TerminalStruct *chosen = nullptr; // none: what the log's head holds

private:
    Signal &add(const char *name, quint32 id, int start, int length)
    {
        TerminalCanCfg &channel = harness.configuration.can[3];
        channel.enabled = 1;
        Signal &signal = channel.dbc_signals.add();
        signal.name = QString::fromLatin1(name);
        signal.msg_id = id;
        signal.extended_id = id == pagesId ? 1 : 0;
        signal.start_bit = quint16(start);
        signal.bit_length = quint16(length);
        signal.little_endian = 1;
        signal.factor = 0.25;
        signal.offset = -7;
        signal.maximum = 1e6;
        signal.dlc = 8;
        signal.selection_flags = Signal::recordFlag;
        return signal;
    }
};

} // namespace

class tst_ConversionCheck : public QObject
{
    Q_OBJECT

private slots:
    void aRightConversionHoldsAllSamples();
    void aFrameMoreThanSamplesIsFound();
    void aWrongValueIsFound();
    void aMissingSignalIsFound();
    void aChosenSignalThatTheHeadLacksIsFound();
    void aChosenSignalThatTheHeadHoldsOtherwiseIsFound();
    void aFrameThatBothReadersLackIsFound_data();
    void aFrameThatBothReadersLackIsFound();
    void aFrameThatCameTwiceIsFound();
    void whatIsNoFileIsNamed();
};

void tst_ConversionCheck::aRightConversionHoldsAllSamples()
{
    Log log;
    const ConversionCheck check = log.checkAfter([] {});
    QCOMPARE(check.failure, QString());
    // Three signals of 50 frames; of 50 others 17 are on either page. Their plain signal is on both.
    QCOMPARE(check.samples, quint64(3 * 50 + 17 + 17 + 2 * 17));
    QCOMPARE(check.found.size(), 7);
    QCOMPARE(check.length_s, 0.099);
}

void tst_ConversionCheck::aFrameMoreThanSamplesIsFound()
{
    Log log;
    const ConversionCheck check =
        log.checkAfter([&log] { log.addFrame(100, speedId, QByteArray(8, '\0')); });
    QVERIFY2(check.failure.contains(QLatin1String("Intel")), qPrintable(check.failure));
}

void tst_ConversionCheck::aWrongValueIsFound()
{
    Log log;
    const ConversionCheck check = log.checkAfter(
        [&log] { log.harness.configuration.can[3].dbc_signals.at(1)->offset += 0.001; });
    QVERIFY2(check.failure.contains(QLatin1String("Motorola")), qPrintable(check.failure));
}

void tst_ConversionCheck::aMissingSignalIsFound()
{
    Log log;
    const ConversionCheck check = log.checkAfter([&log] {
        log.harness.configuration.can[3].dbc_signals.at(2)->name = QStringLiteral("Other");
    });
    QVERIFY2(check.failure.contains(QLatin1String("Other")), qPrintable(check.failure));
}

void tst_ConversionCheck::aChosenSignalThatTheHeadLacksIsFound()
{
    Log log;
    TerminalStruct chosen;
    record::copy(log.harness.configuration, chosen);
    record::copy(*chosen.can[3].dbc_signals.at(0), chosen.can[3].dbc_signals.add());
    chosen.can[3].dbc_signals.at(chosen.can[3].dbc_signals.size() - 1)->name =
        QStringLiteral("Further");
    log.chosen = &chosen;
    QCOMPARE(log.checkAfter([] {}).failure,
             QStringLiteral("CAN-3 Further: the log doesn't hold it as it was chosen"));
}

void tst_ConversionCheck::aChosenSignalThatTheHeadHoldsOtherwiseIsFound()
{
    Log log;
    TerminalStruct chosen;
    record::copy(log.harness.configuration, chosen);
    chosen.can[3].dbc_signals.at(1)->factor = 0.5;
    log.chosen = &chosen;
    QCOMPARE(log.checkAfter([] {}).failure,
             QStringLiteral("CAN-3 Motorola: the log doesn't hold it as it was chosen"));
}

void tst_ConversionCheck::aFrameThatBothReadersLackIsFound_data()
{
    QTest::addColumn<int>("missing");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("failure");
    const auto row = [](const char *tag, int missing, int count, const char *failure) {
        QTest::newRow(tag) << missing << count
                           << QStringLiteral("CAN-3 Intel: ") + QLatin1String(failure);
    };
    row("one in the middle", 20, 1, "sent every 2 ms, but not from 38 ms to 42 ms of the log");
    row("the first ones", 0, 3, "sent every 2 ms, but not from 0 ms to 5 ms of the log");
    row("the last ones", 48, 2, "sent every 2 ms, but not from 94 ms to 99 ms of the log");
    row("all", 0, 50, "its message is not in the log");
}

void tst_ConversionCheck::aFrameThatBothReadersLackIsFound()
{
    QFETCH(int, missing);
    QFETCH(int, count);
    QFETCH(QString, failure);
    Log log(missing, count);
    QCOMPARE(log.checkAfter([] {}).failure, failure);
}

void tst_ConversionCheck::aFrameThatCameTwiceIsFound()
{
    Log log;
    log.addFrame(98, speedId, QByteArray(8, '\0'));
    QCOMPARE(log.checkAfter([] {}).failure,
             QStringLiteral("CAN-3 Intel: sent every 2 ms, but twice at 98 ms of the log"));
}

void tst_ConversionCheck::whatIsNoFileIsNamed()
{
    const QString missing = QStringLiteral("missing.rld");
    const TerminalStruct nothing;
    QVERIFY(checkConversion(missing, missing, {nothing, {}}).failure.contains(missing));
}

QTEST_GUILESS_MAIN(tst_ConversionCheck)
#include "tst_conversioncheck.moc"
