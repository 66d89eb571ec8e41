#include "tests/support/recordrings.h"

#include "tests/support/goldenbytes.h"

#include <QTest>

#include <algorithm>

Q_DECLARE_METATYPE(RecordProbe)

namespace {

constexpr quint32 neighbour = 0x4E656967;

// A stream over bytes with the neighbour behind them.
class StreamWithNeighbour
{
public:
    explicit StreamWithNeighbour(const QByteArray &bytes)
        : m_bytes(bytes + golden::word(neighbour))
        , m_in(m_bytes)
    {
        m_in.setVersion(record::dataStreamVersion);
    }

    QDataStream &stream() { return m_in; }
    bool neighbourIsNext()
    {
        quint32 next = 0;
        m_in >> next;
        return next == neighbour && m_in.atEnd();
    }

private:
    const QByteArray m_bytes;
    QDataStream m_in;
};

QByteArray readAndRewritten(const RecordProbe &probe, const QByteArray &bytes)
{
    QDataStream in(bytes);
    in.setVersion(record::dataStreamVersion);
    return probe.rewritten(in);
}

int firstDifference(const QByteArray &a, const QByteArray &b)
{
    return int(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
}

} // namespace

void RecordRings::addRows(const QVector<RecordProbe> &probes)
{
    QTest::addColumn<RecordProbe>("probe");
    for (const RecordProbe &probe : probes)
        QTest::newRow(qPrintable(probe.golden)) << probe;
}

QVector<RecordProbe> RecordRings::framed() const
{
    QVector<RecordProbe> framed;
    std::copy_if(m_probes.begin(), m_probes.end(), std::back_inserter(framed),
                 [](const RecordProbe &probe) { return probe.version >= 0; });
    return framed;
}

void RecordRings::goldenBytesAreWritten()
{
    QFETCH(RecordProbe, probe);
    const QByteArray expected = golden::bytes(probe.golden);
    const QByteArray written = probe.sampleBytes();
    if (written == expected)
        return;
    const QString text =
        QStringLiteral("first difference in %1\nexpected %2\nwritten  %3")
            .arg(probe.fieldAt(firstDifference(written, expected)),
                 QString::fromLatin1(expected.toHex(' ')), QString::fromLatin1(written.toHex(' ')));
    QFAIL(qPrintable(text));
}

void RecordRings::goldenBytesAreRead()
{
    QFETCH(RecordProbe, probe);
    StreamWithNeighbour in(golden::bytes(probe.golden));
    QVERIFY(probe.readsAsSample(in.stream()));
    QVERIFY(in.neighbourIsNext());
}

void RecordRings::whatWasWrittenReadsBackTheSame()
{
    QFETCH(RecordProbe, probe);
    StreamWithNeighbour in(probe.sampleBytes());
    QVERIFY(probe.readsAsSample(in.stream()));
    QVERIFY(in.neighbourIsNext());
    QCOMPARE(readAndRewritten(probe, probe.sampleBytes()).toHex(' '),
             probe.sampleBytes().toHex(' '));
}

void RecordRings::bytesOfAFutureVersionAreLeftInTheFrame()
{
    QFETCH(RecordProbe, probe);
    QByteArray content = golden::content(probe.golden);
    content.replace(0, 4, golden::word(quint32(probe.version + 1)));
    StreamWithNeighbour in(golden::framed(content + "\x01\x02\x03\x04\x05"));
    QVERIFY(probe.readsAsSample(in.stream()));
    QVERIFY(in.neighbourIsNext());
}

void RecordRings::aFrameCutAtAnyByteLeavesItsNeighbourIntact()
{
    QFETCH(RecordProbe, probe);
    const QByteArray content = golden::content(probe.golden);
    for (int size = 0; size < content.size(); ++size) {
        const QByteArray cut = golden::framed(content.left(size));
        StreamWithNeighbour in(cut);
        const QByteArray read = probe.rewritten(in.stream());
        QVERIFY2(in.neighbourIsNext(), qPrintable(QStringLiteral("cut at %1").arg(size)));
        // What was read is a record like any other: it survives another round.
        QCOMPARE(readAndRewritten(probe, read).toHex(), read.toHex());
    }
}

void RecordRings::aStreamCutAtAnyByteReadsAsAnEmptyFrame()
{
    QFETCH(RecordProbe, probe);
    const QByteArray bytes = golden::bytes(probe.golden);
    const QByteArray ofEmptyFrame = readAndRewritten(probe, golden::word(0));
    for (int size = 0; size < bytes.size(); ++size)
        QCOMPARE(readAndRewritten(probe, bytes.left(size)).toHex(), ofEmptyFrame.toHex());
}

void RecordRings::wordsThatLieLeaveTheNeighbourIntact()
{
    QFETCH(RecordProbe, probe);
    const QByteArray content = golden::content(probe.golden);
    const int stride = 1 + content.size() / 500;
    for (const quint32 lie : {0xFFFFFFFFu, 0xFFFFFFFEu, 0x80000000u, 0x7FFFFFFFu, 0x10001u, 0u}) {
        for (int position = 4; position + 4 <= content.size(); position += stride) {
            QByteArray damaged = content;
            damaged.replace(position, 4, golden::word(lie));
            StreamWithNeighbour in(golden::framed(damaged));
            const QByteArray read = probe.rewritten(in.stream());
            QVERIFY(in.neighbourIsNext());
            // Nothing is made of counts and lengths alone.
            QVERIFY(read.size() < 100 * content.size() + 1000);
        }
    }
}
