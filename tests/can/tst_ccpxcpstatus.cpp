#include "a2l/records/streamingclass_a2l_module.h"
#include "can/ccpxcpstatus.h"

#include <QtTest>

using can::SessionProtocol;

class tst_CcpXcpStatus : public QObject
{
    Q_OBJECT

private slots:
    void aStatusHasItsText_data();
    void aStatusHasItsText();
    void connectingAndDisconnectingNameTheProtocol();
    void everyOtherStatusIsUnknown();
    void aResponseHasItsText_data();
    void aResponseHasItsText();
    void everyOtherResponseIsUnknown();
    void theTransportsVersionTellsXcpFromCcp();
};

void tst_CcpXcpStatus::aStatusHasItsText_data()
{
    QTest::addColumn<QString>("text");
    const auto row = [](int status, const char *text) {
        QTest::newRow(qPrintable(QString::number(status))) << QString::fromLatin1(text);
    };
    row(0, "Inactive");
    row(1, "CAN is disabled");
    row(3, "Connected...");
    row(4, "Checking CCP version...");
    row(5, "Initializing DAQ-Session step 1...");
    row(6, "Initializing DAQ-Session step 2...");
    row(7, "Error, no DAQ-List set.");
    row(8, "Error, DAQ-List wrong FirstID.");
    row(9, "Error, Invalid ODT count.");
    row(10, "Error, no DAQ memory.");
    row(11, "Initializing DAQ-Session step 3...");
    row(12, "Initializing DAQ-Session step 4...");
    row(13, "Initializing DAQ-Session step 5...");
    row(14, "Initializing DAQ-Session step 6...");
    row(15, "Preparing synchronized start...");
    row(16, "Starting DAQ-Data...");
    row(17, "Synchronized start DAQ-Data...");
    row(18, "XCP Session Active/Running");
    row(19, "Unknown status 19");
    row(21, "The Session restarts soon...");
    row(66, "Freeing DAQ..");
    row(67, "Allocating DAQ..");
    row(68, "Allocating ODTs..");
    row(69, "Allocating ODT Entries..");
    row(70, "Getting DAQ Clock..");
}

void tst_CcpXcpStatus::aStatusHasItsText()
{
    const auto status = quint8(QByteArray(QTest::currentDataTag()).toInt());
    QFETCH(QString, text);
    QCOMPARE(can::sessionStatusText(status, SessionProtocol::Ccp), text);
    QCOMPARE(can::sessionStatusText(status, SessionProtocol::Xcp), text);
}

void tst_CcpXcpStatus::connectingAndDisconnectingNameTheProtocol()
{
    QCOMPARE(can::sessionStatusText(2, SessionProtocol::Ccp), QStringLiteral("CCP Connect..."));
    QCOMPARE(can::sessionStatusText(2, SessionProtocol::Xcp), QStringLiteral("XCP Connect..."));
    QCOMPARE(can::sessionStatusText(20, SessionProtocol::Ccp), QStringLiteral("CCP Disconnect..."));
    QCOMPARE(can::sessionStatusText(20, SessionProtocol::Xcp), QStringLiteral("XCP Disconnect..."));
}

void tst_CcpXcpStatus::everyOtherStatusIsUnknown()
{
    int known = 0;
    for (int status = 0; status <= 255; ++status) {
        const QString text = can::sessionStatusText(quint8(status), SessionProtocol::Ccp);
        if (text != QStringLiteral("Unknown status %1").arg(status))
            ++known;
    }
    QCOMPARE(known, 26);
}

void tst_CcpXcpStatus::aResponseHasItsText_data()
{
    QTest::addColumn<QString>("text");
    const auto row = [](int code, const char *text) {
        QTest::newRow(qPrintable(QString::number(code))) << QString::fromLatin1(text);
    };
    row(0, "Unknown error 0");
    row(1, "LastErr:DAQ overload");
    row(16, "LastErr:CMD processor busy");
    row(17, "LastErr:DAQ processor busy");
    row(18, "LastErr:Internal timeout");
    row(24, "LastErr:Key request");
    row(25, "LastErr:Session status request");
    row(32, "LastErr:Cold start request");
    row(33, "LastErr:CAL data init request");
    row(34, "LastErr:DAQ data init request");
    row(35, "LastErr:Code update request");
    row(48, "LastErr:Unknown command");
    row(49, "LastErr:CMD syntax fault");
    row(50, "LastErr:Parameter out of range");
    row(51, "LastErr:Access denied");
    row(52, "LastErr:Overload");
    row(53, "LastErr:Access locked");
    row(54, "LastErr:Function not available");
    row(255, "Unknown error 255");
}

void tst_CcpXcpStatus::aResponseHasItsText()
{
    const auto code = quint8(QByteArray(QTest::currentDataTag()).toInt());
    QFETCH(QString, text);
    QCOMPARE(can::slaveResponseText(code), text);
}

void tst_CcpXcpStatus::everyOtherResponseIsUnknown()
{
    int known = 0;
    for (int code = 0; code <= 255; ++code) {
        if (can::slaveResponseText(quint8(code)).startsWith(QStringLiteral("LastErr:")))
            ++known;
        else
            QCOMPARE(can::slaveResponseText(quint8(code)),
                     QStringLiteral("Unknown error %1").arg(code));
    }
    QCOMPARE(known, 17);
}

void tst_CcpXcpStatus::theTransportsVersionTellsXcpFromCcp()
{
    StreamingClass_A2L_Module module;
    module.config.cfg.protocol_version = 0x0201;
    QVERIFY(can::sessionProtocol(module) == SessionProtocol::Ccp);
    module.config.cfg.protocol_version = 0x0100;
    module.config.cfg.version_text = QStringLiteral("1.0");
    QVERIFY(can::sessionProtocol(module) == SessionProtocol::Xcp);
}

QTEST_GUILESS_MAIN(tst_CcpXcpStatus)
#include "tst_ccpxcpstatus.moc"
