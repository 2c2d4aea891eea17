#include "phnctl/messages/pdu_meaning.h"

#include "phnctl/messages/bits.h"
#include "phnctl/messages/pdu_items.h"
#include "phnctl/text/counted.h"
#include "phnctl/text/text.h"

#include <fmt/format.h>
#include <iterator>

namespace phnctl {

namespace {

using Bytes = std::span<const std::uint8_t>;

// The meaning of an item's data; nothing when the data does not hold it.
using Meaning = std::optional<std::string>;

// NUM_FIELDS and as many characters of `width` bits.
std::optional<std::string> TakeText(BitReader& bits, unsigned width)
{
    const auto count = bits.Take(8);
    std::string text;
    for (unsigned i = 0; count && i < *count; ++i) {
        const auto character = bits.Take(width);
        if (!character)
            return std::nullopt;
        text += static_cast<char>(*character);
    }
    return count ? std::optional(text) : std::nullopt;
}

std::optional<std::string> TakeDigits(BitReader& bits)
{
    auto digits = TakeText(bits, 4);
    if (digits)
        for (char& digit : *digits)
            digit = "?1234567890*#???"[static_cast<unsigned char>(digit)];
    return digits;
}

Meaning ReadTeleservice(Bytes data, PduContent& content)
{
    const auto value = BitReader(data).Take(16);
    if (!value)
        return std::nullopt;
    content.teleservice = value;
    return fmt::format("{}{}", *value, *value == kCellularMessaging ? ", cellular messaging" : "");
}

// DIGIT_MODE, NUMBER_MODE; in the 8-bit form also the type and, for a telephone number, the plan.
Meaning ReadAddress(Bytes data, std::optional<std::string>& number)
{
    BitReader bits(data);
    const auto isText = bits.Take(1);
    const auto isNetworkAddress = bits.Take(1);
    if (!isNetworkAddress)
        return std::nullopt;
    if (!*isText) {
        number = TakeDigits(bits);
        return number ? Meaning(fmt::format("{} ({})", *number, Counted(number->size(), "digit"))) : std::nullopt;
    }
    const auto type = bits.Take(3);
    if (!*isNetworkAddress)
        bits.Take(4);
    const auto text = TakeText(bits, 8);
    if (!text)
        return std::nullopt;
    number = FromHandset(*text);
    return fmt::format("{} ({} of 8 bits, {} type {})", *number, Counted(text->size(), "character"),
                       *isNetworkAddress ? "address" : "number", *type);
}

Meaning ReadFrom(Bytes data, PduContent& content)
{
    return ReadAddress(data, content.from);
}

Meaning ReadTo(Bytes data, PduContent& content)
{
    return ReadAddress(data, content.to);
}

Meaning ReadBearerData(Bytes data, PduContent&)
{
    return Counted(data.size(), "byte");
}

Meaning ReadMessageIdentifier(Bytes data, PduContent&)
{
    constexpr const char* kTypes[] = {
        "reserved", "deliver", "submit", "cancellation", "delivery acknowledgement", "user acknowledgement"};
    BitReader bits(data);
    const auto type = bits.Take(4);
    const auto id = bits.Take(16);
    if (!id)
        return std::nullopt;
    return fmt::format("type {}, {}; message id {}", *type, *type < std::size(kTypes) ? kTypes[*type] : "reserved",
                       *id);
}

Meaning ReadUserData(Bytes data, PduContent& content)
{
    BitReader bits(data);
    const auto encoding = bits.Take(5);
    if (encoding && *encoding != kSevenBitAscii)
        return fmt::format("encoding {}, which is not read here", *encoding);
    content.text = encoding ? TakeText(bits, 7) : std::nullopt;
    return content.text
               ? Meaning(fmt::format("7-bit ASCII, {}: {}", Counted(content.text->size(), "character"), *content.text))
               : std::nullopt;
}

// Two decimal digits in one byte.
std::optional<unsigned> Decimal(unsigned byte)
{
    return byte >> 4 < 10 && (byte & 15) < 10 ? std::optional((byte >> 4) * 10 + (byte & 15)) : std::nullopt;
}

Meaning ReadTimeStamp(Bytes data, PduContent& content)
{
    PduTime time{};
    if (data.size() < time.size())
        return std::nullopt;
    for (std::size_t i = 0; i < time.size(); ++i) {
        const auto number = Decimal(data[i]);
        if (!number)
            return std::nullopt;
        time[i] = *number;
    }
    time[0] += time[0] >= 96 ? 1900 : 2000;
    content.time = time;
    return ShowTime(time);
}

Meaning ReadPriority(Bytes data, PduContent& content)
{
    content.priority = BitReader(data).Take(2);
    return content.priority ? Meaning(fmt::format("{}, {}", *content.priority, ShowPriority(*content.priority)))
                            : std::nullopt;
}

Meaning ReadReplyOption(Bytes data, PduContent& content)
{
    BitReader bits(data);
    bits.Take(1); // a user acknowledgement
    const auto report = bits.Take(1);
    if (!report)
        return std::nullopt;
    content.report = *report != 0;
    return *report ? "a delivery acknowledgement is wanted" : "no delivery acknowledgement";
}

Meaning ReadCallback(Bytes data, PduContent& content)
{
    BitReader bits(data);
    const auto isText = bits.Take(1);
    if (!isText) // and another one may have been read before
        return std::nullopt;
    if (*isText) {
        bits.Take(3);
        bits.Take(4);
        const auto text = TakeText(bits, 8);
        content.callback = text ? std::optional(FromHandset(*text)) : std::nullopt;
    } else {
        content.callback = TakeDigits(bits);
    }
    return content.callback ? Meaning(fmt::format("{} ({})", *content.callback,
                                                  Counted(content.callback->size(), *isText ? "character" : "digit")))
                            : std::nullopt;
}

struct Row
{
    unsigned level;
    std::uint8_t id;
    Meaning (*read)(Bytes data, PduContent& content);
};

constexpr Row kRows[] = {
    {0, parameter::kTeleservice, ReadTeleservice},
    {0, parameter::kOriginatingAddress, ReadFrom},
    {0, parameter::kDestinationAddress, ReadTo},
    {0, parameter::kBearerData, ReadBearerData},
    {1, subparameter::kMessageIdentifier, ReadMessageIdentifier},
    {1, subparameter::kUserData, ReadUserData},
    {1, subparameter::kTimeStamp, ReadTimeStamp},
    {1, subparameter::kPriority, ReadPriority},
    {1, subparameter::kReplyOption, ReadReplyOption},
    {1, subparameter::kCallbackNumber, ReadCallback},
};

} // namespace

void Explain(PduItem& item, PduContent& content, std::vector<std::string>& problems)
{
    item.meaning = ToHex(item.data);
    for (const Row& row : kRows) {
        if (row.level != item.level || row.id != item.id)
            continue;
        if (const Meaning meaning = row.read(item.data, content))
            item.meaning = *meaning;
        else
            problems.push_back(fmt::format("the {} at byte {} cannot be read: it is too short, or holds no such value",
                                           item.name, item.offset));
    }
}

} // namespace phnctl
