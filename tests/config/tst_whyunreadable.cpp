#include "config/whyunreadable.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class tst_WhyUnreadable : public QObject
{
    Q_OBJECT

private slots:
    void aFileThatCanBeOpenedHasNoReason();
    void aMissingFileDoesNotExist();
    void aFolderIsAFolder();
    void aFileWithoutPermissionIsRefusedByTheSystem();

private:
    QString madeFile()
    {
        const QString path = m_folder.filePath(QStringLiteral("car.dbc"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            qFatal("%s can't be written", qPrintable(path));
        return path;
    }

    QTemporaryDir m_folder;
};

void tst_WhyUnreadable::aFileThatCanBeOpenedHasNoReason()
{
    QCOMPARE(whyUnreadable(madeFile()), QString());
}

void tst_WhyUnreadable::aMissingFileDoesNotExist()
{
    QCOMPARE(whyUnreadable(m_folder.filePath(QStringLiteral("none.dbc"))),
             QStringLiteral("the file does not exist"));
}

void tst_WhyUnreadable::aFolderIsAFolder()
{
    QCOMPARE(whyUnreadable(m_folder.path()), QStringLiteral("it is a folder"));
}

void tst_WhyUnreadable::aFileWithoutPermissionIsRefusedByTheSystem()
{
    const QString path = madeFile();
    QFile file(path);
    QVERIFY(file.setPermissions({}));
    if (file.open(QIODevice::ReadOnly))
        QSKIP("This user may read everything.");
    QCOMPARE(whyUnreadable(path), file.errorString());
    QVERIFY(!whyUnreadable(path).isEmpty());
}

QTEST_APPLESS_MAIN(tst_WhyUnreadable)
#include "tst_whyunreadable.moc"
