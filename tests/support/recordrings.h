#pragma once

#include "tests/support/fieldspans.h"
#include "tests/support/recordsamples.h"

#include <QObject>
#include <QVector>

// What the tests need to know of one record class, whatever the class. The sample is the record that
// its golden file holds.
struct RecordProbe
{
    QString golden;
    qint32 version; // of the stream; -1 without a frame
    QByteArray (*sampleBytes)();
    QString (*fieldAt)(int position); // in the sample's bytes
    bool (*readsAsSample)(QDataStream &in);
    QByteArray (*rewritten)(QDataStream &in); // reads a record and writes it
};

template <class R, int ListSize = 2>
RecordProbe probe(const QString &golden)
{
    RecordProbe probe;
    probe.golden = golden;
    probe.version = -1;
    if constexpr (record::isFramed<R>)
        probe.version = R::streamVersion;
    probe.sampleBytes = [] { return record::toBytes(sample::record<R>(ListSize)); };
    probe.fieldAt = [](int position) {
        return FieldSpans::fieldAt(sample::record<R>(ListSize), position);
    };
    probe.readsAsSample = [](QDataStream &in) {
        R read;
        in >> read;
        return read == sample::record<R>(ListSize);
    };
    probe.rewritten = [](QDataStream &in) {
        R read;
        in >> read;
        return record::toBytes(read);
    };
    return probe;
}

// The tests that every record must pass, run once for each probe.
class RecordRings : public QObject
{
    Q_OBJECT

public:
    explicit RecordRings(const QVector<RecordProbe> &probes)
        : m_probes(probes)
    {}

private slots:
    void goldenBytesAreWritten_data() { addRows(m_probes); }
    void goldenBytesAreWritten();
    void goldenBytesAreRead_data() { addRows(m_probes); }
    void goldenBytesAreRead();
    void whatWasWrittenReadsBackTheSame_data() { addRows(m_probes); }
    void whatWasWrittenReadsBackTheSame();
    void bytesOfAFutureVersionAreLeftInTheFrame_data() { addRows(framed()); }
    void bytesOfAFutureVersionAreLeftInTheFrame();
    void aFrameCutAtAnyByteLeavesItsNeighbourIntact_data() { addRows(framed()); }
    void aFrameCutAtAnyByteLeavesItsNeighbourIntact();
    void aStreamCutAtAnyByteReadsAsAnEmptyFrame_data() { addRows(framed()); }
    void aStreamCutAtAnyByteReadsAsAnEmptyFrame();
    void wordsThatLieLeaveTheNeighbourIntact_data() { addRows(framed()); }
    void wordsThatLieLeaveTheNeighbourIntact();

private:
    QVector<RecordProbe> framed() const;
    static void addRows(const QVector<RecordProbe> &probes);

    const QVector<RecordProbe> m_probes;
};
