#include "app/state/usersettings.h"
#include "link/eventfolders.h"

#include <QTemporaryDir>
#include <QTest>

#include <memory>

class tst_EventFolders : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void aNewFolderTakesTheLowestFreeNumber();
    void aNewFolderIsTheChosenOne();
    void aFolderOfTheListIsNotAddedAgain();
    void thereAreAtMostTwenty();
    void theChoiceIsRemembered();
    void withoutTheChosenOneTheFirstIsIt();
    void anEmptyListHasNoChosenOne();
    void theNumberOfAnEmptyPathIsFree();

private:
    [[nodiscard]] QString path() const { return m_folder->filePath(QStringLiteral("usr.ini")); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<UserSettings> m_settings;
    std::unique_ptr<EventFolders> m_folders;
};

void tst_EventFolders::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_settings = std::make_unique<UserSettings>(path());
    m_folders = std::make_unique<EventFolders>(*m_settings);
}

void tst_EventFolders::aNewFolderTakesTheLowestFreeNumber()
{
    for (const char *name : {"/a", "/b", "/c"})
        QVERIFY(m_folders->add(QString::fromLatin1(name)));
    m_folders->remove(1);
    QCOMPARE(m_folders->freeNumber(), std::optional<int>(1));
    QVERIFY(m_folders->add(QStringLiteral("/d")));
    QCOMPARE(m_folders->all().value(1), QStringLiteral("/d"));
    QCOMPARE(m_folders->freeNumber(), std::optional<int>(3));
}

void tst_EventFolders::aNewFolderIsTheChosenOne()
{
    QVERIFY(m_folders->add(QStringLiteral("/a")));
    QVERIFY(m_folders->add(QStringLiteral("/b")));
    QCOMPARE(m_folders->chosen(), std::optional<int>(1));
}

void tst_EventFolders::aFolderOfTheListIsNotAddedAgain()
{
    QVERIFY(m_folders->add(QStringLiteral("/a/x")));
    QVERIFY(m_folders->add(QStringLiteral("/b")));
    QVERIFY(m_folders->add(QStringLiteral("/a/./x/")));
    QCOMPARE(m_folders->all().size(), 2);
    QCOMPARE(m_folders->chosen(), std::optional<int>(0));
}

void tst_EventFolders::thereAreAtMostTwenty()
{
    for (int i = 0; i < 20; ++i)
        QVERIFY(m_folders->add(QStringLiteral("/folder%1").arg(i)));
    QVERIFY(!m_folders->freeNumber());
    QVERIFY(!m_folders->add(QStringLiteral("/one_more")));
    QCOMPARE(m_folders->all().size(), 20);
    QVERIFY(m_folders->add(QStringLiteral("/folder7")));
    QCOMPARE(m_folders->chosen(), std::optional<int>(7));
}

void tst_EventFolders::theChoiceIsRemembered()
{
    QVERIFY(m_folders->add(QStringLiteral("/a")));
    QVERIFY(m_folders->add(QStringLiteral("/b")));
    m_folders->choose(0);
    UserSettings again(path());
    QCOMPARE(EventFolders(again).chosen(), std::optional<int>(0));
    QCOMPARE(EventFolders(again).all(), m_folders->all());
}

void tst_EventFolders::withoutTheChosenOneTheFirstIsIt()
{
    for (const char *name : {"/a", "/b", "/c"})
        QVERIFY(m_folders->add(QString::fromLatin1(name)));
    m_folders->remove(2);
    QCOMPARE(m_folders->chosen(), std::optional<int>(0));
}

void tst_EventFolders::anEmptyListHasNoChosenOne()
{
    QVERIFY(!m_folders->chosen());
}

void tst_EventFolders::theNumberOfAnEmptyPathIsFree()
{
    m_settings->setEventFolder(0, QString());
    m_settings->setEventFolder(1, QStringLiteral("/b"));
    m_settings->setLastEventFolder(0);
    QCOMPARE(m_folders->chosen(), std::optional<int>(1));
    QCOMPARE(m_folders->freeNumber(), std::optional<int>(0));
    QVERIFY(m_folders->add(QStringLiteral("/c")));
    QCOMPARE(m_folders->all().value(0), QStringLiteral("/c"));
}

QTEST_GUILESS_MAIN(tst_EventFolders)
#include "tst_eventfolders.moc"
