// phnctl messages: the short messages of a handset are counted, listed, shown, sent, saved and marked.
#include "phnctl/cli/print.h"
#include "phnctl/commands/exporting.h"
#include "phnctl/commands/messages/commands.h"
#include "phnctl/commands/messages/options.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/commands/wanted.h"
#include "phnctl/handset/session.h"
#include "phnctl/messages/list.h"
#include "phnctl/text/counted.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/table.h"
#include "system/system.h"

#include <fmt/format.h>

namespace phnctl {

namespace {

constexpr const char* kPdu = "--pdu";
constexpr const char* kJson = "json";

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

void ShowAll(const Invocation& invocation, const Handset& handset, const std::vector<StoredMessage>& messages)
{
    if (invocation.options.json)
        return fmt::print("{}", MessagesJson(messages));
    if (!messages.empty())
        fmt::print("{}\n", MessagesTable(messages, LabelsOf(invocation.options, handset), host::TerminalWidth(stdout)));
    fmt::print("{}\n", Counted(messages.size(), "message"));
}

int List(const Invocation& invocation)
{
    return WithHandset(invocation.options, [&](const Handset& handset) {
        ShowAll(invocation, handset, ReadMessages(handset, BoxesOf(invocation)));
    });
}

int Export(const Invocation& invocation)
{
    const bool isSheet = WantsCsv(invocation, kJson);
    return WithHandset(invocation.options, [&](const Handset& handset) {
        const std::vector<StoredMessage> messages = ReadMessages(handset, BoxesOf(invocation));
        const std::string text =
            isSheet ? MessagesSheet(messages, LabelsOf(invocation.options, handset)) : MessagesJson(messages);
        WriteExport(invocation, text, messages.size(), "message");
    });
}

// Its text, the other party and whom to call back.
std::vector<std::string> Sought(const StoredMessage& message)
{
    const PduContent& content = message.pdu.content;
    return {content.text.value_or(""), content.from.value_or(""), content.to.value_or(""),
            content.callback.value_or("")};
}

int Find(const Invocation& invocation)
{
    const Wanted wanted(invocation);
    int status = kDone;
    WithHandset(invocation.options, [&](const Handset& handset) {
        std::vector<StoredMessage> messages = ReadMessages(handset, Boxes(std::nullopt));
        std::erase_if(messages, [&](const StoredMessage& message) { return !wanted.IsIn(Sought(message)); });
        status = messages.empty() ? kRefused : kDone;
        if (messages.empty() && !invocation.options.json)
            fmt::print("No message has '{}'.\n", wanted.Shown());
        else
            ShowAll(invocation, handset, messages);
    });
    return status;
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

} // namespace

std::vector<Command> MessagesCommands()
{
    std::vector<Command> commands{
        {"messages", "List, read, send and delete short messages", "", {}, nullptr},
        {"messages count",
         "Count the messages of each box",
         "Boxes have their number, and the name that the label file of the model gives them.\n\n"
         "Example:\n  phnctl messages count\n",
         {BoxArgument()},
         ShowCounts},
        {"messages list",
         "List the messages of all boxes, or of one",
         "Times are local. With --json every message comes with its PDU. Whether one was read is not shown: the\n"
         "library does not tell.\n\n"
         "Examples:\n  phnctl messages list\n  phnctl messages list 0 --json\n",
         {BoxArgument()},
         List},
        {"messages find",
         "List the messages that have some words or a number",
         std::string(kFindDetails) +
             "\nExamples:\n  phnctl messages find noon\n  phnctl messages find 555-0142 --json\n",
         {WantedArgument()},
         Find},
        {"messages get",
         "Show one message",
         "Examples:\n  phnctl messages get 4\n  phnctl messages get 4 --pdu\n",
         {{"INDEX", "The index that 'list' shows", Count::One, {}}},
         Get,
         {{kPdu, "", "Its PDU in hexadecimal, for 'messages decode'"}}},
        {"messages export",
         "Write the messages of all boxes, or of one, to a file",
         "As JSON they are what 'list --json' answers; as CSV, a table for spreadsheets.\n\n"
         "Examples:\n  phnctl messages export messages.json\n  phnctl messages export inbox.csv 0 --format csv\n",
         {ExportArgument(), BoxArgument()},
         Export,
         ExportOptions(kJson)},
        {"messages send", "Send a message",
         "The text is one argument: put it in quotes. What 7-bit ASCII cannot carry is refused.\n\n"
         "Example:\n  phnctl messages send 5550142 \"The ferry is late\" --callback 5550100 --priority 2\n",
         MessageArguments(), Send, MessageOptions()},
        {"messages save", "Save a message on the handset without sending it",
         "As 'messages send'.\n\nExample:\n  phnctl messages save 5550142 \"The ferry is late\"\n", MessageArguments(),
         Save, MessageOptions()},
        {"messages mark",
         "Mark messages as read or unread",
         "The handset keeps the mark. The library does not tell it: 'list', 'get' and a backup are without it.\n\n"
         "Example:\n  phnctl messages mark read 4 7\n",
         {{"STATE", "read or unread", Count::One, {"read", "unread"}}, IndexesArgument()},
         Mark}};
    for (auto* list : {DeletingCommands, WorkbenchCommands})
        for (Command& command : list())
            commands.push_back(std::move(command));
    return commands;
}

} // namespace phnctl
