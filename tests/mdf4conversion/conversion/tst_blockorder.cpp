#include "tests/support/dbclog.h"

#include <QTest>
#include <QtEndian>

namespace {

constexpr int idBlockSize = 64;
constexpr int alignment = 8;

// The ids of the blocks from the head of the file up to the data of the first group.
QStringList blocksUpToData(const QByteArray &file)
{
    QStringList ids;
    for (int at = idBlockSize; at + 16 <= file.size() && !ids.contains(QStringLiteral("HL"));) {
        ids.append(QString::fromLatin1(file.mid(at + 2, 2)));
        at += int(qFromLittleEndian<quint64>(file.constData() + at + 8));
        at += -at & (alignment - 1);
    }
    return ids;
}

} // namespace

// Where the blocks of a converted log lie in its file.
class tst_BlockOrder : public QObject
{
    Q_OBJECT

private slots:
    void aChannelHasItsNameThenItsUnitThenItsConversion();
};

void tst_BlockOrder::aChannelHasItsNameThenItsUnitThenItsConversion()
{
    DbcLog log;
    log.addSignal("Speed", 0, 8).unit = QStringLiteral("km/h");
    log.addFrame(1000, "1100000000000000");
    const QString head = QStringLiteral("HD FH MD MD");
    const QString group = QStringLiteral("DG CG");
    const QString time = QStringLiteral("CN TX CC TX");
    const QString channel = QStringLiteral("CN TX TX CC");
    QCOMPARE(
        blocksUpToData(log.convert().bytes).join(QLatin1Char(' ')),
        QStringList({head, group, time, channel, QStringLiteral("HL")}).join(QLatin1Char(' ')));
}

QTEST_GUILESS_MAIN(tst_BlockOrder)
#include "tst_blockorder.moc"
