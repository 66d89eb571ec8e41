#include "cli/console.h"
#include "cli/inspectionrun.h"
#include "configurationimage.h"
#include "temporaryfiles.h"

#include <QtTest>

#include <memory>

Q_DECLARE_METATYPE(RecordVersions)

// Saving the configuration of any file as a current one.
class tst_SaveAs : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_files = std::make_unique<TemporaryFiles>(); }
    void everyOlderVersionIsSavedAsTheCurrentOne_data();
    void everyOlderVersionIsSavedAsTheCurrentOne();
    void tooLargeDividersAreSavedAsTheLargest();
    void aNewerVersionIsSavedWithWhatIsKnown();
    void aFileMayBeSavedOverItself();
    void aRawLogIsNotOverwritten();
    void whatIsNoConfigurationIsNotOverwritten_data();
    void whatIsNoConfigurationIsNotOverwritten();
    void aConfigurationOfAnyNameIsOverwritten();
    void aMissingFolderIsAFailure();
    void aDamagedConfigurationIsNotSaved();
    void aFailureLeavesTheTargetAsItWas();

private:
    static ExitCode save(const QString &input, const QString &output);

    std::unique_ptr<TemporaryFiles> m_files;
};

ExitCode tst_SaveAs::save(const QString &input, const QString &output)
{
    Console console;
    InspectionRun run(console);
    run.saveConfigurationAs(output);
    return run.run({input});
}

void tst_SaveAs::everyOlderVersionIsSavedAsTheCurrentOne_data()
{
    QTest::addColumn<RecordVersions>("versions");
    QTest::addColumn<bool>("inLog");
    const auto addRows = [](const char *name, int RecordVersions::*version, int oldest) {
        for (int value = oldest; value <= RecordVersions().*version; ++value) {
            RecordVersions versions;
            versions.*version = value;
            QTest::addRow("%s %d, configuration file", name, value) << versions << false;
            QTest::addRow("%s %d, raw log", name, value) << versions << true;
        }
    };
    addRows("terminal", &RecordVersions::terminal, 1);
    addRows("CAN channel", &RecordVersions::can, 1);
    addRows("A2L module", &RecordVersions::module, 1);
    addRows("A2L parameters", &RecordVersions::cfg, 1);
    addRows("DAQ list", &RecordVersions::daq, 1);
    addRows("ODT element", &RecordVersions::element, 1);
    addRows("event measurement", &RecordVersions::event, 1);
    addRows("ethernet", &RecordVersions::ethernet, 0);
    RecordVersions first{1, 1, 1, 1, 1, 1, 1, 0};
    QTest::addRow("all of the first, configuration file") << first << false;
    QTest::addRow("all of the first, raw log") << first << true;
}

void tst_SaveAs::everyOlderVersionIsSavedAsTheCurrentOne()
{
    QFETCH(RecordVersions, versions);
    QFETCH(bool, inLog);
    const QByteArray image = configurationImage(versions, versions);
    const QString input =
        m_files->write("old", inLog ? logFileOf(image) : configurationFileOf(image));
    const QString output = m_files->path("new.zdc");
    QCOMPARE(save(input, output), AllDone);
    const QByteArray expected = configurationFileOf(configurationImage({}, versions));
    QCOMPARE(TemporaryFiles::contentOf(output).toHex(' '), expected.toHex(' '));
}

void tst_SaveAs::tooLargeDividersAreSavedAsTheLargest()
{
    // The divider 40 of the filled channel stands behind six bytes that occur once.
    const QByteArray before = QByteArray::fromHex("00000004 01 00000000");
    const QByteArray image = configurationImage({}, {});
    const int at = image.indexOf(before) + before.size();
    QByteArray tooLarge = image;
    tooLarge.replace(at, 2, QByteArray::fromHex("03e8"));
    QByteArray largest = image;
    largest.replace(at, 2, QByteArray::fromHex("0200"));
    QCOMPARE(image.mid(at, 2).toHex(), QByteArray("0028"));
    QCOMPARE(
        save(m_files->write("in.zdc", configurationFileOf(tooLarge)), m_files->path("out.zdc")),
        AllDone);
    QCOMPARE(TemporaryFiles::contentOf(m_files->path("out.zdc")).toHex(' '),
             configurationFileOf(largest).toHex(' '));
}

void tst_SaveAs::aNewerVersionIsSavedWithWhatIsKnown()
{
    RecordVersions newer;
    newer.terminal = 9;
    const QString input = m_files->write("in.rld", logFileOf(configurationImage(newer, newer)));
    QCOMPARE(save(input, m_files->path("out.zdc")), AllDone);
    QCOMPARE(TemporaryFiles::contentOf(m_files->path("out.zdc")).toHex(' '),
             configurationFileOf(configurationImage({}, {})).toHex(' '));
}

void tst_SaveAs::aFileMayBeSavedOverItself()
{
    RecordVersions old;
    old.terminal = 4;
    const QString file = m_files->write("a.zdc", configurationFileOf(configurationImage(old, old)));
    QCOMPARE(save(file, file), AllDone);
    QCOMPARE(TemporaryFiles::contentOf(file).toHex(' '),
             configurationFileOf(configurationImage({}, old)).toHex(' '));
}

void tst_SaveAs::aRawLogIsNotOverwritten()
{
    const QByteArray log = logFileOf(configurationImage({}, {}));
    const QString first = m_files->write("a.rld", log);
    const QString second = m_files->write("b.rld", log);
    QCOMPARE(save(first, second), SomeFileFailed);
    QCOMPARE(save(first, first), SomeFileFailed);
    QCOMPARE(TemporaryFiles::contentOf(first), log);
    QCOMPARE(TemporaryFiles::contentOf(second), log);
}

void tst_SaveAs::whatIsNoConfigurationIsNotOverwritten_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("text") << QByteArray("These are my notes.");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("begins with a length that fits") << QByteArray("\0\0\0\x18"
                                                                  "ftypisom",
                                                                  12)
                                                           + QByteArray(20, '\0');
}

void tst_SaveAs::whatIsNoConfigurationIsNotOverwritten()
{
    QFETCH(QByteArray, bytes);
    const QString input = m_files->write("a.zdc", configurationFileOf(configurationImage({}, {})));
    const QString target = m_files->write("notes.txt", bytes);
    QCOMPARE(save(input, target), SomeFileFailed);
    QCOMPARE(TemporaryFiles::contentOf(target), bytes);
}

void tst_SaveAs::aConfigurationOfAnyNameIsOverwritten()
{
    RecordVersions old;
    old.terminal = 4;
    const QString input = m_files->write("a.zdc", configurationFileOf(configurationImage({}, {})));
    const QString target =
        m_files->write("settings", configurationFileOf(configurationImage(old, old)));
    QCOMPARE(save(input, target), AllDone);
    QCOMPARE(TemporaryFiles::contentOf(target), TemporaryFiles::contentOf(input));
}

void tst_SaveAs::aMissingFolderIsAFailure()
{
    const QString input = m_files->write("a.zdc", configurationFileOf(configurationImage({}, {})));
    QCOMPARE(save(input, m_files->path("missing/out.zdc")), SomeFileFailed);
    QVERIFY(!QFileInfo::exists(m_files->path("missing")));
}

void tst_SaveAs::aDamagedConfigurationIsNotSaved()
{
    QByteArray image = configurationImage({}, {});
    image[0] = '\x7f'; // the frame reaches beyond the payload
    QCOMPARE(save(m_files->write("a.zdc", configurationFileOf(image)), m_files->path("out.zdc")),
             SomeFileFailed);
    QCOMPARE(save(m_files->write("a.rld", logFileOf(image)), m_files->path("out.zdc")),
             SomeFileFailed);
    QVERIFY(!QFileInfo::exists(m_files->path("out.zdc")));
}

void tst_SaveAs::aFailureLeavesTheTargetAsItWas()
{
    const QString target = m_files->write("out.zdc", "as it was");
    const QByteArray good = configurationFileOf(configurationImage({}, {}));
    QByteArray wrongSum = good;
    wrongSum[wrongSum.size() - 1] = char(wrongSum.back() + 1);
    QCOMPARE(save(m_files->write("a.zdc", wrongSum), target), SomeFileFailed);
    QCOMPARE(save(m_files->write("b.zdc", good.left(good.size() / 2)), target), SomeFileFailed);
    QCOMPARE(TemporaryFiles::contentOf(target), QByteArray("as it was"));
}

QTEST_GUILESS_MAIN(tst_SaveAs)
#include "tst_saveas.moc"
