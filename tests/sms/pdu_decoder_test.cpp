// PDUs from the host: whatever the order of their items, whatever is wrong with them.
#include <gtest/gtest.h>

#include <algorithm>

#include "sms/message_bytes.h"
#include "sms/pdu_decoder.h"

namespace {

struct Decoded
{
    PHN_ERROR error = 0;
    std::u16string address{};
    std::u16string callback{};
    uint32_t priority = 0;
    uint32_t replyOption = 0;
    std::u16string body{};

    bool operator==(const Decoded&) const = default;
};

// Decodes a copy that ends where the PDU ends.
Decoded Decode(const Bytes& pdu)
{
    const std::unique_ptr<uint8_t[]> exact(new uint8_t[pdu.size()]);
    std::copy(pdu.begin(), pdu.end(), exact.get());
    PHN_SMS_MESSAGE host{0, exact.get(), static_cast<uint32_t>(pdu.size()), 0, 0};
    SMS_MESSAGE message;
    PHN_ERROR error = PHN_ERROR_NONE;
    if (!IS637ToText(&host, &message, &error)) {
        EXPECT_NE(error, PHN_ERROR_NONE);
        return {.error = error};
    }
    const SMS_RECORD& record = message.rcRecord;
    EXPECT_EQ(+record.dwBodySize, 2 * message.strBody.size());
    const DEV_DATE_TIME none{};
    EXPECT_EQ(std::memcmp(&record.rcTime, &none, sizeof none), 0);
    return {error,
            record.szAddress.GetWide(),
            record.szCallbackNumber.GetWide(),
            record.dwPriority,
            record.dwReplyOption,
            message.strBody};
}

Bytes Address(const std::string& codes)
{
    return Number(4, "00", codes);
}
Bytes Callback(const std::string& codes)
{
    return Number(0x0E, "0", codes);
}
Bytes UserData(const std::string& text)
{
    return Item(1, Bits(2, 5) + Bits(static_cast<unsigned>(text.size()), 8) + Characters(text, 7));
}

const Bytes kType{0};

TEST(PduDecoder, TakesItemsInAnyOrderAndSkipsUnknownOnes)
{
    const Bytes unknown = Item(0x77, std::string(80, '1'));
    const Bytes empty{0x55, 0};
    std::vector<Bytes> items{
        UserData("Hello"), Callback("\x05\x05\x05"), {8, 1, 0xC0}, {0x0A, 1, 0x7F}, unknown, empty};
    std::vector<size_t> order{0, 1, 2, 3, 4, 5};
    do {
        std::vector<Bytes> shuffled;
        for (const size_t i : order)
            shuffled.push_back(items[i]);
        const Bytes bearer = Group(8, shuffled);
        const Bytes teleservice{0, 2, 0x10, 2};
        const Bytes pdu = order[0] % 2 ? Join({kType, teleservice, bearer, empty, unknown, Address("\x0a")})
                                       : Join({kType, Item(0x99, std::string(255 * 8, '0')), Address("\x0a"), bearer});
        ASSERT_EQ(Decode(pdu), (Decoded{.address = u"0",
                                        .callback = u"555",
                                        .priority = 3,
                                        .replyOption = 1,
                                        .body = std::u16string(u"Hello\0", 6)}));
    } while (std::next_permutation(order.begin(), order.end()));
    // Codes without a digit and control codes become their pictures.
    EXPECT_EQ(Decode(Join({kType, Address("\x01\x0d\x0e\x0f"), Group(8, {UserData("\r\n\t~")})})),
              (Decoded{.address = ToWide("1\x0d\x0e\x0f"), .body = ToWide("\r\n\t~") + u'\0'}));
    // Of two items with one identifier the first counts; flags without data are as good as absent.
    EXPECT_EQ(Decode(Join({kType, Address("\x01"), Address("\x02"),
                           Group(8, {{8, 0}, {0x0A, 2, 0x80, 0xFF}, UserData("a"), UserData("b")})})),
              (Decoded{.address = u"1", .body = std::u16string(u"a\0", 2)}));
}

// A PDU that ends early, but not between two items, is rejected for the item that is not whole.
TEST(PduDecoder, RejectsPdusThatEndInsideAnItem)
{
    const Bytes address = Address("\x01\x02\x03");
    const Bytes bearer = Group(8, {UserData("Hello"), Callback("\x07\x07"), {8, 1, 0x40}, {0x0A, 1, 0x40}});
    const Bytes pdu = Join({kType, address, bearer});
    for (size_t length = 1; length < pdu.size(); ++length) {
        const PHN_ERROR cut =
            length > address.size() ? PHN_ERROR{PHN_ERROR_PDU_NOT_DECODABLE} : PHN_ERROR{PHN_ERROR_PDU_NO_DESTINATION};
        EXPECT_EQ(Decode(Bytes(pdu.begin(), pdu.begin() + static_cast<long>(length))).error,
                  length == 1 + address.size() ? 0 : cut)
            << length;
    }
}

} // namespace
