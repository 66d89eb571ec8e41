#include "can/views/dlcspinbox.h"

#include <QSignalSpy>
#include <QTest>

class tst_DlcSpinBox : public QObject
{
    Q_OBJECT

private slots:
    void classicFramesHaveUpToEightBytes();
    void stepsFollowTheLengthsOfTheFormat();
    void aLengthBetweenBecomesTheNextOneWhenTyped();
    void theFormatCutsWhatItLacks();

private:
    static QVector<int> lengthsUpwards(DlcSpinBox &box)
    {
        QVector<int> lengths;
        box.setValue(0);
        do {
            lengths.append(box.value());
            box.stepUp();
        } while (box.value() != lengths.last());
        return lengths;
    }
};

void tst_DlcSpinBox::classicFramesHaveUpToEightBytes()
{
    DlcSpinBox box;
    QCOMPARE(lengthsUpwards(box), (QVector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8}));
}

void tst_DlcSpinBox::stepsFollowTheLengthsOfTheFormat()
{
    DlcSpinBox box;
    box.setFormat(can::FrameFormat::Fd);
    QCOMPARE(lengthsUpwards(box),
             (QVector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 16, 20, 24, 32, 48, 64}));
    box.stepDown();
    QCOMPARE(box.value(), 48);
}

void tst_DlcSpinBox::aLengthBetweenBecomesTheNextOneWhenTyped()
{
    DlcSpinBox box;
    box.setFormat(can::FrameFormat::Fd);
    box.selectAll();
    QTest::keyClicks(&box, QStringLiteral("33"));
    QTest::keyClick(&box, Qt::Key_Return);
    QCOMPARE(box.value(), 48);
}

void tst_DlcSpinBox::theFormatCutsWhatItLacks()
{
    DlcSpinBox box;
    box.setFormat(can::FrameFormat::Fd);
    box.setValue(64);
    const QSignalSpy changed(&box, QOverload<int>::of(&QSpinBox::valueChanged));
    box.setFormat(can::FrameFormat::Classic);
    QCOMPARE(box.value(), 8);
    QCOMPARE(changed.size(), 1);
}

QTEST_MAIN(tst_DlcSpinBox)
#include "tst_dlcspinbox.moc"
