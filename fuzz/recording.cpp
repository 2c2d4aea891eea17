// Any file as a recording: it is refused with a reason, or it is masked into another file, which is read and has the
// same packets with as many bytes; and it is played to a host that sends what it was recorded to send, and then all of
// that from the end.
#include <algorithm>
#include <ranges>
#include <span>
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
    explicit MemoryFile(std::span<const std::uint8_t> bytes = {}) : descriptor_(memfd_create("recording", 0))
    {
        fuzz::Require(write(descriptor_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
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

void CheckMasked(const Recording& recording, const MemoryFile& file)
{
    const MemoryFile to;
    MaskRecording(file.Path(), to.Path());
    const Recording masked = ReadRecording(to.Path());
    const auto isMaskOf = [](const RecordedPacket& one, const RecordedPacket& other) {
        const Packet& packet = one.packet;
        const Bytes& bytes = other.packet.bytes;
        return packet.sender == other.packet.sender && packet.time == other.packet.time &&
               one.blanked >= other.blanked &&
               (packet.bytes.size() == bytes.size() || BareSize(packet.bytes) == BareSize(bytes));
    };
    fuzz::Require(masked.header.isMasked && std::ranges::equal(masked.packets, recording.packets, isMaskOf));
}

void Play(const Recording& recording)
{
    Replay replay(recording, [](const Deviation& deviation) { fuzz::Require(!deviation.what.empty()); });
    Handset handset{Phone{}};
    NoLine line;
    const auto voice = replay.Conversations()(handset, line);
    const auto send = [&](const RecordedPacket& recorded) {
        if (recorded.packet.sender == Sender::Host)
            voice->Receive(recorded.packet.bytes);
    };
    std::for_each(recording.packets.begin(), recording.packets.end(), send);
    replay.Missing();
    std::for_each(recording.packets.rbegin(), recording.packets.rend(), send);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const MemoryFile file({data, size});
    try {
        const Recording recording = ReadRecording(file.Path());
        CheckMasked(recording, file);
        Play(recording);
    } catch (const std::runtime_error& refusal) {
        fuzz::Require(*refusal.what() != '\0');
    }
    return 0;
}
