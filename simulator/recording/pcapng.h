// Packets as a capture file for Wireshark, whose script wireshark/phnnrv.lua dissects them (docs/simulator.md).
// The link type is USER0 on a diagnostic port and USER1 on a modem port; outbound packets are the host's. That a side
// has closed its end is not written. Each packet is flushed, so that the file can be read while it grows.
#pragma once

#include "simulator/recording/packet.h"

#include <filesystem>
#include <fstream>

namespace simulator {

// The constructor throws std::runtime_error when the file cannot be made; what fails later is told by Check().
class PcapngWriter
{
public:
    PcapngWriter(const std::filesystem::path& file, PortKind kind);

    void Write(const Packet& packet);
    void Check() const; // throws std::runtime_error

private:
    const std::filesystem::path file_;
    std::ofstream stream_;
};

} // namespace simulator
