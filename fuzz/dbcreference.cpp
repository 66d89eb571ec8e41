#include "dbcreference.h"

#include "can/dbcpasses.h"

#include <QStringList>
#include <QTextStream>

#include <cmath>
#include <limits>

namespace {

using Signal = StreamingClass_DBC_Signal;

const QLatin1Char blank(' ');
const QLatin1Char quote('"');
const QString lineEnd = QStringLiteral("\r\n");

QString shown(const QString &line)
{
    const QByteArray utf8 = line.toUtf8();
    return dbc::shownLine({utf8.constData(), std::size_t(utf8.size())});
}

// Numbers are ASCII; QString takes the minus sign U+2212, too.
QString asciiOnly(const QString &text)
{
    return text.toUtf8().size() == text.size() ? text : QString();
}

bool toNumber(const QString &text, int max, int &number)
{
    bool ok = false;
    number = asciiOnly(text).toInt(&ok);
    return ok && number >= 0 && number <= max;
}

bool toPair(const QString &word, char opening, char separator, char closing, double &a, double &b)
{
    if (word.size() < 2 || !word.startsWith(QLatin1Char(opening))
        || !word.endsWith(QLatin1Char(closing)))
        return false;
    const QStringList parts = word.mid(1, word.size() - 2).split(QLatin1Char(separator));
    bool aIsFine = false;
    bool bIsFine = false;
    a = asciiOnly(parts.value(0)).toDouble(&aIsFine);
    b = asciiOnly(parts.value(1)).toDouble(&bIsFine);
    return parts.size() == 2 && aIsFine && bIsFine && std::isfinite(a) && std::isfinite(b);
}

QString positionFault(const QString &word, Signal &signal)
{
    const int bar = word.indexOf(QLatin1Char('|'));
    const int at = word.indexOf(QLatin1Char('@'));
    if (bar < 0 || at < 0)
        return QStringLiteral("Invalid Signal-Structure");
    if (bar == 0)
        return QStringLiteral("Invalid Signal-Structure (start-bit)");
    int number = 0;
    if (!toNumber(word.left(bar), 65535, number))
        return QStringLiteral("Unable to parse start-bit");
    signal.start_bit = quint16(number);
    if (bar > at)
        return QStringLiteral("Invalid Signal-Structure (bit-length)");
    if (!toNumber(word.mid(bar + 1, at - bar - 1), 65535, number))
        return QStringLiteral("Unable to parse bit-length");
    signal.bit_length = quint16(number);
    const QString order = word.mid(at + 1, 1);
    if (order != QLatin1String("0") && order != QLatin1String("1"))
        return QStringLiteral("Unable to parse endianess");
    signal.little_endian = order == QLatin1String("1") ? 1 : 0;
    if (!word.endsWith(QLatin1Char('+')) && !word.endsWith(QLatin1Char('-')))
        return QStringLiteral("Unable to parse value-type");
    signal.is_signed = word.endsWith(QLatin1Char('-')) ? 1 : 0;
    return {};
}

QString signalFault(const QStringList &words, Signal &signal)
{
    if (words.size() < 7)
        return QStringLiteral("Invalid line-structure");
    signal.name = words.at(1);
    int next = 2;
    if (words.at(2) == QLatin1String("M")) {
        signal.mux_kind = 2;
        next = 3;
    } else if (words.at(2).startsWith(QLatin1Char('m'))) {
        bool ok = false;
        signal.mux_kind = 1;
        signal.mux_value = asciiOnly(words.at(2).mid(1)).toInt(&ok);
        if (!ok)
            return QStringLiteral("Unable to parse multiplexor-value");
        next = 3;
    }
    const QString fault = positionFault(words.at(next), signal);
    if (!fault.isEmpty())
        return fault;
    if (!toPair(words.at(next + 1), '(', ',', ')', signal.factor, signal.offset))
        return QStringLiteral("Unable to parse factor & offset");
    if (!toPair(words.at(next + 2), '[', '|', ']', signal.minimum, signal.maximum))
        return QStringLiteral("Unable to parse value -minimum & -maximum");
    QString unit = words.at(next + 3);
    for (int i = next + 4; i < words.size() && !unit.endsWith(quote); ++i)
        unit += words.at(i);
    if (!unit.startsWith(quote) || !unit.endsWith(quote))
        return QStringLiteral("Unable to parse value-unit");
    signal.unit = unit.mid(1, qMax(unit.size() - 2, 0));
    return {};
}

QString messageFault(const QStringList &words, Signal &message, bool &isInMessage)
{
    if (words.size() < 5)
        return QStringLiteral("Invalid Message-Structure");
    if (words.at(2).trimmed() == QLatin1String("VECTOR__INDEPENDENT_SIG_MSG"))
        return {};
    bool ok = false;
    const quint32 identifier = asciiOnly(words.at(1)).toUInt(&ok);
    if (!ok)
        return QStringLiteral("Unable to parse Message-ID");
    int dlc = 0;
    if (!toNumber(words.at(3), 255, dlc))
        return QStringLiteral("Unable to parse DLC");
    message.extended_id = quint8(identifier >> 31);
    message.msg_id = message.extended_id != 0 ? identifier & 0x1FFFFFFF : identifier;
    message.dlc = quint8(dlc);
    isInMessage = true;
    return {};
}

void readSignals(const QString &text, DbcReading &reading)
{
    QString copy = text;
    QTextStream stream(&copy, QIODevice::ReadOnly);
    Signal message;
    bool isInMessage = false;
    for (int number = 1; !stream.atEnd(); ++number) {
        const QString raw = stream.readLine();
        const QStringList words =
            raw.simplified().remove(QLatin1Char(':')).split(blank, Qt::SkipEmptyParts);
        QString fault;
        if (words.value(0) == QLatin1String("BO_")) {
            fault = messageFault(words, message, isInMessage);
        } else if (words.value(0) == QLatin1String("SG_") && isInMessage) {
            Signal signal = message;
            fault = signalFault(words, signal);
            if (fault.isEmpty())
                reading.records.push_back(signal);
        } else if (!words.value(0).startsWith(QLatin1String("BO_"))) {
            isInMessage = false;
        }
        if (!fault.isEmpty()) {
            reading.error = QStringLiteral("DBC-File: %1, line number %2 \r\n( %3 )")
                                .arg(fault, QString::number(number), shown(raw));
            return;
        }
    }
}

// False when the message number is none.
bool takeComment(const QString &statement, std::vector<Signal> &records)
{
    if (!statement.mid(3).trimmed().startsWith(QLatin1String("SG_ ")))
        return true;
    const QStringList parts = statement.split(blank);
    if (parts.size() < 5)
        return true;
    bool ok = false;
    const quint32 identifier = asciiOnly(parts.at(2)).toUInt(&ok) & 0x1FFFFFFF;
    const int first = statement.indexOf(quote);
    const bool hasText = first >= 3 && first < statement.lastIndexOf(quote);
    QString description = statement.mid(first + 1, statement.size() - first - 3);
    if (description.size() > 0 && description.at(description.size() - 1).isHighSurrogate())
        description.chop(1); // half of a character
    for (Signal &signal : records) {
        if (hasText && signal.msg_id == identifier && signal.name == parts.at(3))
            signal.description = description;
    }
    return ok;
}

void readComments(const QString &text, DbcReading &reading)
{
    QString copy = text;
    QTextStream stream(&copy, QIODevice::ReadOnly);
    for (int number = 1; !stream.atEnd(); ++number) {
        const QString first = stream.readLine();
        const QString firstNumber = QString::number(number);
        QString last = first;
        QString statement = first.simplified();
        const bool isComment = statement.startsWith(QLatin1String("CM_ "));
        if (!isComment && !statement.startsWith(QLatin1String("VAL_ ")))
            continue;
        for (; !statement.endsWith(QLatin1Char(';')) && !stream.atEnd(); ++number) {
            last = stream.readLine();
            statement += lineEnd + last.simplified();
        }
        const bool isWhole = statement.endsWith(QLatin1Char(';'));
        if (!isWhole && !isComment)
            reading.error =
                QStringLiteral("DBC-File: Invalid Signal-ValueTable structure, \r\n"
                               "line number %1 ( %2 )\r\nline number %3 ( %4 )")
                    .arg(firstNumber, shown(first), QString::number(number), shown(last));
        else if (!isWhole)
            reading.error = QStringLiteral("DBC-File: Invalid Description structure, \r\n"
                                           "line number %1 ( %2 )")
                                .arg(firstNumber, shown(first));
        else if (isComment && !takeComment(statement, reading.records))
            reading.error = QStringLiteral("DBC-File: Invalid Signal-Description MessageNr, \r\n"
                                           "line number %1 ( %2 )")
                                .arg(firstNumber, shown(first));
        if (!reading.error.isEmpty())
            return;
    }
}

} // namespace

DbcReading readByTheRules(const QString &text)
{
    DbcReading reading;
    readSignals(text, reading);
    if (reading.error.isEmpty())
        readComments(text, reading);
    return reading;
}
