#include "can/dbcsummary.h"

#include <QtTest>

class tst_DbcSummary : public QObject
{
    Q_OBJECT

private slots:
    void whatWasReadIsCounted();
    void whatWasPassedOverIsNamed();
    void nothingPassedOverIsNotMentioned();
};

void tst_DbcSummary::whatWasReadIsCounted()
{
    DbcSummary summary;
    summary.messages = 1;
    summary.signal_count = 12345;
    QCOMPARE(dbc::summaryText(summary), QStringLiteral("1 message, 12,345 signals"));
}

void tst_DbcSummary::whatWasPassedOverIsNamed()
{
    DbcSummary summary;
    summary.messages = 2;
    summary.signal_count = 1;
    summary.ignored_signals = 3;
    summary.float_types = 4;
    summary.multiplexor_ranges = 2;
    summary.value_tables = 1;
    summary.named_value_tables = 7;
    summary.signals_of_no_message = 1;
    summary.oversized_signals = 8;
    summary.comments_without_signal = 5;
    summary.other_comments = 6;
    QCOMPARE(dbc::summaryText(summary),
             QStringLiteral("2 messages, 1 signal; passed over: 3 signals outside of a message, "
                            "1 signal of no message (read with the message before it), 8 signals "
                            "of more than 64 bits or beyond their message, 4 float types (read as "
                            "whole numbers), 2 signals at several "
                            "multiplexor values (read at one), 1 value table, 7 named value "
                            "tables, 5 comments without a "
                            "signal, 6 comments of messages, nodes or the bus"));
}

void tst_DbcSummary::nothingPassedOverIsNotMentioned()
{
    QCOMPARE(dbc::passedOverText(DbcSummary()), QString());
}

QTEST_APPLESS_MAIN(tst_DbcSummary)
#include "tst_dbcsummary.moc"
