#include "app/ui/filedialogs.h"
#include "tests/app/scriptedprompt.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

class tst_FileDialogs : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void theChosenPathIsWhereTheNextOneBegins_data();
    void theChosenPathIsWhereTheNextOneBegins();
    void theFallbackKeyServesUntilTheKeyHasItsOwn();
    void cancellingKeepsTheKey();
    void severalFilesRememberTheFirst();
    void aFolderBeginsInTheFolderOfARememberedFile();
    void aProposedNameTakesThePlaceOfTheRememberedFile_data();
    void aProposedNameTakesThePlaceOfTheRememberedFile();
    void aProposedNameStandsAloneTheFirstTime();
    void pathsLieInTheProgramsSettings();

private:
    QString chosen(const QString &kind, const std::optional<QString> &fallback = {});

    // Where a picker begins that proposes "list.txt".
    QString proposedStart()
    {
        (void)FileDialogs(*m_prompt).getSaveFileNameWithKey(
            QStringLiteral("key"), QStringLiteral("other"), QStringLiteral("title"),
            QStringLiteral("Text (*.txt)"), QStringLiteral("list.txt"));
        return m_prompt->pickers.value(0).section(QLatin1Char('|'), 1, 1);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ScriptedPrompt> m_prompt;
};

void tst_FileDialogs::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder->path());
    QSettings(QStringLiteral("ZELVO"), QStringLiteral("ZDS")).clear();
    m_prompt = std::make_unique<ScriptedPrompt>();
}

QString tst_FileDialogs::chosen(const QString &kind, const std::optional<QString> &fallback)
{
    FileDialogs dialogs(*m_prompt);
    const QString key = QStringLiteral("key");
    const QString title = QStringLiteral("title");
    const QString filter = QStringLiteral("config (*.zdc)");
    if (kind == QStringLiteral("folder"))
        return dialogs.getExistingDirWithKey(key, fallback, title);
    if (kind == QStringLiteral("open"))
        return dialogs.getOpenFileNameWithKey(key, fallback, title, filter);
    return dialogs.getSaveFileNameWithKey(key, fallback, title, filter);
}

void tst_FileDialogs::theChosenPathIsWhereTheNextOneBegins_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("filter");
    QTest::newRow("folder") << QStringLiteral("folder") << QString();
    QTest::newRow("open") << QStringLiteral("open") << QStringLiteral("config (*.zdc)");
    QTest::newRow("save") << QStringLiteral("save") << QStringLiteral("config (*.zdc)");
}

void tst_FileDialogs::theChosenPathIsWhereTheNextOneBegins()
{
    QFETCH(QString, kind);
    QFETCH(QString, filter);
    m_prompt->picks = QStringList({QStringLiteral("/a/b"), QStringLiteral("/c/d")});
    QCOMPARE(chosen(kind), QStringLiteral("/a/b"));
    QCOMPARE(chosen(kind), QStringLiteral("/c/d"));
    QCOMPARE(m_prompt->pickers, QStringList({QStringLiteral("title||") + filter,
                                             QStringLiteral("title|/a/b|") + filter}));
}

void tst_FileDialogs::theFallbackKeyServesUntilTheKeyHasItsOwn()
{
    QSettings(QStringLiteral("ZELVO"), QStringLiteral("ZDS"))
        .setValue(QStringLiteral("other"), QStringLiteral("/fallback"));
    m_prompt->picks = QStringList({QStringLiteral("/own"), QStringLiteral("/own")});
    chosen(QStringLiteral("folder"), QStringLiteral("other"));
    chosen(QStringLiteral("folder"), QStringLiteral("other"));
    QCOMPARE(m_prompt->pickers,
             QStringList({QStringLiteral("title|/fallback|"), QStringLiteral("title|/own|")}));
}

void tst_FileDialogs::cancellingKeepsTheKey()
{
    m_prompt->picks = QStringList({QStringLiteral("/a")});
    chosen(QStringLiteral("open"));
    QVERIFY(chosen(QStringLiteral("open")).isEmpty());
    chosen(QStringLiteral("open"));
    QCOMPARE(m_prompt->pickers.last(), QStringLiteral("title|/a|config (*.zdc)"));
}

void tst_FileDialogs::severalFilesRememberTheFirst()
{
    FileDialogs dialogs(*m_prompt);
    m_prompt->severalPicks = QStringList({QStringLiteral("/a/1.rld"), QStringLiteral("/a/2.rld")});
    const auto pick = [&] {
        return dialogs.getOpenFileNamesWithKey(QStringLiteral("key"), {}, QStringLiteral("title"),
                                               QStringLiteral("raw-logfile (*.rld)"));
    };
    QCOMPARE(pick(), m_prompt->severalPicks);
    pick();
    QCOMPARE(m_prompt->pickers.last(), QStringLiteral("title|/a/1.rld|raw-logfile (*.rld)"));
}

void tst_FileDialogs::aFolderBeginsInTheFolderOfARememberedFile()
{
    const QString file = m_folder->filePath(QStringLiteral("log.rld"));
    QFile log(file);
    QVERIFY(log.open(QIODevice::WriteOnly));
    m_prompt->picks = QStringList({file});
    chosen(QStringLiteral("open"));
    chosen(QStringLiteral("folder"));
    QCOMPARE(m_prompt->pickers.last(), QStringLiteral("title|%1|").arg(m_folder->path()));
}

void tst_FileDialogs::aProposedNameTakesThePlaceOfTheRememberedFile_data()
{
    QTest::addColumn<QString>("remembered"); // in the folder
    QTest::newRow("a file") << QStringLiteral("car.dbc");
    QTest::newRow("a folder") << QString();
}

void tst_FileDialogs::aProposedNameTakesThePlaceOfTheRememberedFile()
{
    QFETCH(QString, remembered);
    QSettings(QStringLiteral("ZELVO"), QStringLiteral("ZDS"))
        .setValue(QStringLiteral("other"), m_folder->filePath(remembered));
    QCOMPARE(proposedStart(), m_folder->filePath(QStringLiteral("list.txt")));
}

void tst_FileDialogs::aProposedNameStandsAloneTheFirstTime()
{
    QCOMPARE(proposedStart(), QStringLiteral("list.txt"));
}

void tst_FileDialogs::pathsLieInTheProgramsSettings()
{
    m_prompt->picks = QStringList({QStringLiteral("/a/b")});
    chosen(QStringLiteral("open"));
    const QSettings settings(QStringLiteral("ZELVO"), QStringLiteral("ZDS"));
    QCOMPARE(settings.value(QStringLiteral("key")).toString(), QStringLiteral("/a/b"));
}

QTEST_GUILESS_MAIN(tst_FileDialogs)
#include "tst_filedialogs.moc"
