#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

#include <optional>
#include <vector>

struct StreamingClass_DBC_Signal;

namespace can {

// One identifier of the list of received frames, with what its last frame held.
struct RxListItem
{
    quint32 id = 0;
    bool extended = false;
    bool remote = false;
    QByteArray data;
    std::optional<quint32> period_us; // between the last two frames
    quint64 count = 0;                // of frames
    QString comment;
};

// Hexadecimal in upper case: three digits, eight for one of 29 bits.
[[nodiscard]] QString identifierText(quint32 id, bool extended);
// Two digits and a blank for each byte.
[[nodiscard]] QString dataText(const QByteArray &data);
// In one line. A remote frame says that it is one.
[[nodiscard]] QString commentText(const RxListItem &item);

// By identifierKey(): the names of the signals that the frames carry; of many the first ones. The
// records don't know what their message is called.
[[nodiscard]] QHash<quint64, QString>
signalComments(const QList<StreamingClass_DBC_Signal *> &signalList);

// The list as text: a head, then a line for each item, in columns.
[[nodiscard]] QString rxListText(const std::vector<RxListItem> &items);

// Writes the text as UTF-8, whole or not at all. On failure the error says why.
[[nodiscard]] bool saveRxList(const QString &path, const std::vector<RxListItem> &items,
                              QString *error);

} // namespace can
