#include "config/record/jsonwriter.h"

#include <QIODevice>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

// JSON's own rules for one value: a document holds arrays and objects only, so it travels in one.
QByteArray textOf(const QJsonValue &value)
{
    const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return array.mid(1, array.size() - 2);
}

} // namespace

void JsonWriter::begin(char opening, char closing)
{
    beginItem();
    m_out.putChar(opening);
    m_levels.append({closing, true});
}

void JsonWriter::end()
{
    const Level level = m_levels.takeLast();
    if (!level.isEmpty)
        newLine();
    m_out.putChar(level.closing);
    if (m_levels.isEmpty())
        m_out.putChar('\n');
}

void JsonWriter::key(const QString &name)
{
    beginItem();
    m_out.write(textOf(name));
    m_out.write(": ");
    m_isBehindKey = true;
}

void JsonWriter::digits(const QByteArray &number)
{
    beginItem();
    m_out.write(number);
}

void JsonWriter::value(const QJsonValue &value)
{
    if (value.isObject()) {
        beginObject();
        const QJsonObject object = value.toObject();
        for (auto member = object.begin(); member != object.end(); ++member)
            this->value(member.key(), member.value());
        end();
    } else if (value.isArray()) {
        beginArray();
        for (const QJsonValue item : value.toArray())
            this->value(item);
        end();
    } else {
        beginItem();
        m_out.write(textOf(value));
    }
}

void JsonWriter::beginItem()
{
    if (m_isBehindKey) {
        m_isBehindKey = false;
        return;
    }
    if (m_levels.isEmpty())
        return;
    if (!m_levels.last().isEmpty)
        m_out.putChar(',');
    m_levels.last().isEmpty = false;
    newLine();
}

void JsonWriter::newLine()
{
    constexpr int indentation = 4;
    m_out.putChar('\n');
    m_out.write(QByteArray(indentation * m_levels.size(), ' '));
}
