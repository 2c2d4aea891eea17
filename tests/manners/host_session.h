// A host from load to unload: every export, callbacks, a handset that goes and comes back.
#pragma once

#include <functional>

#include "api/handset_fixture.h"

class HostSession : public HandsetTest
{
protected:
    HostSession();

    // Calls `amid` when all exports have run, with the service started and the handset there.
    void Run(const std::function<void()>& amid = [] {});

    // Calls every export; what they write to the host's memory.
    std::string CallAll();

private:
    void ReplugHandset();
};
