// A phonebook on a port in memory: what it sends is written down, what it gets is scripted, and what it logs is read
// back from the log file. Nothing travels, so each test's whole conversation is exact.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <deque>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "link/device_owner.h"
#include "phonebook/contact_bytes.h"
#include "phonebook/speed_dial_phonebook.h"

class MemoryPort final : public CPort
{
public:
    MemoryPort() : CPort("memory") {}

    bool Write(HANDLE port, const void* data, DWORD length, DWORD* written, DWORD* error) override;
    bool Read(HANDLE port, void* buffer, DWORD size, DWORD* read, DWORD* error, DWORD timeout) override;

    // The bytes of the next reply; none for an exchange that fails with system error 121.
    void Script(std::optional<Bytes> reply);
    std::vector<Bytes> TakeRequests();
    DWORD LastTimeout() const { return timeout_; }

private:
    std::mutex mutex_;
    std::deque<std::optional<Bytes>> replies_;
    std::vector<Bytes> requests_;
    DWORD timeout_ = 0;
};

class PortOwner final : public CDeviceOwner
{
public:
    std::shared_ptr<COpenPort> GetCurrentPort() override { return port; }
    void NotifyDeviceState(bool) override {}
    void DestroyObjects() override {}
    void PollCallbacks(HWND, HANDLE) override {}

    std::shared_ptr<COpenPort> port;
};

// The log of this process: on for the phonebook's lines alone, in a folder of its own.
class PhonebookLog
{
public:
    PhonebookLog();
    ~PhonebookLog();
    PhonebookLog(const PhonebookLog&) = delete;
    PhonebookLog& operator=(const PhonebookLog&) = delete;

    // The lines since the last call: the level's initial, a blank, the text.
    std::vector<std::string> TakeLines();

private:
    std::filesystem::path folder_;
    size_t taken_ = 0; // bytes of the file
};

class PhonebookTest : public testing::Test
{
protected:
    PhonebookTest();
    ~PhonebookTest() override;

    using Lines = std::vector<std::string>;

    HANDLE Device() const { return owner_.port->GetHandle(); }

    // The one request that was sent since the last call.
    Bytes TakeRequest();

    // A reply as it arrives: header, what follows it, and the frame's trailing bytes, which are counted too.
    static Bytes Reply(std::initializer_list<uint32_t> numbers, const Bytes& rest = {}, uint16_t status = 0);

    PHN_ERROR Get(DWORD index, std::string* text = nullptr);
    PHN_ERROR Set(DWORD index, std::string text);

    PhonebookLog log_;
    MemoryPort* port_;
    PortOwner owner_;
    CSpeedDialPhonebook phonebook_;
};
