#pragma once

#include <QJsonValue>
#include <QVector>

class QIODevice;

// Writes indented JSON piece by piece, so that a configuration or a list of any size never stands
// in memory as a whole. Keys keep the order in which they come. The device tells of failures.
class JsonWriter
{
public:
    explicit JsonWriter(QIODevice &out)
        : m_out(out)
    {}

    void beginObject() { begin('{', '}'); }
    void beginArray() { begin('[', ']'); }
    // Ends the innermost object or array.
    void end();

    // The key of the next value, object or array.
    void key(const QString &name);
    // A whole number with all its digits, which a QJsonValue keeps up to 2^53 only.
    void integer(qint64 value) { digits(QByteArray::number(value)); }
    void integer(quint64 value) { digits(QByteArray::number(value)); }
    // Any value, small objects and arrays among them.
    void value(const QJsonValue &value);
    void value(const QString &name, const QJsonValue &value)
    {
        key(name);
        this->value(value);
    }

private:
    struct Level
    {
        char closing;
        bool isEmpty;
    };

    void begin(char opening, char closing);
    void digits(const QByteArray &number);
    void beginItem();
    void newLine();

    QIODevice &m_out;
    QVector<Level> m_levels;
    bool m_isBehindKey = false;
};
