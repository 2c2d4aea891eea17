// A host's process for tests. What differs between systems stands in TestBench, one header per system.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

#include "phnnrv.h"
#include "support/messages.h"
#include "test_bench.h"

class HandsetTest : public testing::Test
{
protected:
    ~HandsetTest() override { Unload(); }

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

    void* FindAddress(const char* name) const;

    TestBench bench_;

private:
    HMODULE library_ = nullptr;
};

// The export of this name, in a HandsetTest.
#define CALL(name) (*Find<decltype(name)>(#name))
