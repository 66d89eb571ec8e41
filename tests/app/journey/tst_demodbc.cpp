#include "MDF4Conversion/rawlog/drive/drive.h"
#include "app/journey/demodbc.h"
#include "can/dbcfileparser.h"

#include <QTemporaryDir>
#include <QTest>

class tst_DemoDbc : public QObject
{
    Q_OBJECT

private slots:
    void everySignalOfTheDriveIsReadBack_data();
    void everySignalOfTheDriveIsReadBack();
};

void tst_DemoDbc::everySignalOfTheDriveIsReadBack_data()
{
    QTest::addColumn<int>("channel");
    QTest::newRow("11-bit identifiers") << 0;
    QTest::newRow("29-bit identifiers") << 1;
    QTest::newRow("64 bytes") << 2;
}

void tst_DemoDbc::everySignalOfTheDriveIsReadBack()
{
    QFETCH(int, channel);
    const drive::Drive drive;
    const auto &written = drive.configuration().can[std::size_t(channel)].dbc_signals;
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("drive.dbc")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(dbcText(written.items()));
    file.close();
    DbcFileParser parser;
    QVERIFY2(parser.load(file.fileName()), qPrintable(parser.errorText()));
    QCOMPARE(parser.signalList().size(), written.size());
    for (int i = 0; i < written.size(); ++i) {
        StreamingClass_DBC_Signal read;
        record::copy(*parser.signalList().at(i), read);
        read.selection_flags = written.at(i)->selection_flags;
        QVERIFY2(record::toBytes(read) == record::toBytes(*written.at(i)),
                 qPrintable(written.at(i)->name));
    }
}

QTEST_GUILESS_MAIN(tst_DemoDbc)
#include "tst_demodbc.moc"
