#include "cli/console.h"

#include <QDateTime>
#include <QDir>
#include <QLoggingCategory>
#include <QTextCodec>

#include <cstdio>

#ifdef Q_OS_WIN
#include <io.h>
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace {

bool isTerminal(std::FILE *stream)
{
#ifdef Q_OS_WIN
    return _isatty(_fileno(stream)) != 0;
#else
    return isatty(fileno(stream)) != 0;
#endif
}

#ifdef Q_OS_WIN
// A console shows UTF-16 as it is; bytes it would read in its code page. False when the stream is a
// file or a pipe.
bool writeToConsole(std::FILE *stream, const QString &text)
{
    constexpr int maxCharacters = 8192; // older consoles have a buffer of 64 KB
    const auto console = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    DWORD mode = 0;
    if (GetConsoleMode(console, &mode) == 0)
        return false;
    for (int start = 0; start < text.size();) {
        int size = qMin(maxCharacters, text.size() - start);
        if (size > 1 && text.at(start + size - 1).isHighSurrogate())
            --size; // its other half follows
        DWORD written = 0;
        if (WriteConsoleW(console, text.utf16() + start, DWORD(size), &written, nullptr) == 0)
            break; // the window has gone
        start += size;
    }
    return true;
}
#endif

void write(std::FILE *stream, const QString &text)
{
#ifdef Q_OS_WIN
    if (writeToConsole(stream, text))
        return;
#endif
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

} // namespace

void Console::setUp()
{
#ifndef Q_OS_WIN
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
#endif
    QLoggingCategory::setFilterRules(QStringLiteral("default=false"));
}

bool Console::openLog(const QString &path, QString &failure)
{
    m_log.setFileName(path);
    if (m_log.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return true;
    failure = QStringLiteral("%1: %2").arg(displayName(path), m_log.errorString());
    return false;
}

QStringList Console::writeFailures() const
{
    QStringList failures;
    if (std::ferror(stdout) != 0)
        failures.append(QStringLiteral("The output could not be written."));
    if (!m_logFailure.isEmpty())
        failures.append(QStringLiteral("%1: %2").arg(displayName(m_log.fileName()), m_logFailure));
    return failures;
}

void Console::print(const QString &text)
{
    clearProgress();
    write(stdout, text + QLatin1Char('\n'));
}

void Console::message(const QString &kind, const QString &text, bool onlyLog)
{
    const QString line = kind + plainMessage(text) + QLatin1Char('\n');
    if (m_log.isOpen()) {
        const QByteArray bytes = line.toUtf8();
        if ((m_log.write(bytes) != bytes.size() || !m_log.flush()) && m_logFailure.isEmpty())
            m_logFailure = m_log.errorString();
    }
    if (onlyLog)
        return;
    clearProgress();
    write(stderr, line);
}

void Console::showProgress(const QString &text)
{
    if (m_quiet || !isTerminal(stderr))
        return;
    const int width = text.size();
    write(stderr, QLatin1Char('\r') + text.leftJustified(m_progressWidth));
    m_progressWidth = width;
}

void Console::clearProgress()
{
    if (m_progressWidth == 0)
        return;
    write(stderr,
          QLatin1Char('\r') + QString(m_progressWidth, QLatin1Char(' ')) + QLatin1Char('\r'));
    m_progressWidth = 0;
}

QString plainMessage(const QString &text)
{
    QString plain = text;
    plain.remove(QLatin1Char('\r'));
    // Names out of a file may hold what would command a terminal.
    for (QChar &character : plain) {
        if (character.category() == QChar::Other_Control)
            character = character == QLatin1Char('\n') ? QChar(QChar::Space)
                                                       : QChar(QChar::ReplacementCharacter);
    }
    plain.replace(QLatin1String("&lt;"), QLatin1String("<"));
    plain.replace(QLatin1String("&gt;"), QLatin1String(">"));
    plain.replace(QLatin1String("&quot;"), QLatin1String("\""));
    plain.replace(QLatin1String("&amp;"), QLatin1String("&"));
    return plain;
}

QString displayName(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

QString utcText(quint64 utc_us)
{
    const auto utc_ms = static_cast<qint64>(utc_us / 1000);
    return QDateTime::fromMSecsSinceEpoch(utc_ms, Qt::UTC).toString(Qt::ISODateWithMs);
}

QString counted(quint64 count, const char *one, const char *many)
{
    return count == 1 ? QString::fromLatin1(one) : QString::fromLatin1(many).arg(count);
}
