#pragma once

#include <QByteArray>

#include <list>
#include <memory>
#include <mutex>
#include <optional>

// Configuration records on their way from the command worker's thread to the GUI thread. Of each type
// only the newest is kept, at the place where it arrived: it replaces all that an earlier one would
// have set. So a logger that sends faster than records are applied takes neither memory nor time.
class RecordsUnderway
{
public:
    static constexpr qint64 maxBytes = 256LL << 20;

    enum class Outcome {
        Added,    // the other side has to be called once for it
        Replaced, // the call of the record that it replaces is still to come
        Refused   // too much is under way; an earlier one of this type stays
    };
    struct Record
    {
        int type = 0;
        std::unique_ptr<QByteArray> data;
    };

    // Takes the record over.
    [[nodiscard]] Outcome put(int type, std::unique_ptr<QByteArray> data);
    // The one that has waited longest. None if there is none.
    [[nodiscard]] std::optional<Record> takeFirst();
    // How many wait: at most one of each type.
    [[nodiscard]] int count() const;

private:
    mutable std::mutex m_mutex; // guards all that follows
    std::list<Record> m_records;
    qint64 m_bytes = 0;
};
