// The tool's PDU reader and writer beside the library's: neither knows the other, and both must agree to the byte.
#include "phnctl/messages/pdu.h"

#include "phnctl/text/failure.h"
#include "sms/pdu_decoder.h"
#include "sms/pdu_encoder.h"

#include <gtest/gtest.h>
#include <tuple>

namespace {

using namespace phnctl;

PduBytes FromLibrary(const PduContent& content)
{
    SMS_MESSAGE message;
    SMS_RECORD& record = message.rcRecord;
    record.szAddress.SetText(content.from.value_or(""));
    record.szCallbackNumber.SetText(content.callback.value_or(""));
    record.dwPriority = content.priority.value_or(0);
    record.dwReplyOption = content.report.value_or(false);
    if (const auto& time = content.time)
        record.rcTime = {static_cast<uint8_t>((*time)[3]),  static_cast<uint8_t>((*time)[4]),
                         static_cast<uint16_t>((*time)[5]), static_cast<uint8_t>((*time)[2]),
                         static_cast<uint8_t>((*time)[1]),  static_cast<uint16_t>((*time)[0])};
    if (content.text) {
        message.strBody = ToWide(*content.text) + u'\0';
        record.dwBodySize = static_cast<uint32_t>(2 * message.strBody.size());
    }
    PduBytes buffer(512);
    PHN_SMS_MESSAGE host{sizeof host, buffer.data(), 512, 0, 0};
    PHN_ERROR error = PHN_ERROR_NONE;
    EXPECT_TRUE(TextToIS637(&host, message, &error));
    buffer.resize(host.uSizeofData);
    return buffer;
}

const std::string kDigits = "1234567890*#1234567890*#1234567890*#";

TEST(ToolPdu, DeliveredMessagesAreTheLibrarysToTheByte)
{
    setenv("TZ", "UTC0", 1);
    std::string text;
    for (unsigned length = 0; length <= 160; ++length) {
        PduContent content{.teleservice = 4098, .from = kDigits.substr(0, length), .priority = length % 4};
        content.text = text;
        if (length) {
            content.report = length % 2 == 0;
            content.callback = content.from;
        }
        if (length % 3)
            content.time = PduTime{2009, 1 + length % 12, 28, 23, 59, 7};
        const PduBytes bytes = WriteDelivered(content);
        EXPECT_EQ(ToHex(bytes), ToHex(FromLibrary(content))) << length;
        const Pdu read = ReadPdu(bytes);
        EXPECT_EQ(read.content, content) << length;
        EXPECT_EQ(read.problems, std::vector<std::string>());
        text += static_cast<char>(' ' + length % 0x5F);
    }
}

// What the library takes of a PDU, in the reader's words; nothing when it fails.
std::optional<PduContent> TakenByLibrary(PduBytes bytes)
{
    PHN_SMS_MESSAGE host{sizeof host, bytes.data(), static_cast<uint32_t>(bytes.size()), 0, 0};
    SMS_MESSAGE message;
    PHN_ERROR error = PHN_ERROR_NONE;
    if (!IS637ToText(&host, &message, &error))
        return std::nullopt;
    PduContent content{.to = message.rcRecord.szAddress.GetText()};
    if (const std::string callback = message.rcRecord.szCallbackNumber.GetText(); !callback.empty())
        content.callback = callback;
    if (!message.strBody.empty())
        content.text = std::string(message.strBody.begin(), message.strBody.end() - 1);
    content.priority = +message.rcRecord.dwPriority;
    content.report = message.rcRecord.dwReplyOption != 0;
    return content;
}

TEST(ToolPdu, TheLibraryTakesWhatIsToBeSent)
{
    for (unsigned length = 1; length <= 36; ++length) {
        const std::string number = kDigits.substr(0, length);
        PduContent content{.to = number, .priority = length % 4, .report = length % 2 != 0, .callback = number};
        content.text = std::string(6 * length, '~');
        EXPECT_EQ(TakenByLibrary(WriteOutgoing(content)), content) << length;
    }
}

TEST(ToolPdu, SaysWhatCannotBeCarried)
{
    const std::string full(36, '5');
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {full, std::string(255, 'x'), ""},
        {"1", std::string(256, 'x'), "the text is too long: it has 256 characters, and 255 fit in this message"},
        {"1", "na\xC3\xAFve",
         "the text cannot be carried: its character 3, '\xC3\xAF', is none of the printable ones of 7-bit ASCII"},
        {"1", "", "a message without a text cannot be sent"},
        {full + "5", "x", "'" + full + "5' has 37 digits; allowed are 1 to 36"},
        {"+1", "x", "'+1' cannot be a number here: allowed are the digits, * and #"},
    };
    for (const auto& [to, text, problem] : cases) {
        std::string said;
        try {
            WriteOutgoing({.to = to, .text = text});
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.ExitStatus(), kUsage);
            said = failure.what();
        }
        EXPECT_EQ(said, problem);
    }
    EXPECT_THROW(FromHex("0"), Failure);
    EXPECT_THROW(FromHex("0g"), Failure);
    EXPECT_EQ(FromHex("00 aF 1234"), (PduBytes{0x00, 0xAF, 0x12, 0x34}));
}

// Whatever is cut off or changed, nothing beyond it is read; what the library does not take has a named problem.
TEST(ToolPdu, ReadsWhatTheLibraryReads)
{
    const PduBytes whole =
        WriteOutgoing({.to = "5551234", .priority = 2, .report = true, .callback = "12*", .text = "Meet at noon!"});
    std::vector<PduBytes> broken{FromHex("00 0402 0044 080E 0003200010 080140 0A0140 080180 0803 0801C0")};
    for (size_t i = 0; i < whole.size(); ++i) {
        broken.emplace_back(whole.begin(), whole.begin() + static_cast<long>(i + 1));
        PduBytes changed = whole;
        changed[i] = 0xFF;
        EXPECT_LE(ReadPdu(changed).items.size(), whole.size());
    }
    const size_t lengthAt = 5 + 2 + whole[6] + 1; // of the Bearer Data
    for (unsigned length = 0; length < whole[lengthAt]; ++length) {
        broken.push_back(whole);
        broken.back()[lengthAt] = static_cast<std::uint8_t>(length);
    }
    for (const PduBytes& bytes : broken) {
        const Pdu read = ReadPdu(bytes);
        const auto taken = TakenByLibrary(bytes);
        EXPECT_TRUE(taken || !read.problems.empty()) << ToHex(bytes);
        PduContent content = read.content;
        content.teleservice.reset();
        content.priority = content.priority.value_or(0);
        content.report = content.report.value_or(false);
        EXPECT_EQ(content, taken.value_or(content)) << ToHex(bytes);
    }
    const Pdu past = ReadPdu(FromHex("00 0402 0044 0806 0003200010 080140"));
    ASSERT_FALSE(past.problems.empty());
    EXPECT_EQ(past.problems.front(),
              "the Priority Indicator at byte 12 runs past the end of the Bearer Data by 2 bytes");
    EXPECT_EQ(past.content.priority, 1u);
}

} // namespace
