// Evaluates any bytes as a text reply, and as a command line that the logger would read.

#include "link/protocol/commands.h"
#include "link/protocol/reply.h"

#include <cstdint>
#include <cstdlib>

using namespace protocol;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    const QString word = QStringLiteral("word");
    const Outcome set = evaluateSetReply(bytes, word);
    const Outcome get = evaluateGetReply(bytes, word, replyKey(bytes), ValueCount::atLeast(1));
    if (set.ok != set.error.isEmpty() && !isError(bytes))
        std::abort();
    if (get.ok && get.values.isEmpty())
        std::abort();
    (void)errorText(bytes);
    if (const auto command = parseCommand(bytes)) {
        const auto again = parseCommand(commandText(command->command, command->arguments));
        if (!again || again->arguments.size() != command->arguments.size())
            std::abort();
    }
    return 0;
}
