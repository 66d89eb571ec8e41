#include "can/canrxlist.h"

#include "can/canframe.h"
#include "can/dbcmessages.h"
#include "config/shorttext.h"
#include "config/streamingclass_dbc_signal.h"

#include <QSaveFile>

#include <algorithm>

namespace can {
namespace {

// The head and the lines are padded by patterns that differ; these widths make their columns meet.
constexpr int idWidth = 8;
constexpr int dlcWidth = 2;
constexpr int headPeriodWidth = 15;
constexpr int periodWidth = 17; // of a line; the pattern of the head begins with two blanks
constexpr int headCountWidth = 12;
constexpr int countWidth = 10;

QString headText(int dataWidth)
{
    return QStringLiteral("%1        %2  %3")
               .arg(QStringLiteral("ID"), QStringLiteral("DLC"),
                    QStringLiteral("Data").leftJustified(dataWidth))
           + QStringLiteral("  %1      %2   %3 \r\n")
                 .arg(QStringLiteral("Period [uSec]").rightJustified(headPeriodWidth),
                      QStringLiteral("Count").leftJustified(headCountWidth),
                      QStringLiteral("Comment"));
}

QString lineText(const RxListItem &item, int dataWidth)
{
    const QString period = item.period_us ? QString::number(*item.period_us) : QString();
    return QStringLiteral("%1  %2   %3")
               .arg(identifierText(item.id, item.extended).leftJustified(idWidth),
                    QString::number(item.data.size()).leftJustified(dlcWidth),
                    dataText(item.data).leftJustified(dataWidth))
           + QStringLiteral("%1      %2     %3 \r\n")
                 .arg(period.rightJustified(periodWidth),
                      QString::number(item.count).leftJustified(countWidth), commentText(item));
}

} // namespace

QString identifierText(quint32 id, bool extended)
{
    return QString::number(id, 16).toUpper().rightJustified(extended ? 8 : 3, QLatin1Char('0'));
}

QString dataText(const QByteArray &data)
{
    QString text = QString::fromLatin1(data.toHex(' ')).toUpper();
    if (!text.isEmpty())
        text += QLatin1Char(' ');
    return text;
}

QString commentText(const RxListItem &item)
{
    const QString comment = item.comment.simplified();
    if (!item.remote)
        return comment;
    const auto remote = QStringLiteral("Remote frame");
    return comment.isEmpty() ? remote : remote + QStringLiteral(": ") + comment;
}

QHash<quint64, QString> signalComments(const QList<StreamingClass_DBC_Signal *> &signalList)
{
    constexpr int mostNames = 10;
    constexpr int longestName = 200;
    QHash<quint64, int> counts;
    QHash<quint64, QString> comments;
    for (const StreamingClass_DBC_Signal *signal : signalList) {
        const quint64 key = identifierKey(frameIdentifier(*signal), signal->extended_id != 0);
        const int count = ++counts[key];
        if (count == 1)
            comments[key] = shortText(signal->name, longestName);
        else if (count <= mostNames)
            comments[key] += QStringLiteral(", ") + shortText(signal->name, longestName);
        else if (count == mostNames + 1)
            comments[key] += QStringLiteral(", ...");
    }
    return comments;
}

QString rxListText(const std::vector<RxListItem> &items)
{
    int dataWidth = int(qstrlen("Data"));
    for (const RxListItem &item : items)
        dataWidth = std::max(dataWidth, 3 * item.data.size());
    QString text = headText(dataWidth);
    for (const RxListItem &item : items)
        text += lineText(item, dataWidth);
    return text;
}

bool saveRxList(const QString &path, const std::vector<RxListItem> &items, QString *error)
{
    QSaveFile file(path);
    const QByteArray bytes = rxListText(items).toUtf8();
    const bool isSaved =
        file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
    if (!isSaved && error)
        *error = file.errorString();
    return isSaved;
}

} // namespace can
