#include "MDF4Conversion/conversionbatch.h"
#include "MDF4Conversion/outputnames.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

const ConversionGlobal::OutputFormatFlags allFormats =
    ConversionGlobal::MDF4 | ConversionGlobal::BLF | ConversionGlobal::ASC
    | ConversionGlobal::ASC_ZIP;

} // namespace

class tst_ConversionBatch : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void formatsOfAFileComeInAscendingOrder();
    void filesComeInTheirOrder();
    void filesOfOneBaseNameGetDistinctMdf4s();
    void anExistingMdf4IsNotPlannedAgain();
    void otherFormatsAreNamedAfterTheirInput();
    void otherFormatsShareOneTemporaryFolder();
    void bitsWithoutAFormatPlanNothing();
    void titlesNameTheFormatsInTheirOrder();
    void labelsCountTheFiles();

private:
    // Formats and names of the outputs, "1 a.mf4".
    QStringList planned(const QStringList &files, ConversionGlobal::OutputFormatFlags formats)
    {
        OutputNames names;
        QStringList list;
        for (const PlannedConversion &conversion :
             conversionbatch::plan(files, m_folder->path(), formats, names)) {
            list +=
                QStringLiteral("%1 %2").arg(QString::number(conversion.format),
                                            conversion.outputFile.mid(m_folder->path().size() + 1));
        }
        return list;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_ConversionBatch::formatsOfAFileComeInAscendingOrder()
{
    QCOMPARE(planned({text("/logs/a.rld")}, allFormats),
             QStringList({text("1 a.mf4"), text("2 a.blf"), text("4 a.asc"), text("8 a.asc.zip")}));
}

void tst_ConversionBatch::filesComeInTheirOrder()
{
    QCOMPARE(planned({text("b.rld"), text("a.rld")}, ConversionGlobal::MDF4),
             QStringList({text("1 b.mf4"), text("1 a.mf4")}));
}

void tst_ConversionBatch::filesOfOneBaseNameGetDistinctMdf4s()
{
    QCOMPARE(planned({text("x/a.rld"), text("y/a.rld")}, ConversionGlobal::MDF4),
             QStringList({text("1 a.mf4"), text("1 a_1.mf4")}));
}

void tst_ConversionBatch::anExistingMdf4IsNotPlannedAgain()
{
    QFile existing(m_folder->filePath(text("a.mf4")));
    QVERIFY(existing.open(QIODevice::WriteOnly));
    QCOMPARE(planned({text("a.rld")}, ConversionGlobal::MDF4), QStringList(text("1 a_1.mf4")));
}

void tst_ConversionBatch::otherFormatsAreNamedAfterTheirInput()
{
    QCOMPARE(planned({text("x/a.rld"), text("y/a.rld")}, ConversionGlobal::BLF),
             QStringList({text("2 a.blf"), text("2 a.blf")}));
}

void tst_ConversionBatch::otherFormatsShareOneTemporaryFolder()
{
    OutputNames names;
    const auto plan =
        conversionbatch::plan({text("a.rld"), text("b.rld")}, m_folder->path(), allFormats, names);
    QStringList folders;
    for (const PlannedConversion &conversion : plan)
        folders += conversion.temporaryDir.mid(m_folder->path().size() + 1);
    QCOMPARE(folders.join(QLatin1Char(' ')), text("tmp_1 tmp tmp tmp tmp_2 tmp tmp tmp"));
}

void tst_ConversionBatch::bitsWithoutAFormatPlanNothing()
{
    const auto bits = ConversionGlobal::OutputFormatFlags(QFlag(int(0xFFFFFFF0U)));
    QCOMPARE(planned({text("a.rld")}, bits), QStringList());
}

void tst_ConversionBatch::titlesNameTheFormatsInTheirOrder()
{
    QCOMPARE(conversionbatch::title(allFormats), text(" Converting to .asc .blf .mf4 .asc.zip "));
    QCOMPARE(conversionbatch::title(ConversionGlobal::MDF4), text(" Converting to .mf4 "));
}

void tst_ConversionBatch::labelsCountTheFiles()
{
    QCOMPARE(conversionbatch::sequentialLabel(2, 3), text("...converting file 2 of 3..."));
    QCOMPARE(conversionbatch::parallelLabel(3), text("...converting 3 files..."));
    QCOMPARE(conversionbatch::finishedLabel(3), text("...conversion of 3 file(s) finished..."));
}

QTEST_GUILESS_MAIN(tst_ConversionBatch)
#include "tst_conversionbatch.moc"
