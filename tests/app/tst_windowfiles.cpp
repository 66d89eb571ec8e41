#include "link/views/dialogdownloadoptions.h"
#include "tests/app/windowbench.h"

#include <QDialogButtonBox>
#include <QDropEvent>
#include <QMimeData>
#include <QTest>

// What the window does with the logger's files and with files that are dropped on it.
class tst_WindowFiles : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_bench = std::make_unique<WindowBench>(); }
    void cleanup() { m_bench.reset(); }

    void aDownloadNeedsAFolder();
    void aDownloadGoesToTheLoggersAddress();
    void droppedLogsAreConvertedAsTheDialogSays();
    void aDismissedDialogConvertsNothing();
    void aDroppedConfigurationIsOpened();
    void aDroppedConfigurationIsOpenedBehindAQuestionWhenConnected();
    void anOpenedFileIsTheOneToSave();
    void otherFilesAreNotTaken();
    void nothingIsTakenWhileABoxIsOpen();

private:
    // As the window system does; false if the window doesn't take the files.
    bool drop(const QStringList &paths)
    {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString &path : paths)
            urls += QUrl::fromLocalFile(path);
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QApplication::sendEvent(&m_bench->window(), &enter);
        QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        drop.ignore();
        if (enter.isAccepted())
            QApplication::sendEvent(&m_bench->window(), &drop);
        return drop.isAccepted();
    }
    DialogDownloadOptions *dialog()
    {
        return m_bench->window().findChild<DialogDownloadOptions *>();
    }

    std::unique_ptr<WindowBench> m_bench;
};

void tst_WindowFiles::aDownloadNeedsAFolder()
{
    m_bench->window().start_dialog_file_download({QStringLiteral("a.rld")}, {7}, QString(),
                                                 ConversionGlobal::MDF4);
    QCOMPARE(m_bench->prompt.shown,
             QStringList({QStringLiteral(
                 "No Event-Folder Selected|Please Select/Create a Event-Folder.")}));
    QVERIFY(m_bench->downloads.isEmpty());
}

void tst_WindowFiles::aDownloadGoesToTheLoggersAddress()
{
    m_bench->window();
    m_bench->addressBox()->setCurrentText(QStringLiteral(" 192.168.1.5"));
    m_bench->window().start_dialog_file_download({QStringLiteral("a.rld"), QStringLiteral("b")},
                                                 {7, 8}, QStringLiteral("/event"),
                                                 ConversionGlobal::MDF4 | ConversionGlobal::BLF);
    QCOMPARE(m_bench->downloads, QStringList({QStringLiteral("192.168.1.5 a.rld,b 7 /event 3")}));
}

void tst_WindowFiles::droppedLogsAreConvertedAsTheDialogSays()
{
    m_bench->window();
    m_bench->settings->setEventFolder(0, m_bench->folder.path());
    QVERIFY(drop({QStringLiteral("/logs/a.rld"), QStringLiteral("/logs/b.rld")}));
    QTRY_VERIFY(dialog());
    dialog()->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
    QCOMPARE(
        m_bench->conversions,
        QStringList({QStringLiteral("1 /logs/a.rld,/logs/b.rld %1").arg(m_bench->folder.path())}));
    QTRY_VERIFY(!dialog());
}

void tst_WindowFiles::aDismissedDialogConvertsNothing()
{
    m_bench->window();
    m_bench->settings->setEventFolder(0, m_bench->folder.path());
    QVERIFY(drop({QStringLiteral("/logs/a.rld")}));
    QTRY_VERIFY(dialog());
    dialog()->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Cancel)->click();
    QTRY_VERIFY(!dialog());
    QVERIFY(m_bench->conversions.isEmpty());
}

void tst_WindowFiles::aDroppedConfigurationIsOpened()
{
    QVERIFY(drop({QStringLiteral("/a.zdc")}));
    QTRY_COMPARE(m_bench->link->calls(), QStringList({QStringLiteral("load /a.zdc")}));
    QVERIFY(m_bench->prompt.shown.isEmpty());
}

void tst_WindowFiles::aDroppedConfigurationIsOpenedBehindAQuestionWhenConnected()
{
    m_bench->window();
    m_bench->connectByButton(true);
    m_bench->prompt.shown.clear();
    m_bench->prompt.answer = false;
    QVERIFY(drop({QStringLiteral("/a.zdc")}));
    QTRY_COMPARE(m_bench->prompt.shown,
                 QStringList({QStringLiteral("Info|Load/Write configuration to data logger?")}));
    QVERIFY(!m_bench->link->calls().contains(QStringLiteral("load /a.zdc")));
}

void tst_WindowFiles::anOpenedFileIsTheOneToSave()
{
    QVERIFY(drop({QStringLiteral("/a.zdc")}));
    QTRY_VERIFY(!m_bench->link->calls().isEmpty());
    m_bench->window().on_pushButton_save_configuration_clicked();
    QCOMPARE(m_bench->link->calls().last(), QStringLiteral("save /a.zdc"));
}

void tst_WindowFiles::otherFilesAreNotTaken()
{
    QVERIFY(!drop({QStringLiteral("/a.png")}));
    QVERIFY(!drop({QStringLiteral("/a.rld"), QStringLiteral("/b.zdc")}));
    QVERIFY(!drop({}));
}

void tst_WindowFiles::nothingIsTakenWhileABoxIsOpen()
{
    m_bench->window();
    QVERIFY(drop({QStringLiteral("/logs/a.rld")}));
    QTRY_VERIFY(dialog() && dialog()->isVisible());
    QVERIFY(!drop({QStringLiteral("/a.zdc")}));
    dialog()->reject();
    QVERIFY(drop({QStringLiteral("/a.zdc")}));
}

QTEST_MAIN(tst_WindowFiles)
#include "tst_windowfiles.moc"
