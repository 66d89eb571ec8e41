#include "cli/console.h"
#include "cli/inspectionrun.h"
#include "cli/interruption.h"
#include "config/record/jsonwriter.h"
#include "temporaryfiles.h"

#include <QBuffer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <csignal>

namespace {

// Presses Ctrl-C when a text comes out.
class InterruptingBuffer : public QBuffer
{
public:
    explicit InterruptingBuffer(const QByteArray &text)
        : m_text(text)
    {}

protected:
    qint64 writeData(const char *bytes, qint64 size) override
    {
        if (QByteArray::fromRawData(bytes, int(size)).contains(m_text))
            std::raise(SIGINT);
        return QBuffer::writeData(bytes, size);
    }

private:
    const QByteArray m_text;
};

} // namespace

// Ctrl-C can't be taken back, so this test is alone in its program.
class tst_DbcJson_Interrupted : public QObject
{
    Q_OBJECT

private slots:
    void controlCEndsTheListOfSignals();
};

void tst_DbcJson_Interrupted::controlCEndsTheListOfSignals()
{
    const TemporaryFiles files;
    QByteArray bytes = "BO_ 1 M: 8 X\n";
    for (const char *name : {"first", "second", "third"})
        bytes += QByteArray(" SG_ ") + name + " : 0|8@1+ (1,0) [0|0] \"\" X\n";
    const QString file = files.write("a.dbc", bytes);
    interruption::watch();
    Console console;
    InterruptingBuffer out("second");
    QVERIFY(out.open(QIODevice::WriteOnly));
    JsonWriter json(out);
    InspectionRun run(console);
    run.writeJsonTo(json);
    QCOMPARE(run.run({file}), Cancelled);
    QVERIFY(out.data().contains("second"));
    QVERIFY(!out.data().contains("third"));
    QVERIFY(QJsonDocument::fromJson(out.data()).isObject());
}

QTEST_GUILESS_MAIN(tst_DbcJson_Interrupted)
#include "tst_dbcjson_interrupted.moc"
