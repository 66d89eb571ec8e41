#pragma once

#include "can/dbcfileparser.h"

#include <QFile>
#include <QTemporaryDir>

// A parser that has loaded a file of given bytes.
struct LoadedDbc
{
    explicit LoadedDbc(const QByteArray &bytes)
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("test.dbc")));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("no test file");
        file.close();
        ok = parser.load(file.fileName());
    }

    [[nodiscard]] int count() const { return parser.signalList().size(); }
    [[nodiscard]] const StreamingClass_DBC_Signal &at(int index) const
    {
        return *parser.signalList().at(index);
    }
    // All names, apart by a blank.
    [[nodiscard]] QString names() const
    {
        QStringList texts;
        for (const StreamingClass_DBC_Signal *signal : parser.signalList())
            texts.append(signal->name);
        return texts.join(QLatin1Char(' '));
    }

    DbcFileParser parser;
    bool ok = false;
};

const QByteArray engineMessage = "BO_ 291 Engine: 8 ECU1\n";

// A signal line of that name, whose other values don't matter.
[[nodiscard]] inline QByteArray signalLine(const QByteArray &name)
{
    return " SG_ " + name + " : 0|8@1+ (1,0) [0|0] \"\" ECU2\n";
}
