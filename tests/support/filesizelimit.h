#pragma once

#include <QtGlobal>

#ifndef Q_OS_WIN
#include <csignal>
#include <sys/resource.h>
#endif

// In place of a full disk: as long as it lives, no file of this process grows beyond. Windows has no
// such limit, so there tests that need it are skipped.
class FileSizeLimit
{
public:
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

#ifdef Q_OS_WIN
    static constexpr bool isPossible = false;
    explicit FileSizeLimit(qint64) {}
#else
    static constexpr bool isPossible = true;
    explicit FileSizeLimit(qint64 bytes)
        : m_previousHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_previous);
        const rlimit limited{rlim_t(bytes), m_previous.rlim_max};
        if (setrlimit(RLIMIT_FSIZE, &limited) != 0)
            qFatal("The size of files can't be limited.");
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_previous);
        std::signal(SIGXFSZ, m_previousHandler);
    }

private:
    void (*m_previousHandler)(int);
    rlimit m_previous{};
#endif
};
