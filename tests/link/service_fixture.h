// A service on a port in memory: its replies, its requests, and the checks of a reply that all operations share.
#pragma once

#include <functional>
#include <initializer_list>

#include "link/scripted_port.h"
#include "phnnrv.h"
#include "wire/record_bytes.h"

// The bytes of a request: command, 1, numbers, and what follows them.
Bytes Request(uint32_t command, const std::vector<uint32_t>& numbers = {}, const Bytes& rest = {});

// An operation whose exchange is checked. The names are those of the log.
struct Operation
{
    std::string entry; // the operation that the host called
    std::string name;  // the one whose exchange it is
    std::function<PHN_ERROR()> run;
    size_t minimum; // bytes of the shortest reply
    std::string reply;
    std::string result; // empty: it is not looked at
    std::string status = "rcRxHeader.wStatus";
    PHN_ERROR absent = PHN_ERROR_NOT_FOUND; // the code of result 1
};

class ServiceTest : public ExchangeTest
{
protected:
    explicit ServiceTest(const char* category) : category_(category) {}

    // The next reply: header, numbers and what follows them. The length that is reported counts `tail_` bytes more.
    void Answer(std::initializer_list<uint32_t> numbers, const Bytes& rest = {}, uint16_t status = 0);
    void AnswerFailure() { port_->answers.push_back({.reply = {}, .error = 121}); }

    // The requests that were sent since the last call; all answers must be used up.
    std::vector<Bytes> TakeRequests();
    // The one request that was sent since the last call.
    Bytes TakeRequest();

    // The service's own lines since the last call.
    Lines TakeLines();

    // The code that an operation fails with, PHN_ERROR_NONE if it does not.
    template <typename Service, typename Method, typename... Arguments>
    PHN_ERROR Run(Service& service, Method method, Arguments... arguments)
    {
        PHN_ERROR error = PHN_ERROR_NONE;
        if (std::invoke(method, service, Device(), arguments..., &error))
            return PHN_ERROR_NONE;
        EXPECT_NE(error, PHN_ERROR_NONE);
        return error;
    }

    // Replies that fail one check, and would fail every later one too, end in that check's line and code.
    void ExpectChecks(const Operation& operation);

    DWORD tail_ = 13;

private:
    const std::string category_;
};
