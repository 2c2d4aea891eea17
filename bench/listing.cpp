// Reading many contacts, and listing many messages, through phnctl beside as many bare exchanges of the same bytes over
// the same pseudo terminal, both with reads that end by silence and with reads that end with the reply. Both are
// programs of their own, timed by what the handset sees: from one entry's reply to the next one's.
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

#include "bare_terminal.h"
#include "link/frame_codec.h"
#include "ratio.h"
#include "simulator/lines/device_directory.h"
#include "simulator/lines/simulator.h"

namespace {

using Clock = std::chrono::steady_clock;

struct Listing
{
    const char* arguments; // of phnctl
    std::size_t entries;
    std::size_t before; // exchanges between the startup's and the first entry's
    std::size_t behind; // exchanges after the last entry's
    // The request for an entry.
    std::vector<std::uint8_t> (*request)(std::uint32_t entry);
};

std::vector<std::uint8_t> Request(std::initializer_list<std::uint32_t> numbers)
{
    std::vector<std::uint8_t> bytes;
    for (const std::uint32_t number : numbers) {
        for (int shift = 0; shift < 32; shift += 8)
            bytes.push_back(static_cast<std::uint8_t>(number >> shift));
        if (bytes.size() == 4)
            bytes.insert(bytes.end(), {1, 0});
    }
    return bytes;
}

// Nothing before the first contact; the goodbye behind the last one.
constexpr Listing kContacts{"contacts export --range 0-499 -", 500, 0, 1, [](std::uint32_t entry) {
                                return Request({35, entry});
                            }};
// The model's name and the opening of the store before the first message; the end and the goodbye behind the last one.
constexpr Listing kMessages{"messages list 0", 200, 2, 2, [](std::uint32_t entry) {
                                return entry == 0 ? Request({17, 0}) : Request({18, 0, entry - 1});
                            }};

simulator::Phone FullPhone()
{
    simulator::Phone phone = simulator::DefaultPhone();
    const simulator::Contact contact = phone.contacts.at(4);
    phone.limits.contacts = kContacts.entries;
    for (std::uint32_t id = 0; id < kContacts.entries; ++id)
        phone.contacts[id] = contact;
    simulator::Message message = phone.messages.at(6); // 160 characters
    message.box = 0;
    for (std::uint32_t index = 0; index < kMessages.entries; ++index)
        phone.messages[index] = message;
    return phone;
}

// When each reply goes out, on the handset's own thread.
std::vector<Clock::time_point> replies;

// Seconds for all entries, from the times of the replies to them; the first one's has this number. It is the median of
// what ten of them take, as a machine that has other work to do interrupts some.
double TimeOf(const Listing& listing, std::size_t first)
{
    constexpr std::size_t kTogether = 10;
    std::vector<double> times;
    for (std::size_t at = first; at + kTogether < first + listing.entries; at += kTogether)
        times.push_back(std::chrono::duration<double>(replies[at + kTogether] - replies[at]).count());
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::ranges::nth_element(times, middle);
    return *middle * static_cast<double>(listing.entries) / kTogether;
}

enum class Timed
{
    Entries,
    Command, // with its start, and what it makes of the entries
};

void Tool(benchmark::State& state, const Listing& listing, const char* option, Timed timed)
{
    constexpr std::size_t kStartup = 2;
    const std::string command = std::string(PHNCTL " ") + option + listing.arguments + " > /dev/null";
    for (auto _ : state) {
        replies.clear();
        const Clock::time_point start = Clock::now();
        const bool isDone = std::system(command.c_str()) == 0;
        const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
        const std::size_t first = kStartup + listing.before;
        if (!isDone || replies.size() != first + listing.entries + listing.behind)
            return state.SkipWithError("phnctl did not read the entries");
        state.SetIterationTime(timed == Timed::Command ? seconds : TimeOf(listing, first));
    }
}

// One pass over all entries; with lengths, no longer than for so many bytes of each reply. What came of each.
std::vector<std::size_t> ExchangeAll(bench::BareTerminal& terminal, const Listing& listing,
                                     const std::vector<std::size_t>& lengths)
{
    CFrameCodec codec;
    std::vector<std::size_t> received;
    for (std::uint32_t entry = 0; entry < listing.entries; ++entry) {
        const std::vector<std::uint8_t> request = listing.request(entry);
        std::uint8_t frame[64];
        DWORD length = 0;
        codec.ComposeData(request.data(), static_cast<DWORD>(request.size()), frame, sizeof frame, &length);
        received.push_back(lengths.empty() ? terminal.Exchange(frame, length)
                                           : terminal.Exchange(frame, length, lengths[entry]));
    }
    return received;
}

// In a process of its own; whether all replies came, and came as long as stated.
bool RunBare(const std::string& path, const Listing& listing, const std::vector<std::size_t>& lengths)
{
    const pid_t process = fork();
    if (process == 0) {
        bench::BareTerminal terminal(path);
        const std::vector<std::size_t> received = ExchangeAll(terminal, listing, lengths);
        _exit(lengths.empty() ? std::ranges::count(received, 0u) > 0 : received != lengths);
    }
    int status = 1;
    return waitpid(process, &status, 0) == process && status == 0;
}

// Of each reply, by reads that end by silence.
std::vector<std::size_t> LengthsOf(const std::string& path, const Listing& listing)
{
    bench::BareTerminal terminal(path);
    return ExchangeAll(terminal, listing, {});
}

void Bare(benchmark::State& state, const std::string& path, const Listing& listing, bool knowsLengths)
{
    static std::map<const char*, std::vector<std::size_t>> known; // by the listing's arguments
    if (knowsLengths && !known.contains(listing.arguments))
        known[listing.arguments] = LengthsOf(path, listing);
    for (auto _ : state) {
        replies.clear();
        if (!RunBare(path, listing, knowsLengths ? known[listing.arguments] : std::vector<std::size_t>()) ||
            replies.size() != listing.entries)
            return state.SkipWithError("no reply, or another one");
        state.SetIterationTime(TimeOf(listing, 0));
    }
}

} // namespace

int main(int argc, char** argv)
{
    bench::StayOnOneProcessor();
    simulator::DeviceDirectory devices;
    setenv("PHNNRV_DEVICES", devices.Path().c_str(), 1);
    setenv("PHNNRV_REGISTRY", (devices.Path() / "none.reg").c_str(), 1);
    const std::string name = simulator::UsbInterfaceName("0001");
    simulator::Simulator handset(devices.Path(), name, simulator::PortKind::Diagnostic, FullPhone());
    handset.Control().SetTrace([](std::string_view line) { // in every exchange, the bare ones too
        if (line.starts_with("> "))
            replies.push_back(Clock::now());
    });
    handset.Start();

    // Those that wait for silences take seconds and hardly differ; the others are many, and close together, so that a
    // machine that others share is as fast for the one as for its reference.
    const auto add = [](const std::string& title, bool prompt, auto run) {
        benchmark::RegisterBenchmark(title.c_str(), run)->Iterations(1)->Repetitions(prompt ? 45 : 1)->UseManualTime();
    };
    for (const auto& [noun, listing] : {std::pair{"contacts", kContacts}, {"messages", kMessages}}) {
        const std::string what = noun;
        for (const bool prompt : {true, false}) {
            const std::string way = prompt ? "_prompt" : "";
            add(what + way, prompt, [listing, prompt](benchmark::State& state) {
                Tool(state, listing, prompt ? "" : "--slow-reads ", Timed::Entries);
            });
            add(what + "_bare" + way, prompt,
                [path = std::string(devices.Path() / name), listing, prompt](benchmark::State& state) {
                    Bare(state, path, listing, prompt);
                });
        }
    }
    add("contacts_command", true, [](benchmark::State& state) { Tool(state, kContacts, "", Timed::Command); });
    using bench::Bound;
    return bench::RunBenchmarks(
        argc, argv,
        {{"export of 500 contacts, prompt reads, beside 500 bare exchanges", "contacts_prompt", "contacts_bare_prompt",
          Bound::AtMost, 1.3},
         {"export of 500 contacts, what the command takes beyond its entries", "contacts_command", "contacts_prompt",
          Bound::AtMostAbove, 100000},
         // Its reply is short, and so is its exchange.
         {"200 messages, prompt reads, beside 200 bare exchanges", "messages_prompt", "messages_bare_prompt",
          Bound::AtMost, 2.5},
         {"export of 500 contacts beside 500 bare exchanges", "contacts", "contacts_bare", Bound::AtMost, 1.05},
         {"200 messages beside 200 bare exchanges", "messages", "messages_bare", Bound::AtMost, 1.05}},
        bench::Order::Mixed);
}
