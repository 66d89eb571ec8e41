#pragma once

#include "app/log/freespace.h"

#include <QDateTime>

#include <condition_variable>
#include <deque>
#include <fstream>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// A logger of its own for low-level code: messages from any thread are stamped there, queued, and
// written to numbered outputs by one thread. What is queued is written before it is destroyed.
class DebugLog
{
public:
    // From grave to talkative. As the threshold of an output, Silent turns it off.
    enum class Level { Silent, Error, Warn, Info, Debug, DebugT };

    // What a test replaces: where prints go (default: standard error), the free space and the time.
    struct Surroundings
    {
        std::function<void(const std::string &line)> print;
        FreeSpaceSource free_space = freeSpaceOfCurrentDrive;
        std::function<QDateTime()> now = [] { return QDateTime::currentDateTime(); };
    };

    // A file is closed for good when less space than this is left: 192 MiB.
    static constexpr quint64 minFreeBytes = 201'326'592;

    DebugLog();
    explicit DebugLog(Surroundings surroundings);
    ~DebugLog();
    DebugLog(const DebugLog &) = delete;
    DebugLog &operator=(const DebugLog &) = delete;

    // Declares how many outputs there can be, and starts the thread. A second call changes nothing
    // but prints so.
    bool init(int outputs);
    // Makes the output a print to the console.
    bool initConsole(int id, Level threshold);
    // Makes the output a file "prefixYYYYmmdd_HHMMSS.extension", extension "txt" or "log". The
    // prefix is UTF-8. False if the file can't be opened, or is closed at once for lack of space.
    bool initFile(int id, Level threshold, const std::string &prefix, const std::string &extension);

    // Dropped before init().
    void log(Level level, const std::string &message);
    // Returns when all that was logged before is written.
    void flush();

private:
    struct Message
    {
        Level level;
        std::string line;
    };
    struct Output
    {
        Level threshold = Level::Silent;
        bool console = false;
        std::ofstream file;
        bool closedTold = false;
    };

    bool isValid(int id);
    [[nodiscard]] std::string stamped(Level level, const std::string &message) const;
    void run();
    void write(const Message &message);
    void writeToFile(Output &output, const std::string &line);
    void closeWith(Output &output, const std::string &reason);

    const Surroundings m_surroundings;
    std::mutex m_mutex; // guards the queue and its flags
    std::condition_variable m_wake;
    std::condition_variable m_idle;
    std::deque<Message> m_queue;
    bool m_busy = false;
    bool m_stop = false;
    bool m_initialised = false;
    std::mutex m_outputMutex; // guards the outputs
    std::vector<Output> m_outputs;
    std::thread m_thread;
};
