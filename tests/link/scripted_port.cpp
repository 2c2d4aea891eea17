#include "link/scripted_port.h"

#include <algorithm>

#include "link/exec_command.h"

bool ScriptedPort::Write(HANDLE, const void* data, DWORD length, DWORD* written, DWORD* error)
{
    const auto* const bytes = static_cast<const uint8_t*>(data);
    requests.emplace_back(bytes, bytes + length);
    *written = length;
    if (answers.empty() || !answers.front().writeFails)
        return true;
    *error = answers.front().error;
    answers.pop_front();
    return false;
}

bool ScriptedPort::Read(HANDLE, void* buffer, DWORD size, DWORD* read, DWORD* error, DWORD timeout)
{
    lastTimeout = timeout;
    lastSize = size;
    if (answers.empty())
        return false;
    const Answer answer = answers.front();
    answers.pop_front();
    *error = answer.error;
    std::fill_n(static_cast<uint8_t*>(buffer), size, uint8_t{0});
    std::copy_n(answer.reply.begin(), std::min<size_t>(size, answer.reply.size()), static_cast<uint8_t*>(buffer));
    *read = static_cast<DWORD>(answer.reply.size()) + answer.extra;
    return answer.error == 0;
}

ExchangeTest::ExchangeTest()
{
    CreateCommandLock();
    auto port = std::make_unique<ScriptedPort>();
    port_ = port.get();
    open_ = std::make_shared<COpenPort>(MakeEvent(), std::move(port));
    SetDeviceOwner(this);
}

ExchangeTest::~ExchangeTest()
{
    SetDeviceOwner(nullptr);
    open_.reset();
    DestroyCommandLock();
}
