// The far end of a test's port on Linux: the master of a pseudo terminal, and the device directory with the port's
// name.
#pragma once

#include <filesystem>

#include "platform/port_fixture.h"

struct PortTest::FarEnd
{
    int master = -1;
    std::filesystem::path directory;

    // As when a cable is pulled.
    void HangUp();
};
