// A host's process for tests. What differs between systems stands behind TestBench, one .cpp per system.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "log/log_reader.h"
#include "phnnrv.h"
#include "simulator/handset/handset.h"
#include "support/messages.h"

// The surroundings of one library: a place of its own in the file system, logging on, no handset until Plug.
class TestBench
{
public:
    static constexpr uint32_t kAllLines = 0xFFFFF;
    static constexpr uint32_t kExportLines = 0x1FF;

    TestBench();
    ~TestBench();
    TestBench(const TestBench&) = delete;
    TestBench& operator=(const TestBench&) = delete;

    // A copy of the library, so that its log file belongs to this process.
    std::string LibraryPath() const;
    void SetLoggingLevel(uint32_t level);
    // As LogReader takes it.
    std::vector<std::string> TakeLog();

    // Publishes the handset as a USB interface. A library that is loaded then opens it at once.
    void Plug();
    // Takes the interface away. The library notices as its messages are dispatched.
    void Unplug();
    simulator::Handset& Handset();

    // Lets that time pass for the library and for this thread's timers where a test rules the clock.
    static void AdvanceClock(DWORD milliseconds);

private:
    struct World;
    std::unique_ptr<World> world_;
};

class HandsetTest : public testing::Test
{
protected:
    ~HandsetTest() override;

    void Load() { Load(bench_.LibraryPath()); }
    void Load(const std::filesystem::path& library);
    void Unload();
    // Plugs the handset in, loads the library and starts the service; the log is taken.
    void StartService();
    // How the service fares: the code of a request that every handset answers.
    PHN_ERROR Battery() const;

    // Dispatches this thread's messages for that long by the timers' clock.
    static void RunFor(DWORD milliseconds);

    template <typename Function>
    Function* Find(const char* name) const
    {
        return reinterpret_cast<Function*>(FindAddress(name));
    }

    TestBench bench_;

private:
    void* FindAddress(const char* name) const;

    HMODULE library_ = nullptr;
};

// The export of this name, in a HandsetTest.
#define CALL(name) (*Find<decltype(name)>(#name))
