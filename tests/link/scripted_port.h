// A port in memory that answers from a script or fails as told, and an owner that hands it out. Everything is logged.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <vector>

#include "link/device_owner.h"
#include "log/log_capture.h"
#include "wire/record_bytes.h"

struct Answer
{
    Bytes reply;
    DWORD error = 0;         // not 0: the read fails with it
    DWORD extra = 0;         // bytes reported beyond the reply
    bool writeFails = false; // with the error, too
};

class ScriptedPort final : public CPort
{
public:
    ScriptedPort() : CPort("memory") {}
    bool Write(HANDLE port, const void* data, DWORD length, DWORD* written, DWORD* error) override;
    bool Read(HANDLE port, void* buffer, DWORD size, DWORD* read, DWORD* error, DWORD timeout) override;

    std::deque<Answer> answers;
    std::vector<Bytes> requests;
    DWORD lastTimeout = 0;
    DWORD lastSize = 0;
};

class ExchangeTest : public testing::Test, private CDeviceOwner
{
protected:
    ExchangeTest();
    ~ExchangeTest() override;

    HANDLE Device() const { return open_->GetHandle(); }
    void DropPort() { open_.reset(); }

    LogCapture log_{0xFFFFF};
    ScriptedPort* port_;

private:
    std::shared_ptr<COpenPort> GetCurrentPort() override { return open_; }
    void NotifyDeviceState(bool) override {}
    void DestroyObjects() override {}
    void PollCallbacks(HWND, HANDLE) override {}

    std::shared_ptr<COpenPort> open_;
};
