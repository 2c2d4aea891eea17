#include "control_pipe.h"

#include <array>
#include <chrono>

namespace simulated {

ControlPipe::ControlPipe(simulator::Loop& loop) : PipeLine(R"(\\.\pipe\phnsim)"), loop_(loop) {}

ControlPipe::~ControlPipe()
{
    constexpr std::chrono::milliseconds kLastWords(500);
    outbox_.Close(kLastWords);
    Interrupt();
    writing_.Join();
    listening_.Join();
}

void ControlPipe::Listen()
{
    std::array<std::uint8_t, 4096> buffer;
    while (const std::size_t size = Read(buffer))
        lines_.Add({reinterpret_cast<const char*>(buffer.data()), size});
}

void ControlPipe::WriteAll()
{
    while (const auto line = outbox_.Next())
        Write({reinterpret_cast<const std::uint8_t*>(line->data()), line->size()});
}

// The lines that the client has left are carried out before the next one's.
void ControlPipe::ClientHasGone()
{
    lines_.Finish();
    loop_.Take([this, next = outbox_.Forget()] { outbox_.Answer(next); });
}

} // namespace simulated
