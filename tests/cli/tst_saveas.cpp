#include "cli/console.h"
#include "cli/inspectionrun.h"
#include "configurationimage.h"

#include <QtTest>

#include <functional>

Q_DECLARE_METATYPE(RecordVersions)

// Saving the configuration of any file as a current one.
class tst_SaveAs : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void everyOlderVersionIsSavedAsTheCurrentOne_data();
    void everyOlderVersionIsSavedAsTheCurrentOne();
    void tooLargeDividersAreSavedAsTheLargest();
    void aNewerVersionIsSavedWithWhatIsKnown();
    void aFileMayBeSavedOverItself();
    void aRawLogIsNotOverwritten();
    void aMissingFolderIsAFailure();
    void aDamagedConfigurationIsNotSaved();
    void aFailureLeavesTheTargetAsItWas();

private:
    [[nodiscard]] QString path(const char *name) const
    {
        return m_folder->filePath(QLatin1String(name));
    }
    QString write(const char *name, const QByteArray &bytes) const;
    static QByteArray contentOf(const QString &path);
    static ExitCode save(const QString &input, const QString &output);

    std::unique_ptr<QTemporaryDir> m_folder;
};

QString tst_SaveAs::write(const char *name, const QByteArray &bytes) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("no temporary file");
    return file.fileName();
}

QByteArray tst_SaveAs::contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

ExitCode tst_SaveAs::save(const QString &input, const QString &output)
{
    Console console;
    InspectionRun run(console, InspectionRun::Output::None);
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
    const QString input = write("old", inLog ? logFileOf(image) : configurationFileOf(image));
    const QString output = path("new.zdc");
    QCOMPARE(save(input, output), AllDone);
    const QByteArray expected = configurationFileOf(configurationImage({}, versions));
    QCOMPARE(contentOf(output).toHex(' '), expected.toHex(' '));
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
    QCOMPARE(save(write("in.zdc", configurationFileOf(tooLarge)), path("out.zdc")), AllDone);
    QCOMPARE(contentOf(path("out.zdc")).toHex(' '), configurationFileOf(largest).toHex(' '));
}

void tst_SaveAs::aNewerVersionIsSavedWithWhatIsKnown()
{
    RecordVersions newer;
    newer.terminal = 9;
    const QString input = write("in.rld", logFileOf(configurationImage(newer, newer)));
    QCOMPARE(save(input, path("out.zdc")), AllDone);
    QCOMPARE(contentOf(path("out.zdc")).toHex(' '),
             configurationFileOf(configurationImage({}, {})).toHex(' '));
}

void tst_SaveAs::aFileMayBeSavedOverItself()
{
    RecordVersions old;
    old.terminal = 4;
    const QString file = write("a.zdc", configurationFileOf(configurationImage(old, old)));
    QCOMPARE(save(file, file), AllDone);
    QCOMPARE(contentOf(file).toHex(' '),
             configurationFileOf(configurationImage({}, old)).toHex(' '));
}

void tst_SaveAs::aRawLogIsNotOverwritten()
{
    const QByteArray log = logFileOf(configurationImage({}, {}));
    const QString first = write("a.rld", log);
    const QString second = write("b.rld", log);
    QCOMPARE(save(first, second), SomeFileFailed);
    QCOMPARE(save(first, first), SomeFileFailed);
    QCOMPARE(contentOf(first), log);
    QCOMPARE(contentOf(second), log);
}

void tst_SaveAs::aMissingFolderIsAFailure()
{
    const QString input = write("a.zdc", configurationFileOf(configurationImage({}, {})));
    QCOMPARE(save(input, path("missing/out.zdc")), SomeFileFailed);
    QVERIFY(!QFileInfo::exists(path("missing")));
}

void tst_SaveAs::aDamagedConfigurationIsNotSaved()
{
    QByteArray image = configurationImage({}, {});
    image[0] = '\x7f'; // the frame reaches beyond the payload
    QCOMPARE(save(write("a.zdc", configurationFileOf(image)), path("out.zdc")), SomeFileFailed);
    QCOMPARE(save(write("a.rld", logFileOf(image)), path("out.zdc")), SomeFileFailed);
    QVERIFY(!QFileInfo::exists(path("out.zdc")));
}

void tst_SaveAs::aFailureLeavesTheTargetAsItWas()
{
    const QString target = write("out.zdc", "as it was");
    const QByteArray good = configurationFileOf(configurationImage({}, {}));
    QByteArray wrongSum = good;
    wrongSum[wrongSum.size() - 1] = char(wrongSum.back() + 1);
    QCOMPARE(save(write("a.zdc", wrongSum), target), SomeFileFailed);
    QCOMPARE(save(write("b.zdc", good.left(good.size() / 2)), target), SomeFileFailed);
    QCOMPARE(contentOf(target), QByteArray("as it was"));
}

QTEST_GUILESS_MAIN(tst_SaveAs)
#include "tst_saveas.moc"
