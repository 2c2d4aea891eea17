#include "phonebook/phonebook_fixture.h"

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "link/exec_command.h"
#include "log/log_file.h"

namespace fs = std::filesystem;

bool MemoryPort::Write(HANDLE, const void* data, DWORD length, DWORD* written, DWORD*)
{
    const std::scoped_lock lock(mutex_);
    const auto* const bytes = static_cast<const uint8_t*>(data);
    requests_.emplace_back(bytes, bytes + length);
    *written = length;
    return true;
}

bool MemoryPort::Read(HANDLE, void* buffer, DWORD size, DWORD* read, DWORD* error, DWORD timeout)
{
    const std::scoped_lock lock(mutex_);
    timeout_ = timeout;
    if (replies_.empty())
        throw std::logic_error("no reply is scripted");
    const std::optional<Bytes> reply = replies_.front();
    replies_.pop_front();
    *error = 121; // the semaphore time-out
    if (!reply || reply->size() > size)
        return false;
    std::memcpy(buffer, reply->data(), reply->size());
    *read = static_cast<DWORD>(reply->size());
    return true;
}

void MemoryPort::Script(std::optional<Bytes> reply)
{
    const std::scoped_lock lock(mutex_);
    replies_.push_back(std::move(reply));
}

std::vector<Bytes> MemoryPort::TakeRequests()
{
    const std::scoped_lock lock(mutex_);
    return std::exchange(requests_, {});
}

PhonebookLog::PhonebookLog()
{
    std::string name = (fs::temp_directory_path() / "phnnrv-phonebook-XXXXXX").string();
    if (!mkdtemp(name.data()))
        throw std::runtime_error(name);
    folder_ = name;
    const fs::path registry = folder_ / "phnnrv.reg";
    std::ofstream(registry) << "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvik\\LinkDesk]\n"
                               "\"Logging Level\"=dword:00020006\n";
    setenv("PHNNRV_REGISTRY", registry.c_str(), 1);
    fs::current_path(folder_); // where the log lies when the library is not loaded as one
    CreateLogLock();
}

PhonebookLog::~PhonebookLog()
{
    CloseLog();
    DestroyLogLock();
    fs::current_path("/");
    std::error_code ignored; // a folder that stays behind is no failure of the test
    fs::remove_all(folder_, ignored);
}

std::vector<std::string> PhonebookLog::TakeLines()
{
    std::string text;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_)) {
        if (entry.path().extension() == ".log")
            text = (std::ostringstream() << std::ifstream(entry.path()).rdbuf()).str();
    }
    std::istringstream fresh(text.substr(taken_));
    taken_ = text.size();
    std::vector<std::string> lines;
    for (std::string time, category, level, line; std::getline(fresh, time, '\t');) {
        std::getline(fresh, category, '\t');
        std::getline(fresh, level, '\t');
        std::getline(fresh, line, '\r');
        fresh.ignore();
        EXPECT_EQ(category, "CPhonebook");
        lines.push_back(level.substr(0, 1) + " " + line);
    }
    return lines;
}

PhonebookTest::PhonebookTest()
{
    CreateCommandLock();
    auto port = std::make_unique<MemoryPort>();
    port_ = port.get();
    owner_.port = std::make_shared<COpenPort>(MakeEvent(), std::move(port));
    SetDeviceOwner(&owner_);
}

PhonebookTest::~PhonebookTest()
{
    SetDeviceOwner(nullptr);
    owner_.port.reset();
    DestroyCommandLock();
}

Bytes PhonebookTest::TakeRequest()
{
    const std::vector<Bytes> requests = port_->TakeRequests();
    EXPECT_EQ(requests.size(), 1u);
    return requests.empty() ? Bytes() : requests.front();
}

Bytes PhonebookTest::Reply(std::initializer_list<uint32_t> numbers, const Bytes& rest, uint16_t status)
{
    Bytes reply(6, 0xEE); // not looked at
    Put16(reply, status);
    for (const uint32_t number : numbers)
        Put32(reply, number);
    reply.insert(reply.end(), rest.begin(), rest.end());
    reply.insert(reply.end(), {0xC5, 0xC5, 0x7E});
    reply.insert(reply.end(), 10, 0);
    return reply;
}

PHN_ERROR PhonebookTest::Get(DWORD index, std::string* text)
{
    std::vector<char> buffer(4096);
    PHN_CONTACT_RECORD record{0, buffer.data(), static_cast<uint32_t>(buffer.size())};
    PHN_ERROR error = PHN_ERROR_NONE;
    const bool done = phonebook_.GetContact(Device(), index, &record, &error);
    EXPECT_EQ(done, error == PHN_ERROR_NONE);
    EXPECT_EQ(+record.uSize, done ? sizeof record : 0);
    if (text)
        *text = buffer.data();
    return error;
}

PHN_ERROR PhonebookTest::Set(DWORD index, std::string text)
{
    PHN_CONTACT_RECORD record{0, text.data(), static_cast<uint32_t>(text.size())};
    PHN_ERROR error = PHN_ERROR_NONE;
    const bool done = phonebook_.SetContact(Device(), index, &record, &error);
    EXPECT_EQ(done, error == PHN_ERROR_NONE);
    EXPECT_EQ(+record.uSize, done ? sizeof record : 0);
    return error;
}
