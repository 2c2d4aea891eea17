// What a PDU's conversion takes from its surroundings: the time zone; and the lines that it leaves in the log.
#include <cstdlib>
#include <cstring>
#include <tuple>

#include "link/scripted_port.h"
#include "sms/message_bytes.h"
#include "sms/pdu_decoder.h"
#include "sms/pdu_encoder.h"

// A time that does not exist is written as it is, a date that is not full not at all.
TEST(PduTime, IsTheLocalTimeOfTheHandsetsUtc)
{
    constexpr const char* kNewYork = "EST5EDT,M3.2.0,M11.1.0";
    const std::tuple<const char*, Record, Bytes> cases[] = {
        {kNewYork,
         {.year = 2009, .month = 1, .day = 1, .hour = 4, .minute = 59, .second = 59},
         {3, 6, 0x08, 0x12, 0x31, 0x23, 0x59, 0x59}},
        {"<+1245>-12:45", {.year = 2099, .month = 12, .day = 31, .hour = 23}, {3, 6, 0, 1, 1, 0x11, 0x45, 0}},
        {"UTC0", {.month = 3, .day = 15, .hour = 12}, {}},
        {"UTC0", {.year = 2009, .day = 15, .hour = 12}, {}},
        {"UTC0", {.year = 2009, .month = 3, .hour = 12}, {}},
        {"UTC0",
         {.year = 2009, .month = 13, .day = 45, .hour = 27, .minute = 61, .second = 59},
         {3, 6, 0x09, 0x13, 0x45, 0x27, 0x61, 0x59}},
        {"UTC0",
         {.year = 65535, .month = 255, .day = 255, .hour = 255, .minute = 255, .second = 65499},
         {3, 6, 0x35, 0x55, 0x55, 0x55, 0x55, 0x19}},
    };
    for (const auto& [zone, record, stamp] : cases) {
        setenv("TZ", zone, 1);
        SMS_MESSAGE message;
        std::memcpy(&message.rcRecord, ToBytes(record).data(), sizeof message.rcRecord);
        Bytes buffer(64);
        PHN_SMS_MESSAGE host{0, buffer.data(), 64, 0, 0};
        PHN_ERROR error = PHN_ERROR_NONE;
        ASSERT_TRUE(TextToIS637(&host, message, &error));
        EXPECT_EQ(Bytes(buffer.begin() + 19, buffer.begin() + host.uSizeofData), stamp) << zone;
    }
    unsetenv("TZ");
}

TEST(PduLines, EachReasonHasItsOwnAndItsCode)
{
    LogCapture log(0xFFFFF);
    const std::string_view address = "IS637AddressDecoder - pAddress is NULL.";
    const std::string_view body = "IS637UserDataDecoder - pUserData is NULL.";
    const std::string_view callback = "IS637CallbackNumberDecoder - pCallbackNumber is NULL.";
    const Bytes known{0, 4, 2, 0x00, 0x44}; // the digit 1
    const auto bearer = [&](const Bytes& item) { return Join({known, Group(8, {item})}); };
    constexpr PHN_ERROR kDecodable = PHN_ERROR_PDU_NOT_DECODABLE;
    constexpr PHN_ERROR kNumber = PHN_NETWORK_ERROR_1X_CO_ACCESS_FAILURE;
    const char* const noAddress = "IS637ToText - nDestAddrLen is 0.";
    const char* const otherAddress = "IS637AddressDecoder - Address parameter is not a 4 bit DTMF data encoded.";
    const char* const badAddress = "IS637ToText - Unable to decode Destination Address parameter";
    const char* const noBody = "IS637ToText - nMsgBodyLen is 0.";
    const char* const otherBody = "IS637UserDataDecoder - IS637 PDU message encoding is not 7-bit ASCII.";
    const char* const badCallback = "IS637ToText - Unable to decode Call Back Number subparameter.";
    const std::tuple<Bytes, PHN_ERROR, std::vector<std::string_view>> cases[] = {
        {{1}, kDecodable, {"IS637ToText - This PDU is not a point-to-poind SMS data"}},
        {{0}, PHN_ERROR_PDU_NO_DESTINATION, {"IS637ToText - Destination Address parameter not found"}},
        {{0, 4, 2, 0x40, 0x44}, kNumber, {otherAddress, noAddress}}, // data network
        {{0, 4, 2, 0x80, 0x40}, kNumber, {otherAddress, noAddress}}, // 8-bit
        {{0, 4, 2, 0x00, 0x00}, kNumber, {address, noAddress}},
        {{0, 4, 0}, kNumber, {address, badAddress}},
        {{0, 4, 2, 0x00, 0x80}, kNumber, {address, badAddress}},
        {Join({{0}, Number(4, "00", std::string(37, '\x01'))}), kNumber, {address, badAddress}},
        {known, 0, {address, "IS637ToText - Bearer data parameter not found."}},
        {bearer({0, 3, 0x10, 0, 0x20}), 0, {address}},
        {bearer({1, 3, 0x08, 0x08, 0}), kDecodable, {address, otherBody, noBody}},
        {bearer({1, 2, 0x10, 0x00}), kDecodable, {address, body, noBody}},
        {bearer({1, 2, 0x10, 0x08}),
         kDecodable,
         {address, body, "IS637ToText - Unable to decode User Data subparameter."}},
        {bearer({0x0E, 2, 0x80, 0x88}),
         kNumber,
         {address, "IS637CallbackNumberDecoder - Parameter is not a 4 bit DTMF data encoded.",
          "IS637ToText - nCallBackNumLen is 0."}},
        {bearer({0x0E, 2, 0x00, 0x00}), kNumber, {address, callback, "IS637ToText - nCallBackNumLen is 0."}},
        {bearer({0x0E, 2, 0x01, 0x08}), kNumber, {address, callback, badCallback}},
        {bearer(Number(0x0E, "0", std::string(37, '\x01'))), kNumber, {address, callback, badCallback}},
        {bearer({0x0E, 2, 0x00, 0x88}), 0, {address, callback}},
        {Join({known, {8, 3}}), kDecodable, {address, "IS637ToText - Item 8(0x8) runs past the end of the PDU."}},
        {bearer({8, 9}), kDecodable, {address, "IS637ToText - Item 8(0x8) runs past the end of the PDU."}},
        {bearer({0x0A, 9}), kDecodable, {address, "IS637ToText - Item 10(0xA) runs past the end of the PDU."}},
        {Bytes(), PHN_ERROR_INVALID_PARAMETER, {}}, // the caller's line is the only one
    };
    for (auto [pdu, code, texts] : cases) {
        PHN_SMS_MESSAGE host{0, pdu.data(), static_cast<uint32_t>(pdu.size()), 0, 0};
        SMS_MESSAGE message;
        PHN_ERROR error = PHN_ERROR_NONE;
        EXPECT_EQ(IS637ToText(&host, &message, &error), code == 0);
        EXPECT_EQ(error, code) << testing::PrintToString(pdu);
        Lines lines;
        for (const std::string_view text : texts)
            lines.push_back("CSMS Error " + std::string(text));
        EXPECT_EQ(log.TakeLines(), lines) << testing::PrintToString(pdu);
    }

    SMS_MESSAGE message;
    message.strBody = std::u16string(300, u'x');
    message.rcRecord.dwBodySize = 600;
    Bytes buffer(300);
    PHN_SMS_MESSAGE host{0, buffer.data(), 200, 0, 0};
    PHN_ERROR error = PHN_ERROR_NONE;
    EXPECT_FALSE(TextToIS637(&host, message, &error));
    EXPECT_EQ(log.TakeLines(),
              (Lines{"CSMS Error TextToIS637 - Body of 300 characters is cut to the 255 that a PDU can hold.",
                     "CSMS Error TextToIS637 - uSizeofData(200, 0xC8) is less than the PDU's length(246, 0xF6)."}));
}
