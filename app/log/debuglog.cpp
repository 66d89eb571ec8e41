#include "app/log/debuglog.h"

#include <cstdio>
#include <filesystem>
#include <iterator>
#include <sstream>

namespace {

// Messages beyond these are dropped: a slow disk must not cost all memory.
constexpr std::size_t maxQueued = 100'000;

std::string tagOf(DebugLog::Level level)
{
    static constexpr const char *names[] = {"Silent", "Error", "Warn", "Info", "Debug", "DebugT"};
    constexpr std::size_t width = 7;
    std::string name = names[static_cast<std::size_t>(level)];
    name.resize(width, ' ');
    return " " + name + "|";
}

void printToStandardError(const std::string &line)
{
    std::fprintf(stderr, "%s\n", line.c_str());
}

DebugLog::Surroundings complete(DebugLog::Surroundings surroundings)
{
    if (!surroundings.print)
        surroundings.print = printToStandardError;
    return surroundings;
}

} // namespace

DebugLog::DebugLog()
    : DebugLog(Surroundings{})
{}

DebugLog::DebugLog(Surroundings surroundings)
    : m_surroundings(complete(std::move(surroundings)))
{}

DebugLog::~DebugLog()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
    }
    m_wake.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

bool DebugLog::init(int outputs)
{
    const std::scoped_lock lock(m_mutex, m_outputMutex);
    if (m_initialised) {
        m_surroundings.print("DebugLog -> You can init only once!");
        return false;
    }
    m_outputs = std::vector<Output>(outputs > 0 ? static_cast<std::size_t>(outputs) : 0);
    m_initialised = true;
    m_thread = std::thread(&DebugLog::run, this);
    return true;
}

bool DebugLog::isValid(int id)
{
    if (id >= 0 && static_cast<std::size_t>(id) < m_outputs.size())
        return true;
    m_surroundings.print("DebugLog -> output id: " + std::to_string(id) + " instead of "
                         + std::to_string(m_outputs.size()) + ". Init failed!");
    return false;
}

bool DebugLog::initConsole(int id, Level threshold)
{
    const std::lock_guard<std::mutex> lock(m_outputMutex);
    if (!isValid(id))
        return false;
    Output &output = m_outputs[static_cast<std::size_t>(id)];
    output = Output();
    output.threshold = threshold;
    output.console = true;
    return true;
}

bool DebugLog::initFile(int id, Level threshold, const std::string &prefix,
                        const std::string &extension)
{
    const std::lock_guard<std::mutex> lock(m_outputMutex);
    if (!isValid(id))
        return false;
    Output &output = m_outputs[static_cast<std::size_t>(id)];
    output = Output();
    output.threshold = threshold;
    const QString time = m_surroundings.now().toString(QStringLiteral("yyyyMMdd_HHmmss"));
    const std::string name = prefix + time.toStdString() + "." + extension;
    output.file.open(std::filesystem::u8path(name), std::ios::binary | std::ios::app);
    if (!output.file.is_open()) {
        m_surroundings.print("DebugLog-> Failed to open file " + name + "!");
        return false;
    }
    writeToFile(output, "Starting Log File: " + name);
    return output.file.is_open();
}

void DebugLog::log(Level level, const std::string &message)
{
    if (level == Level::Silent)
        return;
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_initialised || m_queue.size() >= maxQueued)
        return;
    m_queue.push_back({level, stamped(level, message)});
    m_wake.notify_all();
}

std::string DebugLog::stamped(Level level, const std::string &message) const
{
    const QString time = m_surroundings.now().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
    return time.toStdString() + " |" + tagOf(level) + " " + message;
}

void DebugLog::flush()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (m_thread.joinable())
        m_idle.wait(lock, [this] { return m_queue.empty() && !m_busy; });
}

void DebugLog::run()
{
    std::ostringstream started;
    started << "DebugLog::startThread - ID:" << std::this_thread::get_id();
    m_surroundings.print(started.str());

    std::unique_lock<std::mutex> lock(m_mutex);
    while (true) {
        m_wake.wait(lock, [this] { return m_stop || !m_queue.empty(); });
        if (m_queue.empty())
            return;
        const Message message = std::move(m_queue.front());
        m_queue.pop_front();
        m_busy = true;
        lock.unlock();
        write(message);
        lock.lock();
        m_busy = false;
        if (m_queue.empty())
            m_idle.notify_all();
    }
}

void DebugLog::write(const Message &message)
{
    const std::lock_guard<std::mutex> lock(m_outputMutex);
    for (Output &output : m_outputs) {
        if (message.level > output.threshold)
            continue;
        if (output.console)
            m_surroundings.print(message.line);
        else
            writeToFile(output, message.line);
    }
}

void DebugLog::writeToFile(Output &output, const std::string &line)
{
    if (!output.file.is_open()) {
        if (!output.closedTold)
            m_surroundings.print("File was not open..");
        output.closedTold = true;
        return;
    }
    const std::optional<quint64> freeBytes = m_surroundings.free_space();
    if (!freeBytes.has_value())
        closeWith(output, "Can't check free storage space! Closing Logfile!");
    else if (*freeBytes < minFreeBytes)
        closeWith(output, "Storage space run out! Closing Logfile!");
    else
        output.file << line << '\n' << std::flush;
}

void DebugLog::closeWith(Output &output, const std::string &reason)
{
    const std::string line = stamped(Level::Error, "System -> " + reason);
    output.file << line << '\n';
    output.file.close();
    m_surroundings.print(line);
}
