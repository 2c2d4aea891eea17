// What a PDU's conversion takes from its surroundings: the time zone; and the lines that it leaves in the log.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <tuple>

#include "link/scripted_port.h"
#include "sms/message_bytes.h"
#include "sms/pdu_decoder.h"
#include "sms/pdu_encoder.h"

namespace {

TEST(PduTime, IsTheLocalTimeOfTheHandsetsUtc)
{
    const std::tuple<const char*, Record, Bytes> cases[] = {
        {"UTC0", {.year = 2009, .month = 3, .day = 15, .hour = 12}, {0x09, 0x03, 0x15, 0x12, 0, 0}},
        {"EST5EDT,M3.2.0,M11.1.0",
         {.year = 2009, .month = 7, .day = 4, .hour = 14, .minute = 5, .second = 3},
         {0x09, 0x07, 0x04, 0x10, 0x05, 0x03}},
        {"EST5EDT,M3.2.0,M11.1.0",
         {.year = 2009, .month = 1, .day = 1, .hour = 4, .minute = 59, .second = 59},
         {0x08, 0x12, 0x31, 0x23, 0x59, 0x59}},
        {"<+1245>-12:45", {.year = 2099, .month = 12, .day = 31, .hour = 23}, {0x00, 0x01, 0x01, 0x11, 0x45, 0}},
    };
    for (const auto& [zone, record, stamp] : cases) {
        setenv("TZ", zone, 1);
        SMS_MESSAGE message;
        std::memcpy(&message.rcRecord, ToBytes(record).data(), sizeof message.rcRecord);
        Bytes buffer(64);
        PHN_SMS_MESSAGE host{};
        host.pIS637Data = buffer.data();
        host.uSizeofData = 64;
        PHN_ERROR error = PHN_ERROR_NONE;
        ASSERT_TRUE(TextToIS637(&host, message, &error));
        ASSERT_EQ(+host.uSizeofData, 27u);
        EXPECT_EQ(Bytes(buffer.begin() + 21, buffer.begin() + 27), stamp) << zone;
    }
    unsetenv("TZ");
}

TEST(PduLines, EachReasonHasItsOwn)
{
    LogCapture log(0xFFFFF);
    const std::string_view address = "IS637AddressDecoder - pAddress is NULL.";
    const std::string_view body = "IS637UserDataDecoder - pUserData is NULL.";
    const std::string_view callback = "IS637CallbackNumberDecoder - pCallbackNumber is NULL.";
    const Bytes known{0, 4, 2, 0x00, 0x44}; // the digit 1
    const auto bearer = [&](const Bytes& item) { return Join({known, Group(8, {item})}); };
    const std::tuple<Bytes, std::vector<std::string_view>> cases[] = {
        {{1, 4, 2, 0x00, 0x44}, {"IS637ToText - This PDU is not a point-to-poind SMS data"}},
        {{0, 8, 0}, {"IS637ToText - Destination Address parameter not found"}},
        {{0, 4, 2, 0x40, 0x44},
         {"IS637AddressDecoder - Address parameter is not a 4 bit DTMF data encoded.",
          "IS637ToText - nDestAddrLen is 0."}},
        {{0, 4, 2, 0x00, 0x00}, {address, "IS637ToText - nDestAddrLen is 0."}},
        {{0, 4, 2, 0x00, 0x80}, {address, "IS637ToText - Unable to decode Destination Address parameter"}},
        {known, {address, "IS637ToText - Bearer data parameter not found."}},
        {bearer({0, 3, 0x10, 0, 0x20}), {address}},
        {bearer({1, 3, 0x08, 0x08, 0}),
         {address, "IS637UserDataDecoder - IS637 PDU message encoding is not 7-bit ASCII.",
          "IS637ToText - nMsgBodyLen is 0."}},
        {bearer({1, 2, 0x10, 0x00}), {address, body, "IS637ToText - nMsgBodyLen is 0."}},
        {bearer({1, 2, 0x10, 0x08}), {address, body, "IS637ToText - Unable to decode User Data subparameter."}},
        {bearer({0x0E, 2, 0x80, 0x88}),
         {address, "IS637CallbackNumberDecoder - Parameter is not a 4 bit DTMF data encoded.",
          "IS637ToText - nCallBackNumLen is 0."}},
        {bearer({0x0E, 2, 0x00, 0x00}), {address, callback, "IS637ToText - nCallBackNumLen is 0."}},
        {bearer({0x0E, 2, 0x01, 0x08}),
         {address, callback, "IS637ToText - Unable to decode Call Back Number subparameter."}},
        {bearer({0x0E, 2, 0x00, 0x88}), {address, callback}},
        {{}, {}}, // the caller's line is the only one
    };
    for (auto [pdu, texts] : cases) {
        PHN_SMS_MESSAGE host{};
        host.pIS637Data = pdu.data();
        host.uSizeofData = static_cast<uint32_t>(pdu.size());
        SMS_MESSAGE message;
        PHN_ERROR error = PHN_ERROR_NONE;
        IS637ToText(&host, &message, &error);
        Lines lines;
        for (const std::string_view text : texts)
            lines.push_back("CSMS Error " + std::string(text));
        EXPECT_EQ(log.TakeLines(), lines) << testing::PrintToString(pdu);
    }

    SMS_MESSAGE message;
    message.strBody = std::u16string(300, u'x');
    message.rcRecord.dwBodySize = 600;
    Bytes buffer(300);
    PHN_SMS_MESSAGE host{};
    host.pIS637Data = buffer.data();
    host.uSizeofData = 200;
    PHN_ERROR error = PHN_ERROR_NONE;
    EXPECT_FALSE(TextToIS637(&host, message, &error));
    EXPECT_EQ(log.TakeLines(),
              (Lines{"CSMS Error TextToIS637 - Body of 300 characters is cut to the 255 that a PDU can hold.",
                     "CSMS Error TextToIS637 - uSizeofData(200, 0xC8) is less than the PDU's length(246, 0xF6)."}));
}

} // namespace
