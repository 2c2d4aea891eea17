#include "control_pipe.h"

#include "simulator/script/line_splitter.h"

#include <array>

namespace simulated {
namespace {

constexpr char kName[] = R"(\\.\pipe\phnsim)";
constexpr unsigned long kWriteLimit = 1000; // milliseconds; a client that does not read loses what it is told

} // namespace

ControlPipe::ControlPipe(simulator::Loop& loop, Report& report)
    : loop_(loop), report_(report), pipe_(kName, kWriteLimit)
{
    report_.SetClient(&pipe_);
}

ControlPipe::~ControlPipe()
{
    pipe_.Interrupt();
    listening_.Join();
    report_.SetClient(nullptr);
}

void ControlPipe::Listen()
{
    simulator::LineSplitter lines([this](std::string line) { loop_.Take(std::move(line)); });
    pipe_.WhenHostCloses([&lines] { lines.Finish(); });
    std::array<std::uint8_t, 4096> buffer;
    while (const std::size_t size = pipe_.Read(buffer))
        lines.Add({reinterpret_cast<const char*>(buffer.data()), size});
}

} // namespace simulated
