// Any file as a recording: it is refused with a reason, or its packets are dissected, masked and played to a host that
// sends what it was recorded to send, and then what is left of it.
#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>

#include "fuzz/require.h"
#include "simulator/recording/mask.h"
#include "simulator/recording/recording.h"
#include "simulator/recording/replay.h"

namespace {

using namespace simulator;

class NoLine final : public Line
{
public:
    std::size_t Read(std::span<std::uint8_t>) override { return 0; }
    bool Write(std::span<const std::uint8_t>) override { return false; }
    bool Pause(std::chrono::milliseconds) override { return false; }
    void Interrupt() override {}
};

// A file without a disk.
class MemoryFile
{
public:
    MemoryFile(const std::uint8_t* data, std::size_t size) : descriptor_(memfd_create("recording", 0))
    {
        fuzz::Require(write(descriptor_, data, size) == static_cast<ssize_t>(size));
    }
    ~MemoryFile() { close(descriptor_); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    std::string Path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

private:
    const int descriptor_;
};

// Without the escapes of a frame, of which another check value may need more or fewer.
std::size_t BareSize(const Bytes& bytes)
{
    constexpr std::uint8_t kEscape = 0x7D;
    std::size_t size = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i, ++size)
        if (bytes[i] == kEscape && i + 1 < bytes.size())
            ++i;
    return size;
}

void Play(const Recording& recording)
{
    Mask mask(recording.header.kind);
    Replay replay(recording, [](const Deviation&) {});
    Handset handset{Phone{}};
    NoLine line;
    const auto voice = replay.Conversations()(handset, line);
    for (const RecordedPacket& recorded : recording.packets) {
        const Packet& packet = recorded.packet;
        const Bytes masked = mask.Apply(packet).packet.bytes;
        fuzz::Require(masked.size() == packet.bytes.size() || BareSize(masked) == BareSize(packet.bytes));
        if (packet.sender == Sender::Host)
            voice->Receive(packet.bytes);
    }
    replay.Missing();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const MemoryFile file(data, size);
    try {
        Play(ReadRecording(file.Path()));
    } catch (const std::runtime_error& refusal) {
        fuzz::Require(*refusal.what() != '\0');
    }
    return 0;
}
