#include "app/state/usersettings.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

class tst_UserSettings : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void theDefaultsHoldWithoutAFile();
    void aFileThatCannotBeReadIsLoggedAndDefaultsHold();
    void aPipeIsNotWaitedFor();
    void aGiantFileIsNotRead();
    void theStoredValuesAreRead();
    void aNumberThatIsNoneIsZero();
    void whatIsSetIsRead();
    void aValueThatStaysTheSameIsNotWritten();
    void aRemovedEventFolderIsGone();
    void eventFoldersBeyondTheLimitAreIgnored();
    void anEmptyPathIsNoEventFolder();
    void theFileLiesNextToTheExecutable();
    void theFileLiesInTheUsersFolderWhereTheProgramsCannotBeWritten();
    void theUsersFolderIsMadeWhenItIsNeeded();
    void aFolderThatCannotBeWrittenKeepsTheValueAndFails();

private:
    void write(const QByteArray &text) const;
    QByteArray written() const;

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

void tst_UserSettings::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_path = m_folder->filePath(QStringLiteral("usr_settings.ini"));
}

void tst_UserSettings::write(const QByteArray &text) const
{
    QFile file(m_path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), qint64(text.size()));
}

QByteArray tst_UserSettings::written() const
{
    QFile file(m_path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

void tst_UserSettings::theDefaultsHoldWithoutAFile()
{
    const UserSettings settings(m_path);
    QCOMPARE(settings.ipAddress(), QStringLiteral("192.168.2.1"));
    QCOMPARE(settings.lastEventFolder(), 0);
    QVERIFY(settings.eventFolders().isEmpty());
    QCOMPARE(settings.autoExport(), 0);
    QVERIFY(!QFile::exists(m_path));
}

void tst_UserSettings::aFileThatCannotBeReadIsLoggedAndDefaultsHold()
{
    QTest::ignoreMessage(QtDebugMsg, qPrintable(QStringLiteral("Can't load ") + m_path));
    QVERIFY(QDir().mkpath(m_path));
    QCOMPARE(UserSettings(m_path).ipAddress(), QStringLiteral("192.168.2.1"));
}

void tst_UserSettings::aPipeIsNotWaitedFor()
{
#ifdef Q_OS_UNIX
    QCOMPARE(mkfifo(QFile::encodeName(m_path).constData(), 0600), 0);
    QTest::ignoreMessage(QtDebugMsg, qPrintable(QStringLiteral("Can't load ") + m_path));
    QCOMPARE(UserSettings(m_path).ipAddress(), QStringLiteral("192.168.2.1"));
#else
    QSKIP("no named pipes in folders");
#endif
}

void tst_UserSettings::aGiantFileIsNotRead()
{
    write("[general]\nip_address = 10.0.0.1\n");
    QVERIFY(QFile::resize(m_path, 1024 * 1024 + 1));
    QTest::ignoreMessage(QtDebugMsg, qPrintable(QStringLiteral("Can't load ") + m_path));
    QCOMPARE(UserSettings(m_path).ipAddress(), QStringLiteral("192.168.2.1"));
}

void tst_UserSettings::theStoredValuesAreRead()
{
    write("; mine\n[GENERAL]\nIP_Address: 10.0.0.7\n[Download]\nlast_event_folder=2\n"
          "event_folder_0=/a\nevent_folder_19=C:\\b c\nauto_export=5\n");
    const UserSettings settings(m_path);
    QCOMPARE(settings.ipAddress(), QStringLiteral("10.0.0.7"));
    QCOMPARE(settings.lastEventFolder(), 2);
    const QMap<int, QString> folders = {{0, QStringLiteral("/a")}, {19, QStringLiteral("C:\\b c")}};
    QCOMPARE(settings.eventFolders(), folders);
    QCOMPARE(settings.autoExport(), 5);
}

void tst_UserSettings::aNumberThatIsNoneIsZero()
{
    write("[download]\nlast_event_folder = many\nauto_export = 99999999999999\n");
    const UserSettings settings(m_path);
    QCOMPARE(settings.lastEventFolder(), 0);
    QCOMPARE(settings.autoExport(), 0);
}

void tst_UserSettings::whatIsSetIsRead()
{
    UserSettings settings(m_path);
    QVERIFY(settings.setIpAddress(QStringLiteral("10.1.2.3")));
    QVERIFY(settings.setLastEventFolder(3));
    QVERIFY(settings.setEventFolder(3, QStringLiteral("/logs; today")));
    QVERIFY(settings.setAutoExport(9));

    const UserSettings again(m_path);
    QCOMPARE(again.ipAddress(), QStringLiteral("10.1.2.3"));
    QCOMPARE(again.lastEventFolder(), 3);
    QCOMPARE(again.eventFolders().value(3), QStringLiteral("/logs; today"));
    QCOMPARE(again.autoExport(), 9);
}

void tst_UserSettings::aValueThatStaysTheSameIsNotWritten()
{
    UserSettings settings(m_path);
    QVERIFY(settings.setIpAddress(QStringLiteral("10.1.2.3")));
    QVERIFY(QFile::remove(m_path));
    QVERIFY(settings.setIpAddress(QStringLiteral("10.1.2.3")));
    QVERIFY(!QFile::exists(m_path));
}

void tst_UserSettings::aRemovedEventFolderIsGone()
{
    write("[download]\nevent_folder_0 = /a\nevent_folder_1 = /b\n");
    UserSettings settings(m_path);
    QVERIFY(settings.removeEventFolder(0));
    QCOMPARE(settings.eventFolders().keys(), QList<int>({1}));
    QCOMPARE(written(), QByteArray("[download]\nevent_folder_1 = /b\n"));
}

void tst_UserSettings::eventFoldersBeyondTheLimitAreIgnored()
{
    write("[download]\nevent_folder_20 = /a\nevent_folder_-1 = /b\nevent_folder_x = /c\n");
    QVERIFY(UserSettings(m_path).eventFolders().isEmpty());
}

void tst_UserSettings::anEmptyPathIsNoEventFolder()
{
    write("[download]\nevent_folder_0 =\nevent_folder_1 = /b\nevent_folder_2 = \"\"\n");
    const QMap<int, QString> folders{{1, QStringLiteral("/b")}};
    QCOMPARE(UserSettings(m_path).eventFolders(), folders);
}

void tst_UserSettings::theFileLiesNextToTheExecutable()
{
    const QString program = m_folder->path();
    QCOMPARE(UserSettings::pathIn(program, QStringLiteral("/elsewhere")), m_path);
    QVERIFY(QDir(program).isEmpty()); // the attempt to write leaves nothing
}

void tst_UserSettings::theFileLiesInTheUsersFolderWhereTheProgramsCannotBeWritten()
{
    const QString missing = m_folder->filePath(QStringLiteral("missing"));
    QCOMPARE(UserSettings::pathIn(missing, m_folder->path()), m_path);
}

void tst_UserSettings::theUsersFolderIsMadeWhenItIsNeeded()
{
    const QString path = m_folder->filePath(QStringLiteral("a/b/usr_settings.ini"));
    QVERIFY(UserSettings(path).setIpAddress(QStringLiteral("10.1.2.3")));
    QCOMPARE(UserSettings(path).ipAddress(), QStringLiteral("10.1.2.3"));
}

void tst_UserSettings::aFolderThatCannotBeWrittenKeepsTheValueAndFails()
{
    write("");
    const QString path = m_path + QStringLiteral("/usr_settings.ini"); // below a file
    UserSettings settings(path);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^Can't save .*: .+")));
    QVERIFY(!settings.setIpAddress(QStringLiteral("10.1.2.3")));
    QCOMPARE(settings.ipAddress(), QStringLiteral("10.1.2.3"));
}

QTEST_GUILESS_MAIN(tst_UserSettings)
#include "tst_usersettings.moc"
