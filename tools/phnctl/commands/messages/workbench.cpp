// messages decode and messages encode: PDUs explained and built, without a handset.
#include "phnctl/commands/messages/commands.h"
#include "phnctl/commands/messages/options.h"
#include "phnctl/messages/list.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/table.h"
#include "phnctl/text/text_file.h"

#include <cstdio>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace phnctl {

namespace {

constexpr const char* kDelivered = "--delivered";
constexpr const char* kTime = "--time";

std::string Table(const Pdu& pdu)
{
    std::vector<std::vector<std::string>> rows;
    if (pdu.type)
        rows.push_back(
            {"0", "1", "Message type", fmt::format("{}{}", *pdu.type, *pdu.type == 0 ? ", point-to-point" : "")});
    for (const PduItem& item : pdu.items)
        rows.push_back({std::to_string(item.offset), std::to_string(2 + item.data.size()),
                        fmt::format("{:{}}{} ({:02X})", "", 2 * item.level, item.name, item.id), item.meaning});
    return TableText({"Byte", "Length", "Field", "Meaning"}, rows, 0);
}

Json PduJson(const Pdu& pdu, const PduBytes& bytes)
{
    JsonList items;
    for (const PduItem& item : pdu.items)
        items.push_back({JsonObject{{"offset", {static_cast<std::int64_t>(item.offset)}},
                                    {"level", {std::int64_t{item.level}}},
                                    {"id", {std::int64_t{item.id}}},
                                    {"name", {item.name}},
                                    {"meaning", {item.meaning}},
                                    {"data", {ToHex(item.data)}}}});
    JsonList problems;
    for (const std::string& problem : pdu.problems)
        problems.push_back({problem});
    JsonObject object{{"pdu", {ToHex(bytes)}}, {"type", pdu.type ? Json{std::int64_t{*pdu.type}} : Json{nullptr}}};
    for (JsonMember& member : ContentJson(pdu.content))
        object.push_back(std::move(member));
    object.emplace_back("items", Json{std::move(items)});
    object.emplace_back("problems", Json{std::move(problems)});
    return {std::move(object)};
}

int Decode(const Invocation& invocation)
{
    const std::vector<std::string>& words = invocation.values.at("HEX");
    const bool isInput = words.size() == 1 && words.front() == "-";
    const PduBytes bytes = FromHex(isInput ? ReadText("-") : fmt::format("{}", fmt::join(words, " ")));
    const Pdu pdu = ReadPdu(bytes);
    if (invocation.options.json)
        fmt::print("{}\n", WriteJson(PduJson(pdu, bytes)));
    else if (pdu.type)
        fmt::print("{}", Table(pdu));
    std::fflush(stdout); // what was read comes before what is wrong
    for (const std::string& problem : pdu.problems)
        fmt::print(stderr, "phnctl: {}.\n", problem);
    return pdu.problems.empty() ? kDone : kRefused;
}

PduTime ParseTime(const std::string& text)
{
    constexpr unsigned kSmallest[] = {1996, 1, 1, 0, 0, 0};
    constexpr unsigned kLargest[] = {2095, 12, 31, 23, 59, 59};
    PduTime time{};
    char separator = 0;
    int length = 0;
    // NOLINTNEXTLINE(cert-err34-c): the widths keep the numbers small
    const int numbers = std::sscanf(text.c_str(), "%4u-%2u-%2u%c%2u:%2u:%2u%n", &time[0], &time[1], &time[2],
                                    &separator, &time[3], &time[4], &time[5], &length);
    bool isTime =
        numbers == 7 && static_cast<std::size_t>(length) == text.size() && (separator == ' ' || separator == 'T');
    for (std::size_t i = 0; i < time.size(); ++i)
        isTime = isTime && time[i] >= kSmallest[i] && time[i] <= kLargest[i];
    if (!isTime)
        throw Failure(kUsage, fmt::format("'{}' is no time; allowed is one such as 2026-01-02T13:45:00, of the years "
                                          "1996 to 2095",
                                          Printable(text)));
    return time;
}

int Encode(const Invocation& invocation)
{
    PduContent content = MessageOf(invocation);
    PduBytes bytes;
    if (invocation.Has(kDelivered)) {
        content.from = *invocation.Value("NUMBER");
        if (const auto time = invocation.Value(kTime))
            content.time = ParseTime(*time);
        bytes = WriteDelivered(content);
    } else {
        if (invocation.Has(kTime))
            throw Failure(kUsage, "--time belongs to --delivered: a message to send has none");
        content.to = BareNumber(*invocation.Value("NUMBER"));
        bytes = WriteOutgoing(content);
    }
    if (invocation.options.json)
        fmt::print("{}\n", WriteJson(PduJson(ReadPdu(bytes), bytes)));
    else
        fmt::print("{}\n", ToHex(bytes));
    return kDone;
}

} // namespace

std::vector<Command> WorkbenchCommands()
{
    std::vector<CommandOption> options = MessageOptions();
    options.push_back({kDelivered, "", "As the library delivers a stored message, from NUMBER, which may be any text"});
    options.push_back({kTime, "TIME", "The time stamp of a delivered message, such as 2026-01-02T13:45:00"});
    return {{"messages decode",
             "Explain a PDU field by field (no handset is needed)",
             "Takes PDUs of both directions. What is wrong with one is said, and the exit status is 1.\n\n"
             "Examples:\n  phnctl messages decode 000402004408080103100C10080180\n"
             "  phnctl messages encode 5550142 Hello | phnctl messages decode -\n",
             {{"HEX",
               "The bytes in hexadecimal, with or without blanks between them; - for standard input",
               Count::Many,
               {}}},
             Decode},
            {"messages encode", "Build a PDU (no handset is needed)",
             "As 'messages send' would, or as the library delivers one.\n\n"
             "Examples:\n  phnctl messages encode 5550142 \"The ferry is late\" --report\n"
             "  phnctl messages encode 5550142 Hello --delivered --time 2026-01-02T13:45:00 --json\n",
             MessageArguments(), Encode, options}};
}

} // namespace phnctl
