// A host that has opened a simulated handset's port on Linux, for tests of the line.
#pragma once

#include "simulator/host_side.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <filesystem>

namespace host {

struct Port
{
    ~Port() { close(descriptor); }

    // The reply, up to its closing flag; what came of it when the port has ended.
    Bytes Ask(std::uint32_t command) const
    {
        const Bytes frame = Frame(1, Record(command, {}));
        Bytes received;
        if (write(descriptor, frame.data(), frame.size()) < 0)
            return received;
        while (received.empty() || received.back() != simulator::kFlag) {
            pollfd wait{descriptor, POLLIN, 0};
            std::uint8_t buffer[512];
            const ssize_t size = poll(&wait, 1, 10'000) > 0 ? read(descriptor, buffer, sizeof buffer) : 0;
            if (size <= 0)
                break;
            received.insert(received.end(), buffer, buffer + size);
        }
        return received;
    }

    const std::filesystem::path path;
    const int descriptor = open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
};

} // namespace host
