// The arguments of the messages commands: which messages are meant, and of what a message is made.
#pragma once

#include "phnctl/cli/command.h"
#include "phnctl/messages/list.h"
#include "phnctl/messages/pdu.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/number.h"
#include "phnctl/text/text.h"

#include <algorithm>
#include <fmt/format.h>

namespace phnctl {

inline Argument BoxArgument()
{
    return {"BOX", "The number of one box; all boxes without it", Count::Optional, {"0", "1", "2", "3", "4"}};
}

inline Argument IndexesArgument()
{
    return {"INDEX", "The indexes that 'list' shows", Count::Many, {}};
}

inline std::vector<std::int32_t> BoxesOf(const Invocation& invocation)
{
    const auto box = invocation.Value("BOX"); // a digit, by the argument's allowed values
    return Boxes(box ? std::optional<std::int32_t>((*box)[0] - '0') : std::nullopt);
}

// Throws Failure(kUsage).
inline std::vector<std::uint16_t> IndexesOf(const Invocation& invocation)
{
    std::vector<std::uint16_t> indexes;
    for (const std::string& text : invocation.values.at("INDEX")) {
        const auto number = ParseNumber(text, 0xFFFF);
        if (!number)
            throw Failure(kUsage, fmt::format("'{}' is no index of a message; allowed: 0 to 65535", Printable(text)));
        indexes.push_back(static_cast<std::uint16_t>(*number));
    }
    return indexes;
}

// NUMBER and TEXT; --callback, --priority, --report.
inline std::vector<Argument> MessageArguments()
{
    return {{"NUMBER",
             "The other party as it is dialled: digits, * and #, 00 or 011 instead of '+'; blanks, dots, hyphens and\n"
             "brackets are left out",
             Count::One,
             {}},
            {"TEXT", "Printable characters of 7-bit ASCII, in one argument", Count::One, {}}};
}

inline std::vector<CommandOption> MessageOptions()
{
    return {{"--callback", "NUMBER", "The number to call back"},
            {"--priority", "0|1|2|3", "0 normal (default), 1 interactive, 2 urgent, 3 emergency"},
            {"--report", "", "Ask for an acknowledgement of the delivery"}};
}

// A number without what people put between its digits.
inline std::string BareNumber(std::string number)
{
    std::erase_if(number, [](char c) { return std::string_view(" .-()").find(c) != std::string_view::npos; });
    return number;
}

// All but the other party. Throws Failure(kUsage).
inline PduContent MessageOf(const Invocation& invocation)
{
    PduContent content;
    content.text = *invocation.Value("TEXT");
    content.report = invocation.Has("--report");
    content.priority = 0;
    if (const auto callback = invocation.Value("--callback"))
        content.callback = BareNumber(*callback);
    if (const auto priority = invocation.Value("--priority")) {
        const auto number = ParseNumber(*priority, 3);
        if (!number)
            throw Failure(kUsage, fmt::format("'{}' is no priority; allowed: 0 to 3", Printable(*priority)));
        content.priority = static_cast<unsigned>(*number);
    }
    return content;
}

} // namespace phnctl
