#include "app/configurationcommands.h"
#include "tests/app/scriptedlink.h"
#include "tests/app/scriptedprompt.h"

#include <QTest>

class tst_ConfigurationCommands : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void openLoadsTheChosenFile();
    void openLoadsIntoAConnectedLoggerAfterTheQuestion();
    void openStopsAtANo();
    void openStopsWithoutAFile();
    void aFileThatFailsToLoadIsTold();
    void saveWithoutANameAsksForOne();
    void saveUsesTheNameOfTheLastOpen();
    void saveUsesTheNameOfTheLastSaveAs();
    void saveAsBeginsAtTheLastFile();
    void aCancelledSaveAsSavesNothing();
    void aFailedSaveIsToldAndKeepsTheName();
    void newSetsAnEmptyConfigurationAfterTheQuestion();
    void newStopsAtANo();
    void saveOfANewConfigurationAsksForAName();
    void aNoToNewKeepsTheName();

private:
    QString calls() const { return m_link->calls().join(QLatin1Char('|')); }
    void connectTheLink()
    {
        QVERIFY(m_link->connectLogger(QHostAddress(QHostAddress::LocalHost)));
        m_link->session.calls.clear();
    }

    AppController m_controller;
    std::unique_ptr<ScriptedLink> m_link;
    std::unique_ptr<ScriptedPrompt> m_prompt;
    std::unique_ptr<ConfigurationCommands> m_commands;
};

namespace {

const QString file = QStringLiteral("/a/b.zdc");

} // namespace

void tst_ConfigurationCommands::init()
{
    m_link = std::make_unique<ScriptedLink>(&m_controller);
    m_prompt = std::make_unique<ScriptedPrompt>();
    m_commands = std::make_unique<ConfigurationCommands>(*m_link, *m_prompt);
}

void tst_ConfigurationCommands::openLoadsTheChosenFile()
{
    m_prompt->picks = QStringList({file});
    m_commands->open();
    QCOMPARE(calls(), QStringLiteral("load /a/b.zdc"));
    QCOMPARE(m_prompt->pickers, QStringList({QStringLiteral("Load configuration|%1|config (*.zdc)")
                                                 .arg(QCoreApplication::applicationDirPath())}));
    QVERIFY(m_prompt->shown.isEmpty());
}

void tst_ConfigurationCommands::openLoadsIntoAConnectedLoggerAfterTheQuestion()
{
    connectTheLink();
    m_prompt->answer = true;
    m_prompt->picks = QStringList({file});
    m_commands->open();
    QCOMPARE(m_prompt->shown,
             QStringList({QStringLiteral("Info|Load/Write configuration to data logger?")}));
    QCOMPARE(calls(), QStringLiteral("load /a/b.zdc"));
}

void tst_ConfigurationCommands::openStopsAtANo()
{
    connectTheLink();
    m_commands->open();
    QVERIFY(m_prompt->pickers.isEmpty());
    QVERIFY(calls().isEmpty());
}

void tst_ConfigurationCommands::openStopsWithoutAFile()
{
    m_commands->open();
    QVERIFY(calls().isEmpty());
    QVERIFY(m_prompt->shown.isEmpty());
}

void tst_ConfigurationCommands::aFileThatFailsToLoadIsTold()
{
    connectTheLink();
    m_prompt->answer = true;
    m_prompt->picks = QStringList({file});
    m_link->filesWork = false;
    m_commands->open();
    QCOMPARE(m_prompt->shown.last(), QStringLiteral("Load configuration|Error loading file"));
    QCOMPARE(m_prompt->reasons, QStringList({QStringLiteral("the reason")}));
    QCOMPARE(calls(), QStringLiteral("load /a/b.zdc"));
    QVERIFY(m_commands->fileName().isEmpty());
}

void tst_ConfigurationCommands::saveWithoutANameAsksForOne()
{
    m_prompt->picks = QStringList({file});
    m_commands->save();
    QCOMPARE(m_prompt->pickers, QStringList({QStringLiteral("Save configuration|%1|config (*.zdc)")
                                                 .arg(QCoreApplication::applicationDirPath())}));
    QCOMPARE(calls(), QStringLiteral("save /a/b.zdc"));
}

void tst_ConfigurationCommands::saveUsesTheNameOfTheLastOpen()
{
    m_prompt->picks = QStringList({file});
    m_commands->open();
    m_commands->save();
    QCOMPARE(calls(), QStringLiteral("load /a/b.zdc|save /a/b.zdc"));
    QCOMPARE(m_prompt->pickers.size(), 1);
}

void tst_ConfigurationCommands::saveUsesTheNameOfTheLastSaveAs()
{
    m_prompt->picks = QStringList({QStringLiteral("/old.zdc"), file});
    m_commands->saveAs();
    m_commands->saveAs();
    m_commands->save();
    QCOMPARE(calls(), QStringLiteral("save /old.zdc|save /a/b.zdc|save /a/b.zdc"));
}

void tst_ConfigurationCommands::saveAsBeginsAtTheLastFile()
{
    m_prompt->picks = QStringList({file});
    m_commands->saveAs();
    m_commands->saveAs();
    QCOMPARE(m_prompt->pickers.last(),
             QStringLiteral("Save configuration|/a/b.zdc|config (*.zdc)"));
}

void tst_ConfigurationCommands::aCancelledSaveAsSavesNothing()
{
    m_commands->saveAs();
    QVERIFY(calls().isEmpty());
}

void tst_ConfigurationCommands::aFailedSaveIsToldAndKeepsTheName()
{
    m_prompt->picks = QStringList({file, QStringLiteral("/full/c.zdc")});
    m_commands->saveAs();
    m_link->filesWork = false;
    m_commands->saveAs();
    QCOMPARE(m_prompt->shown,
             QStringList({QStringLiteral("Save configuration|Error saving file")}));
    QCOMPARE(m_prompt->reasons, QStringList({QStringLiteral("the reason")}));
    QCOMPARE(m_commands->fileName(), file);
}

void tst_ConfigurationCommands::newSetsAnEmptyConfigurationAfterTheQuestion()
{
    m_prompt->answer = true;
    m_commands->newEmpty();
    QCOMPARE(m_prompt->shown,
             QStringList({QStringLiteral("Set new Configuration|Load/Set empty configuration?")}));
    QCOMPARE(calls(), QStringLiteral("write empty"));
}

void tst_ConfigurationCommands::newStopsAtANo()
{
    m_commands->newEmpty();
    QVERIFY(calls().isEmpty());
}

void tst_ConfigurationCommands::saveOfANewConfigurationAsksForAName()
{
    m_prompt->picks = QStringList({file, QStringLiteral("/new.zdc")});
    m_commands->open();
    m_prompt->answer = true;
    m_commands->newEmpty();
    m_commands->save();
    QCOMPARE(calls(), QStringLiteral("load /a/b.zdc|write empty|save /new.zdc"));
}

void tst_ConfigurationCommands::aNoToNewKeepsTheName()
{
    m_prompt->picks = QStringList({file});
    m_commands->open();
    m_commands->newEmpty();
    QCOMPARE(m_commands->fileName(), file);
}

QTEST_GUILESS_MAIN(tst_ConfigurationCommands)
#include "tst_configurationcommands.moc"
