#include "cycles.h"

#include <algorithm>
#include <cstdio>
#include <mutex>
#include <optional>
#include <random>
#include <vector>

#include "library.h"
#include "simulator/lines/simulator.h"
#include "support/messages.h"
#include "support/usage.h"
#include "surroundings.h"
#include "tally.h"

namespace soak {
namespace {

using Clock = std::chrono::steady_clock;
using simulator::Step;

constexpr Milliseconds kAtOnce{10};
constexpr std::size_t kBusy = 1000; // one call of so many may meet a machine that has no time for it

// A line whose end is noted before anybody can see it.
class TimedLine final : public simulator::Line
{
public:
    TimedLine(std::unique_ptr<simulator::Line> line, std::atomic<Clock::time_point>& end)
        : line_(std::move(line)), end_(end)
    {
    }
    ~TimedLine() override { end_ = Clock::now(); }

    std::size_t Read(std::span<std::uint8_t> buffer) override { return line_->Read(buffer); }
    bool Write(std::span<const std::uint8_t> bytes) override { return line_->Write(bytes); }
    bool Pause(std::chrono::milliseconds time) override { return line_->Pause(time); }
    void Interrupt() override { line_->Interrupt(); }

private:
    const std::unique_ptr<simulator::Line> line_;
    std::atomic<Clock::time_point>& end_;
};

// Unplugs the handset in the middle of the next reply when it is told to.
class Unplugging final : public simulator::Conversation
{
public:
    Unplugging(simulator::Handset& handset, std::atomic<std::uint32_t>& when)
        : session_(handset, simulator::PortKind::Diagnostic), when_(when)
    {
    }

    std::vector<Step> Receive(std::span<const std::uint8_t> bytes) override
    {
        std::vector<Step> steps = session_.Receive(bytes);
        const std::uint32_t when = steps.empty() ? 0 : when_.exchange(0);
        if (when == 0)
            return steps;
        simulator::Bytes& reply = steps.front().bytes;
        reply.resize(when % reply.size());
        if (reply.empty())
            steps.clear();
        steps.push_back({.kind = Step::Kind::Unplug});
        return steps;
    }

private:
    simulator::Session session_;
    std::atomic<std::uint32_t>& when_;
};

class Unplugs
{
public:
    explicit Unplugs(const Surroundings& surroundings)
        : handset_(
              [this, open = simulator::PtyLines(surroundings.Devices(), simulator::UsbInterfaceName("0001"))] {
                  return std::make_unique<TimedLine>(open(), unplugged_);
              },
              [this](simulator::Handset& handset, simulator::Line&) {
                  return std::make_unique<Unplugging>(handset, when_);
              }),
          library_(surroundings.LibraryPath())
    {
    }

    bool Run(unsigned count, std::uint32_t seed)
    {
        std::minstd_rand dice(seed);
        for (unsigned cycle = 0; cycle < count && tally_.Judge(); ++cycle)
            Cycle(1 + static_cast<std::uint32_t>(dice() % 1000000));
        std::ranges::sort(waits_);
        if (waits_.empty())
            return false;
        const Milliseconds most = waits_[waits_.size() - 1 - waits_.size() / kBusy];
        if (most > kAtOnce)
            tally_.AddFinding("calls went on waiting");
        std::printf("unplugs        %zu\nreturned after %.3f ms (median), %.3f ms (999 of 1000), %.3f ms (all)\n",
                    waits_.size(), waits_[waits_.size() / 2].count(), most.count(), waits_.back().count());
        return tally_.Judge();
    }

private:
    void Cycle(std::uint32_t when)
    {
        handset_.Replug();
        if (!PumpUntil([this] { return SOAK_EXPORT(library_, PHN_Startup)() == PHN_ERROR_NONE; }))
            return tally_.AddFinding("the service does not start again");
        when_ = when;
        PHN_DEVICE_INFO info{};
        info.uSize = sizeof info;
        const PHN_ERROR code = SOAK_EXPORT(library_, PHN_GetDeviceInfo)(&info);
        waits_.emplace_back(Clock::now() - unplugged_.load());
        if (code != PHN_ERROR_FAILED)
            tally_.AddFinding("a call that was cut off gave " + std::to_string(code));
    }

    std::atomic<Clock::time_point> unplugged_{};
    std::atomic<std::uint32_t> when_ = 0;
    simulator::Simulator handset_;
    Library library_;
    Tally tally_;
    std::vector<Milliseconds> waits_;
};

} // namespace

bool RunUnplugs(const Surroundings& surroundings, unsigned count, std::uint32_t seed)
{
    return Unplugs(surroundings).Run(count, seed);
}

bool RunLoads(const Surroundings& surroundings, unsigned count)
{
    simulator::Simulator silent(surroundings.Devices(), "com1");
    silent.Control().AddFault("silence");
    silent.Start();
    std::optional<Usage> warm;
    Tally tally;
    for (unsigned cycle = 0; cycle < count && tally.Judge(); ++cycle) {
        {
            const Library library(surroundings.LibraryPath());
            const auto probes = silent.Control().Requests(1);
            if (cycle % 2 == 0 && !PumpUntil([&] { return silent.Control().Requests(1) > probes; }))
                tally.AddFinding("no scan began");
        }
        if (GetModuleHandleA("PHNNRV.dll"))
            tally.AddFinding("the library is still loaded");
        if (cycle == count / 10)
            warm.emplace();
    }
    const Usage last;
    std::printf("loads          %u\nthreads        %zu, at the end %zu\ndescriptors    %zu, at the end %zu\n"
                "memory         %zu, at the end %zu\n",
                count, warm->threads, last.threads, warm->descriptors, last.descriptors, warm->memory, last.memory);
    if (last.threads > warm->threads || last.descriptors > warm->descriptors || last.memory > warm->memory + 65536)
        tally.AddFinding("something is left behind");
    return tally.Judge();
}

} // namespace soak
