// messages delete and messages clear.
#include "phnctl/commands/messages/commands.h"
#include "phnctl/commands/messages/options.h"
#include "phnctl/handset/session.h"
#include "phnctl/messages/form.h"
#include "phnctl/messages/list.h"
#include "phnctl/plan/run_record.h"
#include "phnctl/plan/safeguard.h"
#include "phnctl/text/counted.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"
#include "system/system.h"

#include <algorithm>
#include <fmt/format.h>

namespace phnctl {

namespace {

// Keeps the copy, and says in the journal that they go; returns the number of the first step.
std::size_t Keep(RunRecord& record, const std::vector<StoredMessage>& messages)
{
    record.KeepCopy({"message", "messages", ".json", messages.size(), MessagesJson(messages)});
    std::vector<JournalStep> steps;
    for (const StoredMessage& message : messages)
        steps.push_back({MessageForm().Many(), message.index, MessageEntry(message.pdu.content)});
    return record.Expect(steps);
}

int Delete(const Invocation& invocation)
{
    std::vector<std::uint16_t> indexes = IndexesOf(invocation);
    std::sort(indexes.begin(), indexes.end());
    indexes.erase(std::unique(indexes.begin(), indexes.end()), indexes.end());
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const std::vector<StoredMessage> messages = FindMessages(handset, indexes);
        fmt::print(stderr, "{}\n",
                   MessagesTable(messages, LabelsOf(invocation.options, handset), host::TerminalWidth(stderr)));
        TellLosses(LossesOf(messages), "message", "messages");
        Confirm(invocation,
                fmt::format("Delete {}?",
                            messages.size() == 1 ? "this message" : "these " + Counted(messages.size(), "message")));
        RunRecord record(invocation, handset, "messages delete");
        std::size_t step = Keep(record, messages);
        for (const StoredMessage& message : messages) {
            record.BeginAt(step, message.index);
            DeleteMessage(handset, message.index);
            record.Done(step++);
        }
        record.Over();
        TellDeleted(invocation, messages.size(), "message", "messages");
    });
}

int Clear(const Invocation& invocation)
{
    const std::vector<std::int32_t> boxes = BoxesOf(invocation);
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const std::vector<StoredMessage> messages = ReadMessages(handset, boxes);
        if (messages.empty())
            return TellDeleted(invocation, 0, "message", "messages");
        const std::string where = boxes.size() == 1
                                      ? "of box " + BoxName(LabelsOf(invocation.options, handset), boxes.front())
                                      : "of all boxes";
        TellLosses(LossesOf(messages), "message", "messages");
        Confirm(invocation, fmt::format("Delete all {} {}?", Counted(messages.size(), "message"), Printable(where)));
        RunRecord record(invocation, handset, "messages clear");
        const std::size_t first = Keep(record, messages);
        record.Begin(first, messages.size());
        for (const std::int32_t box : boxes)
            handset.Check(handset.Api().DeleteAllMessages(box), fmt::format("deleting the messages of box {}", box));
        record.Done(first, messages.size());
        record.Over();
        TellDeleted(invocation, messages.size(), "message", "messages");
    });
}

std::vector<CommandOption> DeletingOptions()
{
    std::vector<CommandOption> options = CopyOptions();
    options.insert(options.begin(), ConfirmOption());
    return options;
}

} // namespace

std::vector<Command> DeletingCommands()
{
    return {{"messages delete",
             "Delete single messages",
             "Shows them and asks first; a copy of them, with their PDUs, is kept in a JSON file.\n\n"
             "Example:\n  phnctl messages delete 4 7\n",
             {IndexesArgument()},
             Delete,
             DeletingOptions()},
            {"messages clear",
             "Delete all messages of all boxes, or of one",
             "Asks first; a copy of them, with their PDUs, is kept in a JSON file.\n\n"
             "Example:\n  phnctl messages clear 4\n",
             {BoxArgument()},
             Clear,
             DeletingOptions()}};
}

} // namespace phnctl
