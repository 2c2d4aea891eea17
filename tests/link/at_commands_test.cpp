#include "link/at_commands.h"

#include <optional>

#include "link/scripted_port.h"

namespace {

Bytes BytesOf(std::string_view text)
{
    return {text.begin(), text.end()};
}

} // namespace

TEST_F(ExchangeTest, AnAnswersValueStandsBehindItsColon)
{
    struct Case
    {
        std::string answer;
        DWORD size;
        std::optional<std::string> value;
        Lines lines;
    };
    const std::string error = "readwrite Error GetATCmdStr::";
    const Case cases[] = {
        {"+MODE: 2", 100, "2", {}},
        {"OK\r\n", 100, "OK\r\n", {}},
        {"", 1, "", {}},
        {"+A: b: c", 100, "b: c", {}},
        {"+mode: x", 100, "x", {}}, // the value keeps its case
        {"colon:", 100, "", {}},
        {"colon:x", 100, "", {}},
        {"OK", 3, "OK", {}},
        {"OK", 2, {}, {error + "Returned data is longer than supplied buffer; Buffer Length = 2, Data Length = 2"}},
        {"\r\nErRoR\r\n", 100, {}, {error + "ERROR found in returned string"}},
        {std::string("OK\0ERROR", 8), 100, std::string("OK\0ERROR", 8), {}}, // the search ends at a zero
    };
    for (const Case& c : cases) {
        port_->answers = {{BytesOf(c.answer)}};
        std::vector<char> answer(c.size);
        DWORD length = 0;
        DWORD errorCode = 0;
        const bool done = GetATCmdStr(Device(), "AT+MODE?\r", 9, answer.data(), c.size, &length, &errorCode);
        EXPECT_EQ(done, c.value.has_value()) << c.answer;
        if (done) {
            EXPECT_EQ(std::string(answer.data(), length), c.value) << c.answer;
        }
        EXPECT_EQ(log_.TakeLines(), c.lines) << c.answer;
        EXPECT_EQ(port_->requests.back(), BytesOf("AT+MODE?\r"));
        EXPECT_EQ(port_->lastSize, 50001u);
        EXPECT_EQ(port_->lastTimeout, 15000u);
    }
}

TEST_F(ExchangeTest, AModeIsSetUnlessTheAnswerIsAnError)
{
    struct Case
    {
        Answer answer;
        bool set;
        Lines lines;
    };
    const std::string began = "readwrite Comment SetPhoneMode::Initializing the mode";
    const Case cases[] = {
        {{}, true, {began}},
        {{BytesOf("\r\nOK\r\n")}, true, {began}},
        {{BytesOf("+CME error: 3")}, false, {began, "readwrite Error SetPhoneMode::ERROR found in returned string"}},
        {{{}, 5},
         false,
         {began, "readwrite Error ReadDevice - pInstance->m_pDeviceObject->GetPort()->Read returned false.",
          "readwrite Error ExecCmd - Reading from the device failed",
          "readwrite Error SetPhoneMode::ERROR setting AT mode"}},
    };
    for (const Case& c : cases) {
        port_->answers = {c.answer};
        EXPECT_EQ(SetPhoneMode(Device(), 2), c.set);
        EXPECT_EQ(port_->requests.back(), BytesOf("AT+MODE=2\r"));
        EXPECT_EQ(log_.TakeLines(), c.lines);
    }
}
