#include "cli/filehead.h"

#include <QtTest>

using Kind = FileHead::Kind;
Q_DECLARE_METATYPE(FileHead::Kind)

namespace {

// A configuration file of 0x20 bytes: payload of 0x18, frame of 0x14.
const QByteArray configurationBytes = QByteArrayLiteral("\0\0\0\x18"
                                                        "\0\0\0\x14"
                                                        "\0\0\0\x06");
// A raw log with a block of 0x18 bytes: array of 0x14, frame of 0x10.
const QByteArray logBytes = QByteArrayLiteral("\x18\0\0\0"
                                              "\0\0\0\x14"
                                              "\0\0\0\x10");

} // namespace

class tst_FileHead : public QObject
{
    Q_OBJECT

private slots:
    void kindFollowsFromLengthsThatFitTheFile_data();
    void kindFollowsFromLengthsThatFitTheFile();
    void framesThatDoNotFitEachOtherAreNotWhole_data();
    void framesThatDoNotFitEachOtherAreNotWhole();
    void whatIsNoRegularFileIsOfUnknownKind();
};

void tst_FileHead::kindFollowsFromLengthsThatFitTheFile_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<qint64>("fileSize");
    QTest::addColumn<QString>("name");
    QTest::addColumn<Kind>("kind");
    const QString zdc = QStringLiteral("a.zdc");
    const QString rld = QStringLiteral("a.RLD");
    const QString none = QStringLiteral("a");
    const QByteArray noLength = QByteArrayLiteral("\0\0\0\0");
    const QByteArray noise = QByteArrayLiteral("\x7f\x45\x4c\x46\x02\x01\x01\x03\x11\x12\x13\x14");
    // As a payload 0x02000000 bytes, as a block 2 bytes.
    const QByteArray bothFit = QByteArrayLiteral("\x02\0\0\0\0\0\0\0\0\0\0\0");

    QTest::newRow("configuration")
        << configurationBytes << qint64(0x20) << zdc << Kind::Configuration;
    QTest::newRow("log") << logBytes << qint64(0x1c) << rld << Kind::RawLog;
    QTest::newRow("configuration, misnamed")
        << configurationBytes << qint64(0x20) << rld << Kind::Configuration;
    QTest::newRow("log, misnamed") << logBytes << qint64(0x1c) << zdc << Kind::RawLog;
    QTest::newRow("log without extension") << logBytes << qint64(0x1c) << none << Kind::RawLog;
    QTest::newRow("configuration, cut short")
        << configurationBytes << qint64(0x1f) << zdc << Kind::Configuration;
    QTest::newRow("log, cut short") << logBytes << qint64(0x1b) << rld << Kind::RawLog;
    QTest::newRow("both lengths fit, .zdc")
        << bothFit << qint64(0x3000000) << zdc << Kind::Configuration;
    QTest::newRow("both lengths fit, .rld") << bothFit << qint64(0x3000000) << rld << Kind::RawLog;
    QTest::newRow("both lengths fit, no extension")
        << bothFit << qint64(0x3000000) << none << Kind::Unknown;
    QTest::newRow("log of several GB") << logBytes << qint64(0x200000000) << none << Kind::RawLog;
    QTest::newRow("length 0, .rld") << noLength << qint64(100) << rld << Kind::RawLog;
    QTest::newRow("length 0, .zdc") << noLength << qint64(100) << zdc << Kind::Configuration;
    QTest::newRow("empty, .rld") << QByteArray() << qint64(0) << rld << Kind::RawLog;
    QTest::newRow("empty, .zdc") << QByteArray() << qint64(0) << zdc << Kind::Configuration;
    QTest::newRow("empty, no extension") << QByteArray() << qint64(0) << none << Kind::Unknown;
    QTest::newRow("noise, no extension") << noise << qint64(100) << none << Kind::Unknown;
    QTest::newRow("text, .DBC") << QByteArrayLiteral("VERSION \"\"\n") << qint64(100)
                                << QStringLiteral("a.DBC") << Kind::Database;
    QTest::newRow("empty, .dbc") << QByteArray() << qint64(0) << QStringLiteral("a.dbc")
                                 << Kind::Database;
    QTest::newRow("log, named .dbc")
        << logBytes << qint64(0x1c) << QStringLiteral("a.dbc") << Kind::RawLog;
    QTest::newRow("noise, .rld") << noise << qint64(100) << rld << Kind::RawLog;
}

void tst_FileHead::kindFollowsFromLengthsThatFitTheFile()
{
    QFETCH(QByteArray, bytes);
    QFETCH(qint64, fileSize);
    QFETCH(QString, name);
    QTEST(fileHead(bytes, fileSize, name).kind, "kind");
}

void tst_FileHead::framesThatDoNotFitEachOtherAreNotWhole_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<qint64>("fileSize");
    QTest::addColumn<bool>("whole");
    const auto changed = [](QByteArray bytes, int at, char value) {
        bytes[at] = value;
        return bytes;
    };
    QTest::newRow("configuration") << configurationBytes << qint64(0x20) << true;
    QTest::newRow("frame beyond payload")
        << changed(configurationBytes, 7, 0x15) << qint64(0x20) << false;
    QTest::newRow("frame without version")
        << changed(configurationBytes, 7, 0x03) << qint64(0x20) << false;
    QTest::newRow("payload beyond file") << configurationBytes << qint64(0x1f) << false;
    QTest::newRow("log") << logBytes << qint64(0x1c) << true;
    QTest::newRow("array beyond block") << changed(logBytes, 7, 0x15) << qint64(0x1c) << false;
    QTest::newRow("frame beyond array") << changed(logBytes, 11, 0x11) << qint64(0x1c) << false;
    QTest::newRow("log ends inside its head") << logBytes.left(8) << qint64(0x1c) << false;
}

void tst_FileHead::framesThatDoNotFitEachOtherAreNotWhole()
{
    QFETCH(QByteArray, bytes);
    QFETCH(qint64, fileSize);
    QTEST(fileHead(bytes, fileSize, QStringLiteral("a.zdc")).framesAreWhole, "whole");
}

void tst_FileHead::whatIsNoRegularFileIsOfUnknownKind()
{
    QCOMPARE(readFileHead(QDir::tempPath()).kind, Kind::Unknown);
    QCOMPARE(readFileHead(QStringLiteral("no such file.zdc")).kind, Kind::Unknown);
}

QTEST_GUILESS_MAIN(tst_FileHead)
#include "tst_filehead.moc"
