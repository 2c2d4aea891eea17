#include "phnctl/messages/bits.h"
#include "phnctl/messages/pdu.h"
#include "phnctl/messages/pdu_items.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"

#include <algorithm>
#include <fmt/format.h>

namespace phnctl {

namespace {

constexpr std::size_t kLongestNumber = 36;
constexpr const char* kInsteadOfPlus =
    "A message carries no '+'. Write the number as it is dialled: instead of '+' the prefix for calls abroad, such as\n"
    "00 or 011, then country code and number.";
constexpr std::size_t kLongestData = 255; // of an item, whose length is one byte

void Append(PduBytes& bytes, std::uint8_t id, const PduBytes& data)
{
    bytes.push_back(id);
    bytes.push_back(static_cast<std::uint8_t>(data.size()));
    bytes.insert(bytes.end(), data.begin(), data.end());
}

void PutText(BitWriter& bits, const std::string& text, unsigned width)
{
    bits.Put(static_cast<unsigned>(text.size()), 8);
    for (const char character : text)
        bits.Put(static_cast<unsigned char>(character), width);
}

// As the DTMF codes of its digits.
std::string Codes(const std::string& number)
{
    constexpr std::string_view kDigits = "1234567890*#"; // codes 1 to 12
    std::string codes;
    for (const char digit : number) {
        const std::size_t code = kDigits.find(digit);
        if (code == kDigits.npos)
            throw Failure(
                kUsage, fmt::format("'{}' cannot be a number here: allowed are the digits, * and #", Printable(number)),
                digit == '+' ? kInsteadOfPlus : "");
        codes += static_cast<char>(code + 1);
    }
    if (codes.empty() || codes.size() > kLongestNumber)
        throw Failure(kUsage, fmt::format("'{}' has {} digits; allowed are 1 to {}", Printable(number), codes.size(),
                                          kLongestNumber));
    return codes;
}

PduBytes Destination(const std::string& number)
{
    BitWriter bits;
    bits.Put(0, 2); // DIGIT_MODE, NUMBER_MODE
    PutText(bits, Codes(number), 4);
    return bits.Bytes();
}

PduBytes Origin(const std::string& address)
{
    const std::string text = ToHandset(address);
    if (text.size() > kLongestNumber)
        throw Failure(kUsage, fmt::format("'{}' has {} characters; allowed are {}", Printable(address), text.size(),
                                          kLongestNumber));
    BitWriter bits;
    bits.Put(0b11010, 5); // DIGIT_MODE, NUMBER_MODE, NUMBER_TYPE
    PutText(bits, text, 8);
    return bits.Bytes();
}

PduBytes Callback(const std::string& number)
{
    BitWriter bits;
    bits.Put(0, 1); // DIGIT_MODE
    PutText(bits, Codes(number), 4);
    if (number.size() == 1)
        bits.Put(0, 8); // as the library does
    return bits.Bytes();
}

PduBytes UserData(const std::string& text)
{
    BitWriter bits;
    bits.Put(kSevenBitAscii, 5);
    PutText(bits, text, 7);
    if (bits.Count() % 8 == 0)
        bits.Put(0, 8); // as the library does
    return bits.Bytes();
}

PduBytes MessageIdentifier(unsigned type, unsigned id)
{
    BitWriter bits;
    bits.Put(type, 4);
    bits.Put(id, 16);
    bits.Put(0, 4);
    return bits.Bytes();
}

PduBytes TimeStamp(const PduTime& time)
{
    PduBytes bytes;
    for (const unsigned number : time)
        bytes.push_back(static_cast<std::uint8_t>(number / 10 % 10 << 4 | number % 10));
    return bytes;
}

void CheckText(const std::string& text)
{
    std::size_t position = 1;
    for (std::string_view rest = text; !rest.empty(); ++position) {
        const std::string_view character = rest.substr(0, CharacterLength(rest));
        if (character[0] < ' ' || character[0] > '~')
            throw Failure(kUsage, fmt::format("the text cannot be carried: its character {}, '{}', is none of the "
                                              "printable ones of 7-bit ASCII",
                                              position, Printable(character)));
        rest.remove_prefix(character.size());
    }
}

// The most characters whose user data, identifier and length included, fits in `room` bytes.
std::size_t Fitting(std::size_t room)
{
    return std::min<std::size_t>((8 * (room - 2) - 14) / 7, 255);
}

PduBytes BearerData(const PduContent& content, const PduBytes& identifier)
{
    PduBytes data;
    Append(data, subparameter::kMessageIdentifier, identifier);
    if (content.priority)
        Append(data, subparameter::kPriority, {static_cast<std::uint8_t>(*content.priority << 6)});
    if (content.report)
        Append(data, subparameter::kReplyOption, {static_cast<std::uint8_t>(*content.report << 6)});
    if (content.time)
        Append(data, subparameter::kTimeStamp, TimeStamp(*content.time));
    if (content.callback)
        Append(data, subparameter::kCallbackNumber, Callback(*content.callback));
    if (!content.text)
        return data;
    CheckText(*content.text);
    const std::size_t fitting = Fitting(kLongestData - data.size());
    if (content.text->size() > fitting)
        throw Failure(kUsage, fmt::format("the text is too long: it has {} characters, and {} fit in this message",
                                          content.text->size(), fitting));
    Append(data, subparameter::kUserData, UserData(*content.text));
    return data;
}

PduBytes Head()
{
    PduBytes pdu{0}; // point-to-point
    Append(pdu, parameter::kTeleservice,
           {static_cast<std::uint8_t>(kCellularMessaging >> 8), static_cast<std::uint8_t>(kCellularMessaging & 0xFF)});
    return pdu;
}

} // namespace

PduBytes WriteOutgoing(const PduContent& content)
{
    if (content.text.value_or("").empty())
        throw Failure(kUsage, "a message without a text cannot be sent");
    PduContent sent = content;
    sent.time.reset();
    PduBytes pdu = Head();
    Append(pdu, parameter::kDestinationAddress, Destination(content.to.value_or("")));
    Append(pdu, parameter::kBearerData, BearerData(sent, MessageIdentifier(kSubmit, 1)));
    return pdu;
}

PduBytes WriteDelivered(const PduContent& content)
{
    PduBytes pdu = Head();
    Append(pdu, parameter::kOriginatingAddress, Origin(content.from.value_or("")));
    Append(pdu, parameter::kBearerData, BearerData(content, MessageIdentifier(kDeliver, 2)));
    return pdu;
}

} // namespace phnctl
