// Stands in for rld2xxx in tests: honours its arguments and the shared record, and misbehaves as
// the environment variable STANDIN_RLD2XXX says. The offsets are its own copy on purpose: sharing
// the tool's record class would hide a mistake in it.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QSharedMemory>
#include <QThread>
#include <QtEndian>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int versionAt = 0;
constexpr int fileSizeAt = 8;
constexpr int bytesReadAt = 32;
constexpr int convertedAt = 48;
constexpr int writtenAt = 56;
constexpr int finishedAt = 64;
constexpr int stateAt = 66;

constexpr uchar withoutErrors = 3;
constexpr uchar withErrors = 4;

constexpr int longestLife_ms = 60000; // a test that failed must not leave it behind for ever
constexpr int pollInterval_ms = 2;
constexpr int slowLines = 100;
constexpr int floodLines = 200000;
constexpr int floodBytes = 2000000;

class Record
{
public:
    explicit Record(const QString &key)
        : m_memory(key)
    {}

    bool attach() { return m_memory.attach(); }
    template <class T>
    void write(int offset, T value)
    {
        m_memory.lock();
        qToLittleEndian(value, static_cast<uchar *>(m_memory.data()) + offset);
        m_memory.unlock();
    }
    bool isToEnd()
    {
        m_memory.lock();
        const bool isSet = static_cast<const uchar *>(m_memory.constData())[finishedAt] != 0;
        m_memory.unlock();
        return isSet;
    }
    void takeLock() { m_memory.lock(); }
    void finish(uchar state)
    {
        write<uchar>(stateAt, state);
        write<uchar>(finishedAt, 1);
    }

private:
    QSharedMemory m_memory;
};

void waitForEnd(Record *record)
{
    QElapsedTimer life;
    life.start();
    while (life.elapsed() < longestLife_ms && !(record && record->isToEnd()))
        QThread::msleep(pollInterval_ms);
}

// Takes its time, and is whole with the last line.
void writeSlowly(QFile &output)
{
    for (int line = 1; line <= slowLines; ++line) {
        output.write(QByteArray::number(line) + '\n');
        output.flush();
        QThread::msleep(1);
    }
}

void print(std::FILE *stream, const QByteArray &bytes)
{
    std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stream);
    std::fflush(stream);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QByteArray mode = qgetenv("STANDIN_RLD2XXX");
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.size() != 5)
        return 64;
    if (mode == "silent")
        return 0;

    Record record(arguments[4]);
    if (!record.attach())
        return 65;
    record.write<quint32>(versionAt, mode == "version-2" ? 2 : 3);

    const qint64 size = QFile(arguments[1]).size();
    QFile output(arguments[2]);
    if (!output.open(QIODevice::WriteOnly))
        return 66;
    output.write("half");
    output.flush();

    if (mode == "crash")
        std::abort();
    if (mode == "deaf")
        waitForEnd(nullptr);
    if (mode == "holds-lock") {
        record.takeLock();
        output.write(" and held");
        output.flush();
        waitForEnd(nullptr);
    }
    if (mode == "size-0")
        record.write<quint64>(bytesReadAt, 50);
    else
        record.write<quint64>(fileSizeAt, quint64(size));
    if (mode == "endless" || mode == "version-2" || mode == "size-0") {
        record.write<quint64>(bytesReadAt, quint64(size) / 2);
        waitForEnd(&record);
        return 0;
    }
    if (mode == "flood") {
        for (int line = 0; line < floodLines; ++line)
            print(line % 2 == 0 ? stdout : stderr, "line " + QByteArray::number(line) + '\n');
    }
    if (mode == "flood-without-line-ends")
        print(stdout, QByteArray(floodBytes, 'x'));
    if (mode == "errors") {
        print(stdout, "reading <b>a</b> & more\r\n");
        print(stderr, "bad <block>\n");
    }

    output.resize(0);
    output.seek(0);
    if (mode == "slow")
        writeSlowly(output);
    else
        output.write(arguments.mid(0, 4).join(QLatin1Char('\n')).toUtf8());
    output.close();
    if (mode == "no-output")
        output.remove();
    record.write<quint64>(bytesReadAt, quint64(size));
    record.write<quint64>(convertedAt, 1200);
    record.write<quint64>(writtenAt, 1100);
    record.finish(mode == "errors" ? withErrors : withoutErrors);
    if (mode == "last-words")
        print(stdout, "closing");
    if (mode == "lingering") {
        while (std::getchar() != EOF) { // until its input is closed
        }
    }
    return 0;
}
