#include "link/at_commands.h"

#include <tuple>

#include "link/scripted_port.h"

namespace {

Bytes BytesOf(std::string_view text)
{
    return {text.begin(), text.end()};
}

} // namespace

TEST_F(ExchangeTest, AnAnswersValueStandsBehindItsColon)
{
    const std::string error = "readwrite Error GetATCmdStr::";
    const std::tuple<std::string, DWORD, std::optional<std::string>, Lines> cases[] = {
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
    for (const auto& [sent, size, value, lines] : cases) {
        port_->answers = {{BytesOf(sent)}};
        std::vector<char> answer(size);
        DWORD length = 0;
        DWORD errorCode = 0;
        const bool done = GetATCmdStr(Device(), "AT+MODE?\r", 9, answer.data(), size, &length, &errorCode);
        EXPECT_EQ(done ? std::optional(std::string(answer.data(), length)) : std::nullopt, value) << sent;
        EXPECT_EQ(log_.TakeLines(), lines) << sent;
        EXPECT_EQ(port_->requests.back(), BytesOf("AT+MODE?\r"));
        EXPECT_EQ(port_->lastSize, 50001u);
        EXPECT_EQ(port_->lastTimeout, 15000u);
    }
}

TEST_F(ExchangeTest, AModeIsSetUnlessTheAnswerIsAnError)
{
    const std::string began = "readwrite Comment SetPhoneMode::Initializing the mode";
    const Lines noAnswer{began,
                         "readwrite Error ReadDevice - pInstance->m_pDeviceObject->GetPort()->Read returned false.",
                         "readwrite Error ExecCmd - Reading from the device failed",
                         "readwrite Error SetPhoneMode::ERROR setting AT mode"};
    const std::tuple<Answer, bool, Lines> cases[] = {
        {{}, true, {began}},
        {{BytesOf("\r\nOK\r\n")}, true, {began}},
        {{BytesOf("+CME error: 3")}, false, {began, "readwrite Error SetPhoneMode::ERROR found in returned string"}},
        {{{}, 5}, false, noAnswer},
    };
    for (const auto& [answer, isSet, lines] : cases) {
        port_->answers = {answer};
        EXPECT_EQ(SetPhoneMode(Device(), 2), isSet);
        EXPECT_EQ(port_->requests.back(), BytesOf("AT+MODE=2\r"));
        EXPECT_EQ(log_.TakeLines(), lines);
    }
}
