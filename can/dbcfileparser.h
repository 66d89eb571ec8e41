#pragma once

#include "can/dbcsummary.h"
#include "config/streamingclass_dbc_signal.h"

#include <QList>
#include <QString>

#include <functional>

class QFile;

// Reads the messages, signals and signal comments of a CAN database file (*.dbc) and passes over
// everything else. An object is used by one thread at a time, whichever it is.
class DbcFileParser
{
public:
    // A larger file is refused: several times what databases of whole vehicles have.
    static constexpr qint64 maxFileSize = 256 * 1024 * 1024;

    // Gets the bytes that are done and the size of the file now and then; the load is cancelled when
    // it returns false.
    using Progress = std::function<bool(qint64 done, qint64 total)>;

    DbcFileParser() = default;
    ~DbcFileParser() { clear(); }
    Q_DISABLE_COPY(DbcFileParser)

    void setProgress(Progress progress) { m_progress = std::move(progress); }

    // Replaces the signals by those of the file. True when nothing is wrong with it. False without
    // an error text for what isn't a file or can't be opened, and when cancelled. With an error
    // text, the signals in front of the error are there.
    [[nodiscard]] bool load(const QString &path);

    [[nodiscard]] QString errorText() const { return m_errorText; }
    [[nodiscard]] bool isCancelled() const { return m_isCancelled; }
    // The parser's, until the next load.
    [[nodiscard]] const QList<StreamingClass_DBC_Signal *> &signalList() const { return m_signals; }
    // The caller's from now on.
    [[nodiscard]] QList<StreamingClass_DBC_Signal *> takeSignals();
    [[nodiscard]] const DbcSummary &summary() const { return m_summary; }
    // Frees the signals that nobody has taken, and forgets the rest of the last load.
    void clear();

    // Writes the first 500 signals to the diagnostic log, and how much there is in all.
    void debugDump() const;

private:
    enum class Step { Reading, Signals, Comments };

    void parse(const QByteArray &text);
    [[nodiscard]] QByteArray readFile(QFile &file);
    [[nodiscard]] bool mayGoOn(Step step, qint64 position, qint64 length);

    Progress m_progress;
    QList<StreamingClass_DBC_Signal *> m_signals; // owned
    QString m_errorText;
    DbcSummary m_summary;
    qint64 m_fileSize = 0;
    qint64 m_nextReport = 0; // position in the step at which progress is due
    bool m_isCancelled = false;
};
