#include "link/service_fixture.h"

#include <cstdio>

Bytes Request(uint32_t command, const std::vector<uint32_t>& numbers, const Bytes& rest)
{
    Bytes request;
    Put32(request, command);
    Put16(request, 1);
    for (const uint32_t number : numbers)
        Put32(request, number);
    Append(request, rest);
    return request;
}

void ServiceTest::Answer(std::initializer_list<uint32_t> numbers, const Bytes& rest, uint16_t status)
{
    Bytes reply(6, 0xEE); // not looked at
    Put16(reply, status);
    for (const uint32_t number : numbers)
        Put32(reply, number);
    Append(reply, rest);
    port_->answers.push_back({.reply = reply, .extra = tail_});
}

std::vector<Bytes> ServiceTest::TakeRequests()
{
    EXPECT_TRUE(port_->answers.empty());
    return std::exchange(port_->requests, {});
}

Bytes ServiceTest::TakeRequest()
{
    const std::vector<Bytes> requests = TakeRequests();
    EXPECT_EQ(requests.size(), 1u);
    return requests.empty() ? Bytes() : requests.front();
}

Lines ServiceTest::TakeLines()
{
    Lines lines = log_.TakeLines();
    std::erase_if(lines, [this](const std::string& line) { return !line.starts_with(category_ + " "); });
    return lines;
}

void ServiceTest::ExpectChecks(const Operation& operation)
{
    const auto expect = [&](const struct Answer& answer, PHN_ERROR error, const std::string& line) {
        port_->answers.push_back(answer);
        TakeLines();
        EXPECT_EQ(operation.run(), error) << operation.name << " - " << line;
        const Lines lines = TakeLines();
        const std::string begin = category_ + " Comment " + operation.entry + " being executed.";
        EXPECT_EQ(lines.front(), begin);
        EXPECT_EQ(lines.back(), error ? category_ + " Error " + operation.name + " - " + line : begin);
    };
    const auto number = [](size_t value) {
        char text[32];
        std::snprintf(text, sizeof text, "%zu, 0x%zX)", value, value);
        return std::string(text);
    };
    expect({.reply = {}, .error = 121}, PHN_ERROR_FAILED, "ExecCmd failed with dwErrSts = 121(0x79).");
    Bytes reply(operation.minimum - 1);
    reply[6] = 10;
    expect({.reply = reply}, PHN_ERROR_FAILED,
           "dwRetBufferLen(" + number(reply.size()) + " is less than " + operation.reply + "(" +
               number(operation.minimum) + ".");
    reply.resize(operation.minimum);
    reply[8] = 1;
    expect({.reply = reply}, PHN_ERROR_INVALID_LOCK_CODE, operation.status + " = 10(0xA).");
    reply[6] = 0;
    expect({.reply = reply}, operation.result.empty() ? PHN_ERROR{PHN_ERROR_NONE} : operation.absent,
           operation.result + " = 1(0x1).");
}
