// The far end of a test's port on Linux: a pseudo terminal's master, and the device directory with the port's name.
#pragma once

#include <filesystem>

#include "platform/port_fixture.h"
#include "temporary_folder.h"

struct PortTest::FarEnd
{
    int master = -1;
    const TemporaryFolder folder;
    const std::filesystem::path directory = folder.Path();

    // As when a cable is pulled.
    void HangUp();
};
