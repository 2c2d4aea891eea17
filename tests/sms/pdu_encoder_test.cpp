// PDUs for the host: bit by bit, in the fixed order of their items.
#include <gtest/gtest.h>

#include <cstring>

#include "sms/message_bytes.h"
#include "sms/pdu_encoder.h"

namespace {

const Bytes kHead{0, 0, 2, 0x10, 2};
const Bytes kIdentifier{0, 3, 0x10, 0, 0x20};
const Bytes kNoPriority{8, 1, 0};
const Bytes kNoAddress{2, 2, 0xD0, 0};

// The PDU of a record, in a buffer of exactly `room` bytes; empty if it does not fit.
Bytes Encode(const Record& record, size_t room = 500)
{
    const Bytes bytes = ToBytes(record);
    SMS_MESSAGE message;
    std::memcpy(&message.rcRecord, bytes.data(), sizeof message.rcRecord);
    message.strBody = record.body;
    Bytes buffer(room, 0xAA);
    PHN_SMS_MESSAGE host{0, buffer.data(), static_cast<uint32_t>(room), 0, 0};
    PHN_ERROR error = PHN_ERROR_NONE;
    const bool encoded = TextToIS637(&host, message, &error);
    EXPECT_EQ(error, encoded ? 0u : PHN_ERROR{PHN_ERROR_BUFFER_TOO_SMALL});
    EXPECT_EQ(Bytes(buffer.begin() + (encoded ? host.uSizeofData : 0), buffer.end()),
              Bytes(room - (encoded ? host.uSizeofData : 0), 0xAA));
    if (!encoded)
        return Bytes();
    buffer.resize(host.uSizeofData);
    return buffer;
}

Bytes Pdu(const Bytes& address, const std::vector<Bytes>& items)
{
    return Join({kHead, address, Group(8, items)});
}

Bytes Address(const std::string& digits)
{
    return Item(2, Bits(0b11010, 5) + Bits(static_cast<unsigned>(digits.size()), 8) + Characters(digits, 8));
}

// With a byte more where the text ends at a byte boundary.
Bytes UserData(const std::string& text)
{
    return Item(1, Bits(2, 5) + Bits(static_cast<unsigned>(text.size()), 8) + Characters(text, 7),
                (13 + 7 * text.size()) / 8 + 1);
}

std::u16string Body(const std::string& text)
{
    return Widen(text) + u'\0';
}

TEST(PduEncoder, WritesAWholePduToTheByte)
{
    const Bytes expected{0x00, 0x00, 0x02, 0x10, 0x02, 0x02, 0x09, 0xD0, 0x39, 0xA9, 0xA9, 0xA9,
                         0x89, 0x91, 0x99, 0xA0, 0x08, 0x11, 0x00, 0x03, 0x10, 0x00, 0x20, 0x08,
                         0x01, 0x00, 0x0A, 0x01, 0x00, 0x01, 0x04, 0x10, 0x14, 0x8D, 0x20};
    for (const size_t room : {500u, 35u, 34u, 1u})
        EXPECT_EQ(Encode({.address = u"5551234", .body = Body("Hi")}, room), room >= 35 ? expected : Bytes());
}

// Without an address there is no reply option; what does not fit its field loses its high bits.
TEST(PduEncoder, WritesTheFlags)
{
    const auto expect = [](uint32_t priority, uint32_t reply, uint8_t priorityByte, uint8_t replyByte) {
        EXPECT_EQ(Encode({.replyOption = reply, .address = u"0", .priority = priority}),
                  Pdu(Address("0"), {kIdentifier, {8, 1, priorityByte}, {0x0A, 1, replyByte}}));
        EXPECT_EQ(Encode({.replyOption = reply, .priority = priority}),
                  Pdu(kNoAddress, {kIdentifier, {8, 1, priorityByte}}));
    };
    expect(0, 1, 0, 0x40);
    expect(1, 0, 0x40, 0);
    expect(0xFFFFFFFE, 0x80000003, 0x80, 0xC0);
}

// A text ends at its first zero unit, at its field's end, or at the end of the body, whichever comes first.
TEST(PduEncoder, TextsEndWhereTheyEnd)
{
    const std::string full(36, '5');
    const auto expect = [&](const std::u16string& callback, const std::u16string& body, const Bytes& item) {
        EXPECT_EQ(Encode({.address = Widen(full), .callback = callback, .body = body}),
                  Pdu(Address(full), {kIdentifier, kNoPriority, {0x0A, 1, 0}, item}));
    };
    expect(Widen(full), u"", Number(0x0E, "0", full));
    expect(u"01*#9?\x0f\xff", u"", Number(0x0E, "0", "\x0a\x01\x0b\x0c\x09\x0f\x0f\x0f")); // every kind of character
    expect(u"", u"Hi", UserData("Hi"));
    expect(u"", std::u16string(u"Hi\0\0x", 5), UserData("Hi"));
    expect(u"", std::u16string(1, u'\0'), UserData(""));
    // Characters beyond 7 bits keep their low bits and harm no neighbour.
    expect(u"", u"\u00FF\u00FF!", UserData("\x7F\x7F!"));
}

TEST(PduEncoder, CutsABodyToWhatTheLengthBytesCanSay)
{
    const std::string full(36, '5');
    const auto encode = [&](size_t digits) {
        return Encode({.year = 2009,
                       .month = 14,
                       .day = 1,
                       .address = Widen(full),
                       .callback = Widen(full.substr(0, digits)),
                       .body = Body(std::string(255, 'x'))});
    };
    for (const size_t length : {255u, 256u, 4000u})
        EXPECT_EQ(Encode({.body = Body(std::string(length, 'x'))}),
                  Pdu(kNoAddress, {kIdentifier, kNoPriority, UserData(std::string(255, 'x'))}));
    // With every other item at its longest, 240 characters fill the Bearer Data to its last byte.
    const Bytes pdu = encode(36);
    const Bytes time{3, 6, 9, 0x14, 1, 0, 0, 0};
    EXPECT_EQ(
        pdu,
        Pdu(Address(full),
            {kIdentifier, kNoPriority, {0x0A, 1, 0}, time, Number(0x0E, "0", full), UserData(std::string(240, 'x'))}));
    EXPECT_EQ(pdu[kHead.size() + 2 + 38 + 1], 255);
    // 245 would end on a byte boundary and need one byte more than there is.
    const Bytes tight = encode(29);
    EXPECT_EQ(Bytes(tight.end() - 218, tight.end()), UserData(std::string(244, 'x')));
}

} // namespace
