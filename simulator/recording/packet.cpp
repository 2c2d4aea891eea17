#include "simulator/recording/packet.h"

namespace simulator {
namespace {

// More than the largest reply, stuffed: a line that never sends a flag must not fill the memory.
constexpr std::size_t kLongestPacket = std::size_t{4} << 20;

} // namespace

void PacketAssembler::Take(const Chunk& chunk)
{
    const std::scoped_lock lock(mutex_);
    if (chunk.bytes.empty() || chunk.sender != open_.sender)
        Emit();
    if (chunk.bytes.empty())
        sink_({.time = chunk.time, .sender = chunk.sender});
    else
        Append(chunk);
}

void PacketAssembler::Finish()
{
    const std::scoped_lock lock(mutex_);
    Emit();
}

void PacketAssembler::Append(const Chunk& chunk)
{
    for (const std::uint8_t byte : chunk.bytes) {
        if (open_.bytes.empty())
            open_ = {.time = chunk.time, .sender = chunk.sender};
        open_.bytes.push_back(byte);
        open_.took = std::chrono::duration_cast<std::chrono::milliseconds>(chunk.time - open_.time);
        if ((kind_ == PortKind::Diagnostic && byte == kFlag) || open_.bytes.size() == kLongestPacket)
            Emit();
    }
}

void PacketAssembler::Emit()
{
    if (!open_.bytes.empty())
        sink_(std::exchange(open_, {}));
}

} // namespace simulator
