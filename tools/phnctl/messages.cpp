// phnctl messages: the short messages of a handset.
#include "phnctl/command.h"
#include "phnctl/counted.h"
#include "phnctl/failure.h"
#include "phnctl/message_form.h"
#include "phnctl/message_list.h"
#include "phnctl/message_options.h"
#include "phnctl/messages_workbench.h"
#include "phnctl/print.h"
#include "phnctl/safeguard.h"
#include "phnctl/session.h"
#include "phnctl/table.h"
#include "phnctl/text.h"
#include "system/system.h"

#include <algorithm>
#include <fmt/format.h>

namespace phnctl {

namespace {

constexpr const char* kPdu = "--pdu";

std::vector<std::int32_t> BoxesOf(const Invocation& invocation)
{
    const auto box = invocation.Value("BOX"); // a digit, by the argument's allowed values
    return Boxes(box ? std::optional<std::int32_t>((*box)[0] - '0') : std::nullopt);
}

std::uint16_t ParseIndex(const std::string& text)
{
    const auto number = ParseNumber(text, 0xFFFF);
    if (!number)
        throw Failure(kUsage, fmt::format("'{}' is no index of a message; allowed: 0 to 65535", Printable(text)));
    return static_cast<std::uint16_t>(*number);
}

std::vector<std::uint16_t> IndexesOf(const Invocation& invocation)
{
    std::vector<std::uint16_t> indexes;
    for (const std::string& text : invocation.values.at("INDEX"))
        indexes.push_back(ParseIndex(text));
    return indexes;
}

// The library reads messages box by box only. Throws Refusal when one is not there.
std::vector<StoredMessage> FindMessages(const Handset& handset, const std::vector<std::uint16_t>& indexes)
{
    const std::vector<StoredMessage> all = ReadMessages(handset, Boxes(std::nullopt));
    std::vector<StoredMessage> found;
    for (const std::uint16_t index : indexes) {
        const auto message =
            std::find_if(all.begin(), all.end(), [&](const StoredMessage& one) { return one.index == index; });
        if (message == all.end())
            throw Refusal(PHN_ERROR_MESSAGE_NOT_FOUND, fmt::format("no message has the index {}", index));
        found.push_back(*message);
    }
    return found;
}

std::string Table(const std::vector<StoredMessage>& messages, const Labels& labels, unsigned width)
{
    std::vector<std::vector<std::string>> rows;
    for (const StoredMessage& message : messages) {
        const PduContent& content = message.pdu.content;
        rows.push_back({std::to_string(message.index), BoxName(labels, message.box), content.from.value_or(""),
                        content.time ? ShowTime(*content.time) : "", ShowPriority(content.priority.value_or(0)),
                        content.text.value_or("")});
    }
    return TableText({"Index", "Box", "Number", "Time", "Priority", "Text"}, rows, width);
}

int ShowCounts(const Invocation& invocation)
{
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const Labels labels = LabelsOf(invocation.options, handset);
        std::size_t total = 0;
        std::vector<std::vector<std::string>> rows;
        JsonList list;
        for (const std::int32_t box : BoxesOf(invocation)) {
            const std::uint32_t count = CountMessages(handset, box);
            total += count;
            rows.push_back({BoxName(labels, box), std::to_string(count)});
            list.push_back({JsonObject{{"box", {std::int64_t{box}}}, {"messages", {std::int64_t{count}}}}});
        }
        if (invocation.options.json)
            return fmt::print("{}\n", WriteJson({JsonObject{{"boxes", {std::move(list)}}}}));
        fmt::print("{}\n{}\n", TableText({"Box", "Messages"}, rows, host::TerminalWidth(stdout)),
                   Counted(total, "message"));
    });
}

int List(const Invocation& invocation)
{
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const Labels labels = LabelsOf(invocation.options, handset);
        const std::vector<StoredMessage> messages = ReadMessages(handset, BoxesOf(invocation));
        if (invocation.options.json)
            return fmt::print("{}", MessagesJson(messages));
        if (!messages.empty())
            fmt::print("{}\n", Table(messages, labels, host::TerminalWidth(stdout)));
        fmt::print("{}\n", Counted(messages.size(), "message"));
    });
}

void Show(const Invocation& invocation, const Labels& labels, const StoredMessage& message)
{
    const PduContent& content = message.pdu.content;
    Print(invocation.options,
          {{{"",
             "",
             {{"index", "Index", message.index},
              {"box", "Box", BoxName(labels, message.box)},
              {"from", "Number", content.from.value_or("")},
              {"time", "Time", content.time ? ShowTime(*content.time) : ""},
              {"priority", "Priority", ShowPriority(content.priority.value_or(0))},
              {"report", "Report", std::string(content.report.value_or(false) ? "wanted" : "not wanted")},
              {"callback", "Call back", content.callback.value_or("")},
              {"text", "Text", content.text.value_or("")}}}}});
}

int Get(const Invocation& invocation)
{
    const std::vector<std::uint16_t> indexes = IndexesOf(invocation);
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const std::vector<StoredMessage> messages = FindMessages(handset, indexes);
        if (invocation.options.json)
            return fmt::print("{}", MessagesJson(messages));
        if (invocation.Has(kPdu))
            return fmt::print("{}\n", ToHex(messages.front().bytes));
        Show(invocation, LabelsOf(invocation.options, handset), messages.front());
    });
}

// The library's codes do not tell that a handset refuses a text for its length.
std::uint16_t GiveMessage(const Handset& handset, decltype(&PHN_SendMessage) call, const PduBytes& pdu,
                          const std::string& doing, std::size_t length)
{
    try {
        return PutMessage(handset, call, pdu, doing);
    } catch (const Refusal& refusal) {
        if (refusal.Code() != PHN_ERROR_RESULT_2)
            throw;
        throw refusal.Advised(fmt::format("The text has {}, and the handset may hold fewer in one message. Try a "
                                          "shorter text, or several messages.",
                                          Counted(length, "character")));
    }
}

// Gives a message to the handset, to be sent or saved.
int Put(const Invocation& invocation, decltype(&PHN_SendMessage) Library::*call, const char* doing, const char* done)
{
    PduContent content = MessageOf(invocation);
    content.to = BareNumber(*invocation.Value("NUMBER"));
    const PduBytes pdu = WriteOutgoing(content);
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const std::uint16_t index = GiveMessage(handset, handset.Api().*call, pdu, doing, content.text->size());
        PrintDone(invocation.options, fmt::format("The message is {}; its index is {}.", done, index),
                  {{{"", "", {{"index", "", index}}}}});
    });
}

int Send(const Invocation& invocation)
{
    return Put(invocation, &Library::SendMessage, "sending the message", "sent");
}

int Save(const Invocation& invocation)
{
    return Put(invocation, &Library::SaveMessage, "saving the message", "saved");
}

void KeepMessages(const Invocation& invocation, const char* before, const std::vector<StoredMessage>& messages)
{
    KeepCopy(invocation, before, {"message", "messages", ".json", messages.size(), MessagesJson(messages)});
}

int Delete(const Invocation& invocation)
{
    std::vector<std::uint16_t> indexes = IndexesOf(invocation);
    std::sort(indexes.begin(), indexes.end());
    indexes.erase(std::unique(indexes.begin(), indexes.end()), indexes.end());
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const std::vector<StoredMessage> messages = FindMessages(handset, indexes);
        fmt::print(stderr, "{}\n", Table(messages, LabelsOf(invocation.options, handset), host::TerminalWidth(stderr)));
        TellLosses(LossesOf(messages), "message", "messages");
        Confirm(invocation,
                fmt::format("Delete {}?",
                            messages.size() == 1 ? "this message" : "these " + Counted(messages.size(), "message")));
        KeepMessages(invocation, "delete", messages);
        for (const StoredMessage& message : messages)
            handset.Check(handset.Api().DeleteMessage(message.index),
                          fmt::format("deleting message {}", message.index));
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
        KeepMessages(invocation, "clear", messages);
        for (const std::int32_t box : boxes)
            handset.Check(handset.Api().DeleteAllMessages(box), fmt::format("deleting the messages of box {}", box));
        TellDeleted(invocation, messages.size(), "message", "messages");
    });
}

int Mark(const Invocation& invocation)
{
    const std::vector<std::uint16_t> indexes = IndexesOf(invocation);
    const std::string state = *invocation.Value("STATE");
    return WithHandset(invocation.options, [&](const Handset& handset) {
        for (const std::uint16_t index : indexes)
            handset.Check(handset.Api().SetMessageStatus(index, state == "read"),
                          fmt::format("marking message {}", index));
        PrintDone(
            invocation.options,
            fmt::format("{} marked as {}. What a message is marked as, the library does not tell: no list shows it.",
                        Counted(indexes.size(), "message"), state),
            {{{"", "", {{"marked", "", indexes.size()}, {"state", "", state}}}}});
    });
}

std::vector<CommandOption> DeletingOptions()
{
    std::vector<CommandOption> options = CopyOptions();
    options.insert(options.begin(), ConfirmOption());
    return options;
}

} // namespace

std::vector<Command> MessagesCommands()
{
    const Argument box{
        "BOX", "The number of one box; all boxes without it", Count::Optional, {"0", "1", "2", "3", "4"}};
    const Argument indexes{"INDEX", "The indexes that 'list' shows", Count::Many, {}};
    std::vector<Command> commands{
        {"messages", "List, read, send and delete short messages", "", {}, nullptr},
        {"messages count",
         "Count the messages of each box",
         "Boxes have their number, and the name that the label file of the model gives them.\n\n"
         "Example:\n  phnctl messages count\n",
         {box},
         ShowCounts},
        {"messages list",
         "List the messages of all boxes, or of one",
         "Times are local. With --json every message comes with its PDU. Whether one was read is not shown: the\n"
         "library does not tell.\n\n"
         "Examples:\n  phnctl messages list\n  phnctl messages list 0 --json\n",
         {box},
         List},
        {"messages get",
         "Show one message",
         "Examples:\n  phnctl messages get 4\n  phnctl messages get 4 --pdu\n",
         {{"INDEX", "The index that 'list' shows", Count::One, {}}},
         Get,
         {{kPdu, "", "Its PDU in hexadecimal, for 'messages decode'"}}},
        {"messages send", "Send a message",
         "The text is one argument: put it in quotes. What 7-bit ASCII cannot carry is refused.\n\n"
         "Example:\n  phnctl messages send 5550142 \"The ferry is late\" --callback 5550100 --priority 2\n",
         MessageArguments(), Send, MessageOptions()},
        {"messages save", "Save a message on the handset without sending it",
         "As 'messages send'.\n\nExample:\n  phnctl messages save 5550142 \"The ferry is late\"\n", MessageArguments(),
         Save, MessageOptions()},
        {"messages delete",
         "Delete single messages",
         "Shows them and asks first; a copy of them, with their PDUs, is kept in a JSON file.\n\n"
         "Example:\n  phnctl messages delete 4 7\n",
         {indexes},
         Delete,
         DeletingOptions()},
        {"messages clear",
         "Delete all messages of all boxes, or of one",
         "Asks first; a copy of them, with their PDUs, is kept in a JSON file.\n\n"
         "Example:\n  phnctl messages clear 4\n",
         {box},
         Clear,
         DeletingOptions()},
        {"messages mark",
         "Mark messages as read or unread",
         "The handset keeps the mark. The library does not tell it: 'list', 'get' and a backup are without it.\n\n"
         "Example:\n  phnctl messages mark read 4 7\n",
         {{"STATE", "read or unread", Count::One, {"read", "unread"}}, indexes},
         Mark}};
    for (Command& command : WorkbenchCommands())
        commands.push_back(std::move(command));
    return commands;
}

} // namespace phnctl
