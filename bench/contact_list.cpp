// Reading 500 contacts through phnctl beside 500 bare exchanges of the same bytes over the same pseudo terminal. The
// program is timed by what the handset sees: from its reply to the startup's last request to the last contact's.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

#include "bare_terminal.h"
#include "link/frame_codec.h"
#include "ratio.h"
#include "simulator/device_directory.h"
#include "simulator/simulator.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint32_t kContacts = 500;
constexpr std::uint32_t kReadContact = 35;

simulator::Phone FullPhone()
{
    simulator::Phone phone = simulator::DefaultPhone();
    const simulator::Contact model = phone.contacts.at(4);
    phone.limits.contacts = kContacts;
    for (std::uint32_t id = 0; id < kContacts; ++id)
        phone.contacts[id] = model;
    return phone;
}

// When each reply has gone out, on the handset's own thread.
std::vector<Clock::time_point> replies;

void Tool(benchmark::State& state, simulator::Simulator& handset)
{
    const std::string command = PHNCTL " contacts list --range 0-499 > /dev/null";
    for (auto _ : state) {
        replies.clear();
        handset.Control().SetTrace([](std::string_view line) {
            if (line.starts_with("> "))
                replies.push_back(Clock::now());
        });
        const bool isDone = std::system(command.c_str()) == 0;
        handset.Control().SetTrace({});
        // Startup's two, the contacts, and the goodbye.
        if (!isDone || replies.size() != kContacts + 3)
            return state.SkipWithError("phnctl did not read the contacts");
        const std::chrono::duration<double> time = replies[kContacts + 1] - replies[1];
        state.SetIterationTime(time.count());
    }
}

void Bare(benchmark::State& state, const std::string& path)
{
    bench::BareTerminal terminal(path);
    CFrameCodec codec;
    for (auto _ : state) {
        const auto start = Clock::now();
        for (std::uint32_t id = 0; id < kContacts; ++id) {
            const std::uint8_t number = static_cast<std::uint8_t>(id);
            const std::uint8_t request[10] = {kReadContact, 0, 0, 0, 1, 0, number, static_cast<std::uint8_t>(id >> 8)};
            std::uint8_t frame[64];
            DWORD length = 0;
            codec.ComposeData(request, sizeof request, frame, sizeof frame, &length);
            if (!terminal.Exchange(frame, length))
                return state.SkipWithError("no reply");
        }
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
    }
}

} // namespace

int main(int argc, char** argv)
{
    simulator::DeviceDirectory devices;
    setenv("PHNNRV_DEVICES", devices.Path().c_str(), 1);
    setenv("PHNNRV_REGISTRY", (devices.Path() / "none.reg").c_str(), 1);
    const std::string name = simulator::UsbInterfaceName("0001");
    simulator::Simulator handset(devices.Path(), name, simulator::PortKind::Diagnostic, FullPhone());
    handset.Start();

    benchmark::RegisterBenchmark("contacts_phnctl", [&](benchmark::State& state) { Tool(state, handset); })
        ->Iterations(1)
        ->Repetitions(3)
        ->UseManualTime();
    benchmark::RegisterBenchmark("contacts_bare", Bare, devices.Path() / name)
        ->Iterations(1)
        ->Repetitions(3)
        ->UseManualTime();
    return bench::RunBenchmarks(argc, argv,
                                {{"500 contacts through phnctl beside 500 bare exchanges", "contacts_phnctl",
                                  "contacts_bare", bench::Bound::AtMost, 1.05}});
}
