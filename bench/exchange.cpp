// One exchange over a pseudo terminal beside a bare write and read of the same bytes under the same rule: a read ends
// 10 ms after the last byte, or with the reply's last byte, which the bare one knows. And one through a port in memory,
// where only the library's own work is left.
#include <cstring>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>
#include <windows.h>

#include "bare_terminal.h"
#include "link/device_owner.h"
#include "link/diagnostic_port.h"
#include "link/exchange.h"
#include "link/exec_command.h"
#include "link/prompt_port.h"
#include "log/log_file.h"
#include "ratio.h"
#include "simulator/lines/device_directory.h"
#include "simulator/lines/simulator.h"

namespace {

constexpr CLogSource Log{LOG_CONNECTIONSTATUS};
constexpr ExchangeSpec kBattery{"GetBatteryInfo", 5, {10, "DEV_RX_HEADER + BAT_INFO("}};

// Gives exchanges the port under measurement.
class Owner final : public CDeviceOwner
{
public:
    explicit Owner(std::shared_ptr<COpenPort> port) : port_(std::move(port)) { SetDeviceOwner(this); }
    ~Owner() { SetDeviceOwner(nullptr); }
    std::shared_ptr<COpenPort> GetCurrentPort() override { return port_; }
    void NotifyDeviceState(bool) override {}
    void DestroyObjects() override {}
    void PollCallbacks(HWND, HANDLE) override {}

private:
    std::shared_ptr<COpenPort> port_;
};

// Answers each request from memory, with the same frames that a handset would send.
class MemoryPort final : public CPort, public CFrameCodec
{
public:
    MemoryPort() : CPort("memory") {}

    bool Write(HANDLE, const void* data, DWORD length, DWORD* written, DWORD* error) override
    {
        *error = 0;
        *written = length;
        DWORD stuffed = 0;
        if (!ComposeData(data, length, request_, sizeof request_, &stuffed))
            return false;
        uint8_t raw[26] = {0x4B, 0, 0, 0, 0, 17};
        ++sequence_; // as the codec does
        std::memcpy(raw + 9, &sequence_, sizeof sequence_);
        raw[25] = 0x7E;
        return Encode(raw, sizeof raw, reply_, sizeof reply_, &replyLength_);
    }

    bool Read(HANDLE, void* buffer, DWORD size, DWORD* got, DWORD* error, DWORD) override
    {
        *error = 0;
        BeginDecode();
        DWORD decoded = 0;
        return Decode(reply_, replyLength_, frame_, sizeof frame_, &decoded) && CheckSize(frame_, decoded) == 1 &&
               DecomposeData(frame_, decoded, buffer, size, got);
    }

private:
    uint8_t request_[8193];
    uint8_t reply_[64];
    uint8_t frame_[64];
    DWORD replyLength_ = 0;
    uint32_t sequence_ = 0;
};

void RunExchanges(benchmark::State& state, const std::shared_ptr<COpenPort>& port)
{
    Owner owner(port);
    for (auto _ : state) {
        CExchange exchange(Log, kBattery);
        PHN_ERROR error = 0;
        if (!exchange.Run(port->GetHandle(), {}, &error))
            return state.SkipWithError("the exchange failed");
    }
}

void InMemory(benchmark::State& state)
{
    auto port = std::make_shared<COpenPort>(MakeEvent(), std::make_unique<MemoryPort>());
    RunExchanges(state, port);
    port->Close();
}

template <class Port>
void OverPty(benchmark::State& state, COMMTIMEOUTS timeouts)
{
    HANDLE handle = CreateFileA("\\\\?\\com5", GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                FILE_FLAG_OVERLAPPED, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return state.SkipWithError("com5 does not open");
    SetCommTimeouts(handle, &timeouts);
    auto port = std::make_shared<COpenPort>(CHandle(handle), std::make_unique<Port>("\\\\?\\com5"));
    RunExchanges(state, port);
    port->Close();
}

void BareOverPty(benchmark::State& state, const std::string& path, bool knowsLength)
{
    bench::BareTerminal terminal(path);
    CFrameCodec codec;
    const uint8_t request[6] = {5, 0, 0, 0, 1, 0};
    uint8_t frame[64];
    DWORD length = 0;
    codec.ComposeData(request, sizeof request, frame, sizeof frame, &length);
    const std::size_t reply = terminal.Exchange(frame, length); // always the same
    for (auto _ : state)
        if ((knowsLength ? terminal.Exchange(frame, length, reply) : terminal.Exchange(frame, length)) != reply)
            return state.SkipWithError("another reply");
}

} // namespace

int main(int argc, char** argv)
{
    bench::StayOnOneProcessor();
    simulator::DeviceDirectory devices;
    setenv("PHNNRV_DEVICES", devices.Path().c_str(), 1);
    setenv("PHNNRV_REGISTRY", (devices.Path() / "none.reg").c_str(), 1);
    simulator::Simulator handset(devices.Path(), "com5");
    handset.Start();
    CreateLogLock();
    CreateCommandLock();

    const std::string path = devices.Path() / "com5";
    benchmark::RegisterBenchmark("exchange_in_memory", InMemory)->Repetitions(5);
    benchmark::RegisterBenchmark("exchange_pty", OverPty<DP>, COMMTIMEOUTS{10, 10, 1000, 2, 10})
        ->Repetitions(5)
        ->UseRealTime();
    benchmark::RegisterBenchmark("exchange_pty_prompt", OverPty<CPromptPort>, CPromptPort::kTimeouts)
        ->Repetitions(5)
        ->UseRealTime();
    benchmark::RegisterBenchmark("exchange_pty_bare", BareOverPty, path, false)->Repetitions(5)->UseRealTime();
    benchmark::RegisterBenchmark("exchange_pty_bare_prompt", BareOverPty, path, true)->Repetitions(5)->UseRealTime();

    using bench::Bound;
    return bench::RunBenchmarks(
        argc, argv,
        {
            {"exchange through a port in memory (CPU time)", "exchange_in_memory", "", Bound::AtMost, 10},
            {"exchange over a pty beside a bare write and read", "exchange_pty", "exchange_pty_bare", Bound::AtMost,
             1.03},
            {"prompt exchange over a pty beside a bare one of known length", "exchange_pty_prompt",
             "exchange_pty_bare_prompt", Bound::AtMost, 1.5},
        },
        bench::Order::Mixed);
}
