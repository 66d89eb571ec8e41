// Loads a DBC file of any bytes and compares what comes of it with a reading by the rules, word for
// word.

#include "can/dbcdecoding.h"
#include "can/dbcfileparser.h"
#include "dbcreference.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTextCodec>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

void ignoreMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

[[noreturn]] void fail(const char *what, const QString &found, const QString &expected)
{
    std::fprintf(stderr, "%s\nfound:    %s\nexpected: %s\n", what, qUtf8Printable(found),
                 qUtf8Printable(expected));
    std::abort();
}

QString textOf(const QByteArray &bytes)
{
    const QByteArray utf8 = dbc::decoded(bytes);
    // A byte order mark at the start of the decoded text is a character of it.
    QTextCodec::ConverterState keepsMark(QTextCodec::IgnoreHeader);
    return QTextCodec::codecForName("UTF-8")->toUnicode(utf8.constData(), utf8.size(), &keepsMark);
}

void compare(const DbcFileParser &parser, bool isFine, const DbcReading &expected)
{
    if (parser.errorText() != expected.error)
        fail("another error", parser.errorText(), expected.error);
    if (isFine != expected.error.isEmpty())
        std::abort();
    const QList<StreamingClass_DBC_Signal *> &records = parser.signalList();
    if (std::size_t(records.size()) != expected.records.size())
        fail("another number of signals", QString::number(records.size()),
             QString::number(expected.records.size()));
    for (int i = 0; i < records.size(); ++i) {
        const StreamingClass_DBC_Signal &wanted = expected.records[std::size_t(i)];
        if (*records.at(i) != wanted)
            fail("another signal", records.at(i)->name + records.at(i)->description,
                 wanted.name + wanted.description);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    qInstallMessageHandler(ignoreMessage);
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    static const QTemporaryDir folder;
    static const QString path = folder.filePath(QStringLiteral("fuzz.dbc"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        std::abort();
    file.close();

    DbcFileParser parser;
    const bool isFine = parser.load(path);
    compare(parser, isFine, readByTheRules(textOf(bytes)));
    return 0;
}
