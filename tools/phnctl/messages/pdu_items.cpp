#include "phnctl/messages/pdu_items.h"

#include "phnctl/messages/pdu.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"

#include <fmt/format.h>
#include <iterator>
#include <string_view>

namespace phnctl {

namespace {

constexpr const char* kParameters[] = {"Teleservice Identifier", "Service Category",    "Originating Address",
                                       "Originating Subaddress", "Destination Address", "Destination Subaddress",
                                       "Bearer Reply Option",    "Cause Codes",         "Bearer Data"};
constexpr const char* kSubparameters[] = {"Message Identifier",
                                          "User Data",
                                          "User Response Code",
                                          "Message Center Time Stamp",
                                          "Validity Period, Absolute",
                                          "Validity Period, Relative",
                                          "Deferred Delivery Time, Absolute",
                                          "Deferred Delivery Time, Relative",
                                          "Priority Indicator",
                                          "Privacy Indicator",
                                          "Reply Option",
                                          "Number of Messages",
                                          "Alert on Message Delivery",
                                          "Language Indicator",
                                          "Call-Back Number"};

} // namespace

std::string ItemName(unsigned level, std::uint8_t id)
{
    if (level == 0)
        return id < std::size(kParameters) ? kParameters[id] : "Unknown item";
    return id < std::size(kSubparameters) ? kSubparameters[id] : "Unknown item";
}

std::string ShowTime(const PduTime& time)
{
    return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}", time[0], time[1], time[2], time[3], time[4], time[5]);
}

std::string ShowPriority(unsigned priority)
{
    constexpr const char* kNames[] = {"normal", "interactive", "urgent", "emergency"};
    return kNames[priority & 3];
}

std::string ToHex(std::span<const std::uint8_t> bytes)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(2 * bytes.size());
    for (const std::uint8_t byte : bytes) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

PduBytes FromHex(const std::string& text)
{
    PduBytes bytes;
    unsigned digits = 0;
    unsigned value = 0;
    for (const char c : text) {
        const std::size_t digit = std::string("0123456789abcdefABCDEF").find(c);
        if (std::string_view(" \t\r\n").find(c) != std::string_view::npos && digits == 0)
            continue;
        if (digit == std::string::npos)
            throw Failure(kUsage,
                          fmt::format("'{}' is no PDU: allowed are pairs of hexadecimal digits", Printable(text)));
        value = value << 4 | static_cast<unsigned>(digit < 16 ? digit : digit - 6);
        digits = (digits + 1) % 2;
        if (digits == 0)
            bytes.push_back(static_cast<std::uint8_t>(value));
    }
    if (digits != 0)
        throw Failure(kUsage, fmt::format("'{}' is no PDU: the last byte has one digit only", Printable(text)));
    return bytes;
}

} // namespace phnctl
