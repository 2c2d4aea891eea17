// The recording file: JSON lines, a header and then a line for each packet (docs/simulator.md).
// The JSON library stays behind this header.
#pragma once

#include "simulator/recording/dissector.h"
#include "simulator/recording/packet.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace simulator {

struct RecordingHeader
{
    std::string program; // what wrote it, with its version
    PortKind kind = PortKind::Diagnostic;
    bool isMasked = false;
};

struct RecordedPacket
{
    unsigned line = 0; // of the file
    Packet packet{};
    std::size_t blanked = 0; // bytes that a mask did not understand and has overwritten
};

struct Recording
{
    RecordingHeader header;
    std::vector<RecordedPacket> packets;
};

// Throws std::runtime_error with file and line.
Recording ReadRecording(const std::filesystem::path& file);

// Writes a recording as it comes about. Throws std::runtime_error when the file cannot be made; what fails later is
// told by Check().
class RecordingWriter
{
public:
    RecordingWriter(const std::filesystem::path& file, const RecordingHeader& header);

    void Write(const Packet& packet, std::size_t blanked = 0);
    void Check() const; // throws std::runtime_error

private:
    const std::filesystem::path file_;
    std::ofstream stream_;
    Dissector dissector_;
};

} // namespace simulator
