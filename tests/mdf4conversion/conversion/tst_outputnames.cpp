#include "MDF4Conversion/outputnames.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class tst_OutputNames : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void theOutputIsCalledLikeTheInput();
    void onlyTheLastSuffixIsReplaced();
    void anExistingOutputGetsANumber();
    void aNameIsNeverGivenTwice();
    void theCounterIsSharedByAllFiles();
    void aTakenNumberIsSkipped();
    void temporaryFoldersAreNumbered();
    void anExistingTemporaryFolderIsSkipped();
    void namesWithPercentSignsAreKept();

private:
    QString path(const char *name) const { return m_folder->filePath(QString::fromUtf8(name)); }
    void make(const char *name) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QString output(OutputNames &names, const char *input) const
    {
        return names.outputFile(QString::fromUtf8(input), m_folder->path());
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_OutputNames::theOutputIsCalledLikeTheInput()
{
    OutputNames names;
    QCOMPARE(output(names, "/logs/Drive.rld"), path("Drive.mf4"));
}

void tst_OutputNames::onlyTheLastSuffixIsReplaced()
{
    OutputNames names;
    QCOMPARE(output(names, "Drive.2026.11.rld"), path("Drive.2026.11.mf4"));
}

void tst_OutputNames::anExistingOutputGetsANumber()
{
    make("Drive.mf4");
    OutputNames names;
    QCOMPARE(output(names, "Drive.rld"), path("Drive_1.mf4"));
}

void tst_OutputNames::aNameIsNeverGivenTwice()
{
    OutputNames names;
    QCOMPARE(output(names, "a/Drive.rld"), path("Drive.mf4"));
    QCOMPARE(output(names, "b/Drive.rld"), path("Drive_1.mf4"));
}

void tst_OutputNames::theCounterIsSharedByAllFiles()
{
    make("A.mf4");
    make("B.mf4");
    OutputNames names;
    QCOMPARE(output(names, "A.rld"), path("A_1.mf4"));
    QCOMPARE(output(names, "B.rld"), path("B_2.mf4"));
}

void tst_OutputNames::aTakenNumberIsSkipped()
{
    make("A.mf4");
    make("A_1.mf4");
    OutputNames names;
    QCOMPARE(output(names, "A.rld"), path("A_2.mf4"));
}

void tst_OutputNames::temporaryFoldersAreNumbered()
{
    OutputNames names;
    QCOMPARE(names.temporaryDir(m_folder->path()), path("tmp_1"));
    QCOMPARE(names.temporaryDir(m_folder->path()), path("tmp_2"));
}

void tst_OutputNames::anExistingTemporaryFolderIsSkipped()
{
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("tmp_1")));
    OutputNames names;
    QCOMPARE(names.temporaryDir(m_folder->path()), path("tmp_2"));
}

void tst_OutputNames::namesWithPercentSignsAreKept()
{
    make("100%2.mf4");
    OutputNames names;
    QCOMPARE(output(names, "100%2.rld"), path("100%2_1.mf4"));
}

QTEST_GUILESS_MAIN(tst_OutputNames)
#include "tst_outputnames.moc"
