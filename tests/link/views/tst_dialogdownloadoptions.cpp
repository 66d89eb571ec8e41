#include "app/state/usersettings.h"
#include "link/views/dialogdownloadoptions.h"
#include "tests/app/scriptedprompt.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

class tst_DialogDownloadOptions : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_dialog.reset(); }

    void theFoldersAndFormatsOfTheSettingsAreOffered();
    void withoutRememberedFormatsMdf4IsTicked();
    void withoutAFolderNothingIsConverted();
    void aFolderThatIsGoneIsTold();
    void withoutAFormatNothingIsConverted();
    void theChoiceIsHandedOut();
    void theFormatsOfDownloadsStayAsTheyAre();
    void anAddedFolderIsOneOfTheSettings();
    void longListsOfFilesAreCut();
    void everyControlHasANameAndAToolTip();

private:
    DialogDownloadOptions &dialog()
    {
        if (!m_dialog)
            m_dialog = std::make_unique<DialogDownloadOptions>(m_files, *m_settings, m_prompt);
        return *m_dialog;
    }
    QCheckBox *box(const char *format)
    {
        return dialog().findChild<QCheckBox *>(QStringLiteral("checkBox_generate_")
                                               + QString::fromLatin1(format));
    }
    void clickOk()
    {
        dialog().findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<UserSettings> m_settings;
    ScriptedPrompt m_prompt;
    QStringList m_files;
    std::unique_ptr<DialogDownloadOptions> m_dialog;
};

void tst_DialogDownloadOptions::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder->path());
    m_settings = std::make_unique<UserSettings>(m_folder->filePath(QStringLiteral("usr.ini")));
    m_prompt.shown.clear();
    m_files = QStringList({QStringLiteral("/logs/a.rld")});
}

void tst_DialogDownloadOptions::theFoldersAndFormatsOfTheSettingsAreOffered()
{
    m_settings->setEventFolder(0, QStringLiteral("/a"));
    m_settings->setEventFolder(4, QStringLiteral("/b"));
    m_settings->setLastEventFolder(4);
    m_settings->setAutoExport(ConversionGlobal::BLF | ConversionGlobal::ASC);
    QCOMPARE(dialog().findChild<QComboBox *>()->count(), 2);
    QCOMPARE(dialog().folder(), QStringLiteral("/b"));
    QCOMPARE(dialog().formats(), ConversionGlobal::BLF | ConversionGlobal::ASC);
}

void tst_DialogDownloadOptions::withoutRememberedFormatsMdf4IsTicked()
{
    QCOMPARE(dialog().formats(), ConversionGlobal::OutputFormatFlags(ConversionGlobal::MDF4));
}

void tst_DialogDownloadOptions::withoutAFolderNothingIsConverted()
{
    const QSignalSpy accepted(&dialog(), &QDialog::accepted);
    clickOk();
    QCOMPARE(m_prompt.shown,
             QStringList({QStringLiteral(
                 "No Event-Folder Selected|Please Select/Create a Event-Folder.")}));
    QVERIFY(accepted.isEmpty());
}

void tst_DialogDownloadOptions::aFolderThatIsGoneIsTold()
{
    m_settings->setEventFolder(0, m_folder->filePath(QStringLiteral("gone")));
    const QSignalSpy accepted(&dialog(), &QDialog::accepted);
    clickOk();
    QCOMPARE(m_prompt.shown, QStringList({QStringLiteral("Information|Folder '%1' not existing.")
                                              .arg(m_folder->filePath(QStringLiteral("gone")))}));
    QVERIFY(accepted.isEmpty());
}

void tst_DialogDownloadOptions::withoutAFormatNothingIsConverted()
{
    m_settings->setEventFolder(0, m_folder->path());
    box("mdf4")->setChecked(false);
    const QSignalSpy accepted(&dialog(), &QDialog::accepted);
    clickOk();
    QCOMPARE(
        m_prompt.shown,
        QStringList({QStringLiteral("No Format Selected|Please select at least one format.")}));
    QVERIFY(accepted.isEmpty());
}

void tst_DialogDownloadOptions::theChoiceIsHandedOut()
{
    m_settings->setEventFolder(0, m_folder->path());
    box("asc_zip")->click();
    const QSignalSpy accepted(&dialog(), &QDialog::accepted);
    clickOk();
    QCOMPARE(accepted.size(), 1);
    QCOMPARE(dialog().folder(), m_folder->path());
    QCOMPARE(dialog().formats(), ConversionGlobal::MDF4 | ConversionGlobal::ASC_ZIP);
}

void tst_DialogDownloadOptions::theFormatsOfDownloadsStayAsTheyAre()
{
    m_settings->setEventFolder(0, m_folder->path());
    m_settings->setAutoExport(ConversionGlobal::BLF);
    box("mdf4")->click();
    clickOk();
    QCOMPARE(m_settings->autoExport(), int(ConversionGlobal::BLF));
}

void tst_DialogDownloadOptions::anAddedFolderIsOneOfTheSettings()
{
    m_prompt.picks = QStringList({m_folder->path()});
    dialog()
        .findChild<QPushButton *>(QStringLiteral("pushButton_add_selected_frolder_from_list"))
        ->click();
    QCOMPARE(dialog().folder(), m_folder->path());
    QCOMPARE(m_settings->eventFolders().value(0), m_folder->path());
}

void tst_DialogDownloadOptions::longListsOfFilesAreCut()
{
    m_files.clear();
    for (int i = 0; i < 8; ++i)
        m_files += QStringLiteral("/logs/%1.rld").arg(i);
    QCOMPARE(dialog().findChild<QLabel *>(QStringLiteral("label_files"))->text(),
             QStringLiteral("0.rld, 1.rld, 2.rld, 3.rld, 4.rld, and 3 more"));
}

void tst_DialogDownloadOptions::everyControlHasANameAndAToolTip()
{
    int controls = 0;
    const QList<QWidget *> widgets = dialog().findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        if (!widget->objectName().startsWith(QStringLiteral("pushButton"))
            && !widget->objectName().startsWith(QStringLiteral("checkBox"))
            && !widget->objectName().startsWith(QStringLiteral("comboBox")))
            continue;
        ++controls;
        QVERIFY2(!widget->accessibleName().isEmpty(), qPrintable(widget->objectName()));
        QVERIFY2(!widget->toolTip().isEmpty(), qPrintable(widget->objectName()));
    }
    QCOMPARE(controls, 8);
}

QTEST_MAIN(tst_DialogDownloadOptions)
#include "tst_dialogdownloadoptions.moc"
