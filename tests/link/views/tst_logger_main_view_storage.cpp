#include "tests/link/views/mainviewbench.h"

#include <QCheckBox>
#include <QDesktopServices>
#include <QDir>
#include <QHeaderView>
#include <QSignalSpy>
#include <QSpinBox>

using Formats = ConversionGlobal::OutputFormatFlags;

class tst_LoggerMainViewStorage : public QObject
{
    Q_OBJECT

public slots:
    void openedByTheDesktop(const QUrl &url) { m_opened += url.toLocalFile(); }

private slots:
    void init();
    void cleanup() { m_bench.reset(); }

    void theLastFileOfTheReplyStandsFirst();
    void sizesAreCutToMebibytes();
    void sizesSortAsNumbers();
    void theBytesOfASizeStandInItsRow();
    void aNewLoggersFilesAreRead();
    void theListIsReadAnew();
    void aRefreshKeepsTheSelection();
    void aFailedListIsToldAndTheOldOneStays_data();
    void aFailedListIsToldAndTheOldOneStays();
    void aLoggerThatGivesNoListIsAskedForNothingElse();
    void aLossDuringARefreshGivesNoBoxOfThePage();
    void aNewLoggersFailedListGivesNoBoxAndLeavesNoOldFiles();
    void hostileNamesAreShownAsPlainShortText();
    void freeSpaceNeedsTwoValues();
    void smallFilesAreSelected();
    void ofTenThousandFilesEverySecondOneIsSelected();
    void aSizeThatIsNoNumberIsNotSelected();
    void theSelectionIsSummedUp();

    void aDownloadCarriesNamesSizesFolderAndFormats();
    void aDownloadFollowsTheOrderOfTheTable();
    void anInvalidSizeIsTold();
    void aSizeThatCanNotBeReadStopsTheDownload_data();
    void aSizeThatCanNotBeReadStopsTheDownload();
    void aDownloadIntoAFolderThatIsGoneIsRefused();
    void aDownloadWithoutFolderLeavesItToTheWindow();

    void theStateDecidesOnTheButtons_data();
    void theStateDecidesOnTheButtons();
    void aLostLoggersListStaysAndSaysSo();

    void aFolderIsAddedAndChosen();
    void aFullListTakesNoFolder();
    void theLowestFreeNumberIsTold();
    void aFolderIsRemovedBehindAQuestion();
    void anUnconfirmedFolderStays();
    void aFolderThatIsGoneIsTold();
    void aFolderIsShownByTheDesktop();
    void aDesktopThatShowsNoFolderIsTold();
    void theChosenFolderIsRemembered();
    void theFormatsAreRemembered();
    void foreignBitsOfTheFormatsAreNoFormats();

private:
    QString madeFolder(const char *name)
    {
        const QString path = m_bench->folder.filePath(QString::fromLatin1(name));
        QDir().mkpath(path);
        return path;
    }
    void addFolder(const QString &path)
    {
        m_bench->prompt.picks = QStringList({path});
        m_bench->button("pushButton_add_selected_frolder_from_list")->click();
    }
    QComboBox *folderBox() { return m_bench->find<QComboBox>("comboBox_event_folders"); }

    std::unique_ptr<MainViewBench> m_bench;
    QStringList m_opened;
};

void tst_LoggerMainViewStorage::init()
{
    m_bench = std::make_unique<MainViewBench>();
    m_opened.clear();
}

void tst_LoggerMainViewStorage::theLastFileOfTheReplyStandsFirst()
{
    for (const char *name : {"a.rld", "b.rld", "c.rld"})
        m_bench->store(name, 1);
    m_bench->connectAndRead();
    QCOMPARE(m_bench->column(0), QStringList({QStringLiteral("c.rld"), QStringLiteral("b.rld"),
                                              QStringLiteral("a.rld")}));
    QCOMPARE(m_bench->table()->horizontalHeaderItem(0)->text(), QStringLiteral("Logfile"));
    QCOMPARE(m_bench->table()->horizontalHeaderItem(1)->text(), QStringLiteral("Size [MiB]"));
}

void tst_LoggerMainViewStorage::sizesAreCutToMebibytes()
{
    m_bench->store("a.rld", 1048575);
    m_bench->store("b.rld", 1048576);
    m_bench->store("c.rld", 5LL << 30);
    m_bench->connectAndRead();
    QCOMPARE(m_bench->column(1),
             QStringList({QStringLiteral("5120"), QStringLiteral("1"), QStringLiteral("0")}));
}

void tst_LoggerMainViewStorage::sizesSortAsNumbers()
{
    m_bench->store("a.rld", 100LL << 20);
    m_bench->store("b.rld", 20LL << 20);
    m_bench->store("c.rld", 2);
    m_bench->store("d.rld", 1); // of the same number of MiB
    m_bench->connectAndRead();
    m_bench->table()->sortByColumn(1, Qt::AscendingOrder);
    QCOMPARE(m_bench->column(0).join(QLatin1Char(' ')), QStringLiteral("d.rld c.rld b.rld a.rld"));
}

void tst_LoggerMainViewStorage::theBytesOfASizeStandInItsRow()
{
    m_bench->logger.setFault(
        QStringLiteral("malformed-reply@sys_get_logfiles=logfiles=a.rld,9007199254740993;"));
    m_bench->connectAndRead();
    QCOMPARE(m_bench->table()->item(0, 1)->data(Qt::UserRole).toLongLong(),
             Q_INT64_C(9007199254740993));
}

void tst_LoggerMainViewStorage::aNewLoggersFilesAreRead()
{
    m_bench->store("a.rld", 1);
    QVERIFY(m_bench->column(0).isEmpty());
    m_bench->connectLogger(APP_STA_CONN_LOG_ON);
    QTRY_COMPARE(m_bench->column(0), QStringList({QStringLiteral("a.rld")}));
    QVERIFY(m_bench->prompt.shown.isEmpty());
}

void tst_LoggerMainViewStorage::theListIsReadAnew()
{
    m_bench->store("a.rld", 1);
    m_bench->connectAndRead();
    m_bench->store("b.rld", 1);
    m_bench->logger.inspect([](simulator::LoggerSimulator &simulator) {
        simulator.state().discSpace = simulator::DiscSpace{1023, 2048};
    });
    m_bench->button("pushButton_refresh_storage")->click();
    QCOMPARE(m_bench->column(0), QStringList({QStringLiteral("b.rld"), QStringLiteral("a.rld")}));
    QCOMPARE(m_bench->label("label_disc_space_free"), QStringLiteral("0 [KiB]"));
    QCOMPARE(m_bench->label("label_disc_space_total"), QStringLiteral("2 [KiB]"));
}

void tst_LoggerMainViewStorage::aRefreshKeepsTheSelection()
{
    m_bench->store("a.rld", 1);
    m_bench->store("b.rld", 1);
    m_bench->connectAndRead();
    m_bench->select({1});
    m_bench->store("c.rld", 1);
    m_bench->button("pushButton_refresh_storage")->click();
    QCOMPARE(m_bench->selected(), QStringList({QStringLiteral("a.rld")}));
}

void tst_LoggerMainViewStorage::aFailedListIsToldAndTheOldOneStays_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("text");
    QTest::newRow("silence") << QStringLiteral("lost-reply@sys_get_logfiles")
                             << QStringLiteral("Warning|No CMD-Response. (sys_get_logfiles)");
    QTest::newRow("another key") << QStringLiteral("malformed-reply@sys_get_logfiles=foo=1")
                                 << QStringLiteral(
                                        "Warning|Unknown CMD-Response.\r\n Response: foo=1.");
    QTest::newRow("error") << QStringLiteral("error-reply@sys_get_logfiles=-1104")
                           << QStringLiteral("Warning|ERROR_CODE_UNKNOWN");
}

void tst_LoggerMainViewStorage::aFailedListIsToldAndTheOldOneStays()
{
    QFETCH(QString, fault);
    QFETCH(QString, text);
    m_bench->store("a.rld", 1);
    m_bench->connectAndRead();
    m_bench->logger.setFault(fault);
    m_bench->page->request_logfile_infos();
    QCOMPARE(m_bench->prompt.shown, QStringList({text}));
    QCOMPARE(m_bench->column(0), QStringList({QStringLiteral("a.rld")}));
}

void tst_LoggerMainViewStorage::aLoggerThatGivesNoListIsAskedForNothingElse()
{
    m_bench->connectAndRead();
    m_bench->logger.setFault(QStringLiteral("lost-reply@sys_get_logfiles"));
    const auto asked = m_bench->countCommands("sys_get_disc_space_info");
    m_bench->button("pushButton_refresh_storage")->click();
    QCOMPARE(m_bench->prompt.shown,
             QStringList({QStringLiteral("Warning|No CMD-Response. (sys_get_logfiles)")}));
    QCOMPARE(asked->load(), 0);
}

void tst_LoggerMainViewStorage::aLossDuringARefreshGivesNoBoxOfThePage()
{
    m_bench->store("a.rld", 1);
    m_bench->connectAndRead();
    m_bench->logger.setFault(QStringLiteral("drop-in-reply@sys_get_logfiles"));
    m_bench->button("pushButton_refresh_storage")->click();
    QVERIFY(!m_bench->handler.areBothConnected());
    QVERIFY(m_bench->prompt.shown.isEmpty());
    QCOMPARE(m_bench->column(0), QStringList({QStringLiteral("a.rld")}));
}

void tst_LoggerMainViewStorage::aNewLoggersFailedListGivesNoBoxAndLeavesNoOldFiles()
{
    m_bench->store("a.rld", 1);
    m_bench->connectAndRead();
    m_bench->handler.disconnectLogger();
    m_bench->logger.setFault(QStringLiteral("error-reply@sys_get_logfiles=-1104"));
    m_bench->connectLogger();
    QTRY_COMPARE(m_bench->label("label_storage_status"),
                 QStringLiteral("The list can't be read: ERROR_CODE_UNKNOWN"));
    QVERIFY(m_bench->column(0).isEmpty());
    QVERIFY(m_bench->prompt.shown.isEmpty());
}

void tst_LoggerMainViewStorage::hostileNamesAreShownAsPlainShortText()
{
    const QString longName(5000, QLatin1Char('x'));
    m_bench->logger.setFault(
        QStringLiteral("malformed-reply@sys_get_logfiles=logfiles=%1,1;<b>a</b>\t../b,2;no size;")
            .arg(longName));
    m_bench->connectAndRead();
    QCOMPARE(m_bench->column(0),
             QStringList({QStringLiteral("no size"), QStringLiteral("<b>a</b>\uFFFD../b"),
                          longName.left(255) + QStringLiteral("...")}));
    QCOMPARE(m_bench->column(1).first(), QStringLiteral("?"));
    m_bench->select({1});
    m_bench->prompt.answer = true;
    QSignalSpy downloads(m_bench->page.get(),
                         &Logger_Main_View::signal_start_dialog_tcp_file_transfer);
    m_bench->button("pushButton_download_selected_logfile")->click();
    QCOMPARE(downloads.value(0).value(0).toStringList(),
             QStringList({QStringLiteral("<b>a</b>\t../b")}));
}

void tst_LoggerMainViewStorage::freeSpaceNeedsTwoValues()
{
    m_bench->connectAndRead();
    QCOMPARE(m_bench->label("label_disc_space_total"), QStringLiteral("5 [MiB]"));
    m_bench->logger.setFault(
        QStringLiteral("malformed-reply@sys_get_disc_space_info=disc_space_info=77"));
    m_bench->page->gather_disc_space_info();
    QCOMPARE(m_bench->label("label_disc_space_free"), QStringLiteral("---"));
    QCOMPARE(m_bench->label("label_disc_space_total"), QStringLiteral("---"));
}

void tst_LoggerMainViewStorage::smallFilesAreSelected()
{
    m_bench->store("a.rld", (2 << 20) - 1);
    m_bench->store("b.rld", 2 << 20);
    m_bench->store("c.rld", 0);
    m_bench->connectAndRead();
    m_bench->select({1});
    m_bench->find<QSpinBox>("spinBox_select_files_less_than_mb")->setValue(2);
    m_bench->button("pushButton_select_all_files_less_than_mb")->click();
    QCOMPARE(m_bench->selected(), QStringList({QStringLiteral("c.rld"), QStringLiteral("a.rld")}));
}

void tst_LoggerMainViewStorage::ofTenThousandFilesEverySecondOneIsSelected()
{
    QString list;
    for (int i = 0; i < 10'003; ++i)
        list += QStringLiteral("%1.rld,%2;").arg(i).arg(i % 2 == 0 ? 1 : 1 << 30);
    m_bench->logger.setFault(QStringLiteral("malformed-reply@sys_get_logfiles=logfiles=") + list);
    m_bench->connectAndRead();
    m_bench->button("pushButton_select_all_files_less_than_mb")->click();
    QCOMPARE(m_bench->label("label_storage_status"),
             QStringLiteral("10000 files (3 more are not shown), 5000 selected: 4 [KiB]"));
}

void tst_LoggerMainViewStorage::aSizeThatIsNoNumberIsNotSelected()
{
    m_bench->logger.setFault(
        QStringLiteral("malformed-reply@sys_get_logfiles=logfiles=a.rld,-1;b.rld,;c.rld,x;"));
    m_bench->connectAndRead();
    m_bench->button("pushButton_select_all_files_less_than_mb")->click();
    QVERIFY(m_bench->selected().isEmpty());
}

void tst_LoggerMainViewStorage::theSelectionIsSummedUp()
{
    m_bench->logger.setFault(QStringLiteral(
        "malformed-reply@sys_get_logfiles=logfiles=a,9223372036854775807;b,9223372036854775807;"));
    m_bench->connectAndRead();
    m_bench->table()->selectAll();
    QCOMPARE(m_bench->label("label_storage_status"),
             QStringLiteral("2 files, 2 selected: 8589934591 [GiB]"));
}

void tst_LoggerMainViewStorage::aDownloadCarriesNamesSizesFolderAndFormats()
{
    m_bench->store("a.rld", 7);
    m_bench->store("b.rld", 3LL << 30);
    m_bench->connectAndRead();
    const QString folder = madeFolder("event");
    addFolder(folder);
    m_bench->button("checkBox_generate_mdf4")->click();
    m_bench->button("checkBox_generate_asc_zip")->click();
    m_bench->table()->selectAll();
    int downloads = 0;
    connect(m_bench->page.get(), &Logger_Main_View::signal_start_dialog_tcp_file_transfer, this,
            [&](const QStringList &names, const QList<qint64> &sizes, const QString &target,
                Formats formats) {
                ++downloads;
                QCOMPARE(names, QStringList({QStringLiteral("b.rld"), QStringLiteral("a.rld")}));
                QCOMPARE(sizes, QList<qint64>({3LL << 30, 7}));
                QCOMPARE(target, folder);
                QCOMPARE(formats, ConversionGlobal::MDF4 | ConversionGlobal::ASC_ZIP);
            });
    m_bench->button("pushButton_download_selected_logfile")->click();
    QCOMPARE(downloads, 1);
}

void tst_LoggerMainViewStorage::aDownloadFollowsTheOrderOfTheTable()
{
    m_bench->store("a.rld", 1);
    m_bench->store("b.rld", 1);
    m_bench->connectAndRead();
    m_bench->table()->sortByColumn(0, Qt::AscendingOrder);
    m_bench->select({1, 0});
    QSignalSpy downloads(m_bench->page.get(),
                         &Logger_Main_View::signal_start_dialog_tcp_file_transfer);
    m_bench->button("pushButton_download_selected_logfile")->click();
    QCOMPARE(downloads.value(0).value(0).toStringList(),
             QStringList({QStringLiteral("a.rld"), QStringLiteral("b.rld")}));
}

void tst_LoggerMainViewStorage::anInvalidSizeIsTold()
{
    m_bench->logger.setFault(
        QStringLiteral("malformed-reply@sys_get_logfiles=logfiles=a.rld,12k;"));
    m_bench->connectAndRead();
    m_bench->select({0});
    m_bench->button("pushButton_download_selected_logfile")->click();
    QCOMPARE(m_bench->prompt.shown,
             QStringList({QStringLiteral("Warning|Invalid filesize: a.rld / 12k bytes")}));
}

void tst_LoggerMainViewStorage::aSizeThatCanNotBeReadStopsTheDownload_data()
{
    QTest::addColumn<QString>("size");
    for (const char *size : {"-1", "9223372036854775808", "12k", ""})
        QTest::newRow(size) << QString::fromLatin1(size);
}

void tst_LoggerMainViewStorage::aSizeThatCanNotBeReadStopsTheDownload()
{
    QFETCH(QString, size);
    m_bench->logger.setFault(
        QStringLiteral("malformed-reply@sys_get_logfiles=logfiles=a%%1.rld,%1;b.rld,1;").arg(size));
    m_bench->connectAndRead();
    m_bench->table()->selectAll();
    const QSignalSpy downloads(m_bench->page.get(),
                               &Logger_Main_View::signal_start_dialog_tcp_file_transfer);
    m_bench->button("pushButton_download_selected_logfile")->click();
    QCOMPARE(m_bench->prompt.shown.size(), 1);
    QVERIFY(
        m_bench->prompt.shown.first().startsWith(QStringLiteral("Warning|Invalid filesize: a")));
    QVERIFY(m_bench->prompt.shown.first().endsWith(QStringLiteral(".rld / %1 bytes").arg(size)));
    QVERIFY(downloads.isEmpty());
}

void tst_LoggerMainViewStorage::aDownloadIntoAFolderThatIsGoneIsRefused()
{
    m_bench->store("a.rld", 1);
    m_bench->connectAndRead();
    const QString folder = madeFolder("event");
    addFolder(folder);
    QVERIFY(QDir().rmdir(folder));
    m_bench->select({0});
    const QSignalSpy downloads(m_bench->page.get(),
                               &Logger_Main_View::signal_start_dialog_tcp_file_transfer);
    m_bench->button("pushButton_download_selected_logfile")->click();
    QCOMPARE(m_bench->prompt.shown,
             QStringList({QStringLiteral("Information|Folder '%1' not existing.").arg(folder)}));
    QVERIFY(downloads.isEmpty());
}

void tst_LoggerMainViewStorage::aDownloadWithoutFolderLeavesItToTheWindow()
{
    m_bench->store("a.rld", 1);
    m_bench->connectAndRead();
    m_bench->select({0});
    QSignalSpy downloads(m_bench->page.get(),
                         &Logger_Main_View::signal_start_dialog_tcp_file_transfer);
    m_bench->button("pushButton_download_selected_logfile")->click();
    QCOMPARE(downloads.size(), 1);
    QCOMPARE(downloads.first().at(2).toString(), QString());
}

void tst_LoggerMainViewStorage::theStateDecidesOnTheButtons_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("isEnabled");
    QTest::newRow("disconnected") << 0 << false;
    QTest::newRow("init") << 1 << false;
    QTest::newRow("logging on") << 2 << true;
    QTest::newRow("logging off") << 3 << true;
    QTest::newRow("update") << 4 << false;
    QTest::newRow("transparent") << 5 << true;
}

void tst_LoggerMainViewStorage::theStateDecidesOnTheButtons()
{
    QFETCH(int, state);
    QFETCH(bool, isEnabled);
    m_bench->store("a.rld", 1);
    m_bench->connectAndRead();
    m_bench->controller.slotSetAppState(AppSta_t(state));
    QCOMPARE(m_bench->button("pushButton_refresh_storage")->isEnabled(), isEnabled);
    for (const char *needsFiles :
         {"pushButton_delete_selected_logfile", "pushButton_download_selected_logfile"}) {
        m_bench->table()->clearSelection();
        QVERIFY2(!m_bench->button(needsFiles)->isEnabled(), needsFiles);
        m_bench->select({0});
        QCOMPARE(m_bench->button(needsFiles)->isEnabled(), isEnabled);
    }
    QVERIFY(m_bench->button("pushButton_add_selected_frolder_from_list")->isEnabled());
}

void tst_LoggerMainViewStorage::aLostLoggersListStaysAndSaysSo()
{
    m_bench->store("a.rld", 1);
    QCOMPARE(m_bench->label("label_storage_status"), QStringLiteral("No logger is connected."));
    m_bench->connectAndRead();
    QCOMPARE(m_bench->label("label_storage_status"), QStringLiteral("1 file"));
    m_bench->handler.disconnectLogger();
    QCOMPARE(m_bench->label("label_storage_status"),
             QStringLiteral("1 file when the logger was last connected"));
    QCOMPARE(m_bench->label("label_disc_space_free"), QStringLiteral("---"));
    QCOMPARE(m_bench->column(0).size(), 1);
}

void tst_LoggerMainViewStorage::aFolderIsAddedAndChosen()
{
    const QString first = madeFolder("first");
    const QString second = madeFolder("second");
    addFolder(first);
    addFolder(second);
    QCOMPARE(m_bench->prompt.pickers,
             QStringList({QStringLiteral("Choose Event-Folder||"),
                          QStringLiteral("Choose Event-Folder|%1|").arg(first)}));
    QCOMPARE(folderBox()->count(), 2);
    QCOMPARE(folderBox()->currentText(), QDir::toNativeSeparators(second));
    QCOMPARE(m_bench->settings.eventFolders().value(1), second);
    QCOMPARE(m_bench->settings.lastEventFolder(), 1);
}

void tst_LoggerMainViewStorage::aFullListTakesNoFolder()
{
    for (int i = 0; i < 20; ++i)
        m_bench->settings.setEventFolder(i, QStringLiteral("/folder%1").arg(i));
    addFolder(madeFolder("one_more"));
    QCOMPARE(
        m_bench->prompt.shown,
        QStringList({QStringLiteral("Limit reached|Maximum number of Event-Folders reached.")}));
    QCOMPARE(m_bench->settings.eventFolders().size(), 20);
    QCOMPARE(m_bench->page->get_free_event_folder_nr(), -1);
}

void tst_LoggerMainViewStorage::theLowestFreeNumberIsTold()
{
    QCOMPARE(m_bench->page->get_free_event_folder_nr(), 0);
    m_bench->settings.setEventFolder(0, QStringLiteral("/a"));
    m_bench->settings.setEventFolder(2, QStringLiteral("/c"));
    QCOMPARE(m_bench->page->get_free_event_folder_nr(), 1);
}

void tst_LoggerMainViewStorage::aFolderIsRemovedBehindAQuestion()
{
    const QString folder = madeFolder("event");
    addFolder(folder);
    m_bench->prompt.answer = true;
    m_bench->button("pushButton_remove_selected_frolder_from_list")->click();
    QCOMPARE(m_bench->prompt.shown,
             QStringList({QStringLiteral("Remove-Folder|Remove folder from list? : \r\n Folder:%1")
                              .arg(folder)}));
    QCOMPARE(folderBox()->count(), 0);
    QVERIFY(m_bench->settings.eventFolders().isEmpty());
    QVERIFY(QDir(folder).exists());
    QVERIFY(!m_bench->button("pushButton_remove_selected_frolder_from_list")->isEnabled());
}

void tst_LoggerMainViewStorage::anUnconfirmedFolderStays()
{
    addFolder(madeFolder("event"));
    m_bench->prompt.answer = false;
    m_bench->button("pushButton_remove_selected_frolder_from_list")->click();
    QCOMPARE(folderBox()->count(), 1);
}

void tst_LoggerMainViewStorage::aFolderThatIsGoneIsTold()
{
    const QString folder = madeFolder("event");
    addFolder(folder);
    QVERIFY(QDir().rmdir(folder));
    m_bench->button("pushButton_show_folder")->click();
    QCOMPARE(m_bench->prompt.shown,
             QStringList({QStringLiteral("Information|Folder '%1' not existing.").arg(folder)}));
}

void tst_LoggerMainViewStorage::aFolderIsShownByTheDesktop()
{
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "openedByTheDesktop");
    const QString folder = madeFolder("event");
    addFolder(folder);
    m_bench->button("pushButton_show_folder")->click();
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    QCOMPARE(m_opened, QStringList({folder}));
}

void tst_LoggerMainViewStorage::aDesktopThatShowsNoFolderIsTold()
{
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "thereIsNoSuchSlot");
    const QString folder = madeFolder("event");
    addFolder(folder);
    m_bench->button("pushButton_show_folder")->click();
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    QCOMPARE(m_bench->prompt.shown,
             QStringList({QStringLiteral("Open Folder|The folder %1 can't be opened.")
                              .arg(QDir::toNativeSeparators(folder))}));
}

void tst_LoggerMainViewStorage::theChosenFolderIsRemembered()
{
    addFolder(madeFolder("first"));
    addFolder(madeFolder("second"));
    folderBox()->setCurrentIndex(0);
    QCOMPARE(m_bench->settings.lastEventFolder(), 0);
}

void tst_LoggerMainViewStorage::theFormatsAreRemembered()
{
    for (const char *box : {"checkBox_generate_mdf4", "checkBox_generate_blf",
                            "checkBox_generate_asc", "checkBox_generate_asc_zip"})
        m_bench->button(box)->click();
    QCOMPARE(m_bench->settings.autoExport(), 15);
    m_bench->button("checkBox_generate_blf")->click();
    QCOMPARE(m_bench->settings.autoExport(), 13);

    MainViewBench other;
    other.settings.setAutoExport(13);
    const Logger_Main_View page(&other.controller, QStringLiteral("page"), &other.handler,
                                other.prompt, other.settings);
    QStringList ticked;
    for (const char *box : {"checkBox_generate_mdf4", "checkBox_generate_blf",
                            "checkBox_generate_asc", "checkBox_generate_asc_zip"})
        if (page.findChild<QAbstractButton *>(QString::fromLatin1(box))->isChecked())
            ticked += QString::fromLatin1(box);
    QCOMPARE(ticked, QStringList({QStringLiteral("checkBox_generate_mdf4"),
                                  QStringLiteral("checkBox_generate_asc"),
                                  QStringLiteral("checkBox_generate_asc_zip")}));
}

void tst_LoggerMainViewStorage::foreignBitsOfTheFormatsAreNoFormats()
{
    m_bench->settings.setAutoExport(0x7FFFFFF0);
    const Logger_Main_View page(&m_bench->controller, QStringLiteral("page"), &m_bench->handler,
                                m_bench->prompt, m_bench->settings);
    const QList<QCheckBox *> boxes = page.findChildren<QCheckBox *>();
    for (const QCheckBox *box : boxes)
        if (box->objectName().startsWith(QStringLiteral("checkBox_generate")))
            QVERIFY(!box->isChecked());
}

QTEST_MAIN(tst_LoggerMainViewStorage)
#include "tst_logger_main_view_storage.moc"
