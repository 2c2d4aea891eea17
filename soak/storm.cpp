#include "storm.h"

#include <cstdio>
#include <cstdlib>

#include "host.h"
#include "log_search.h"
#include "simulator/lines/simulator.h"
#include "support/messages.h"
#include "support/usage.h"
#include "surroundings.h"

namespace soak {
namespace {

using std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto kPatience = 120s;            // until all threads have ended
constexpr std::size_t kMemory = 512 * 1024; // that the caches of the run-time libraries may have grown by

// Of the turns before a call's own: one of each other thread, of the watch and of the poll, two of which may delete
// everything.
std::chrono::milliseconds Turns(const std::map<std::string, std::chrono::milliseconds>& bounds)
{
    return (Ledger::kThreads - 1) * bounds.at("PHN_GetFirstMessage") + 2 * bounds.at("PHN_DeleteAllMessages");
}

class Storm
{
public:
    Storm(const Surroundings& surroundings, std::uint32_t seed)
        : seed_(seed),
          usb_(surroundings.Devices(), simulator::UsbInterfaceName("0001")),
          serial_(simulator::PtyLines(surroundings.Devices(), "com5"), Sessions()),
          library_(surroundings.LibraryPath()),
          host_(library_, tally_, refusals_, usb_.Control().Snapshot()),
          log_(surroundings.Folder(), {kText, kNumber, kLockCode})
    {
        usb_.Control().Seed(seed);
        usb_.Control().SetWatcher([this](const simulator::Exchange& exchange) { refusals_.Heed(exchange); });
    }

    bool Run(std::chrono::milliseconds duration)
    {
        const Usage begin = Stir(duration / 5, seed_ * 2); // what is made once is made by then
        const Usage end = Stir(duration - duration / 5, seed_ * 2 + 1);
        for (const std::string& difference : host_.Compare(held_))
            tally_.AddFinding("lost: " + difference);
        for (const std::string& line : log_.Findings())
            tally_.AddFinding("told in the log: " + line);
        std::printf("seed           %u\nexchanges      %llu\ncallbacks      %llu\nlines of log   %llu\n", seed_,
                    static_cast<unsigned long long>(usb_.Control().Requests()),
                    static_cast<unsigned long long>(host_.Told()), static_cast<unsigned long long>(log_.Lines()));
        if (log_.Lines() == 0)
            tally_.AddFinding("there is no log");
        Compare("threads", begin.threads, end.threads, 0);
        Compare("descriptors", begin.descriptors, end.descriptors, 0);
        Compare("memory", begin.memory, end.memory, kMemory);
        return tally_.Report(host_.Bounds(), Turns(host_.Bounds()));
    }

private:
    // The serial port is another port of the same handset: its memory, its faults.
    simulator::ConversationMaker Sessions()
    {
        return [this](simulator::Handset&, simulator::Line&) {
            return std::make_unique<simulator::Session>(usb_.Control(), simulator::PortKind::Diagnostic);
        };
    }

    // Lets all loose for so long; then all is quiet, and a handset is served.
    Usage Stir(std::chrono::milliseconds duration, std::uint32_t seed)
    {
        usb_.Start();
        serial_.Start();
        host_.Start(seed);
        std::jthread disturber([&](const std::stop_token& stop) { Disturb(stop, seed); });
        Dispatch(steady_clock::now() + duration, seed);
        disturber.request_stop();
        disturber.join();
        host_.Stop();
        const auto patience = steady_clock::now() + kPatience;
        while (!host_.HasEnded() && steady_clock::now() < patience)
            DispatchFor(5);
        if (!host_.HasEnded()) {
            std::printf("FINDING        a thread hangs (seed %u)\n", seed_);
            std::fflush(stdout);
            std::abort();
        }
        host_.Join();
        Settle();
        // What the host has put into the handset lies in this process, too.
        usb_.Control().Change(0, [](simulator::Phone& phone) { phone = simulator::DefaultPhone(); });
        const Usage usage;
        usb_.Control().Change(0, [this](simulator::Phone& phone) { phone = held_; });
        return usage;
    }

    void Settle()
    {
        usb_.Control().ClearFaults();
        serial_.Unplug();
        usb_.Replug();
        const auto startup = [this] { return SOAK_EXPORT(library_, PHN_Startup)() == PHN_ERROR_NONE; };
        if (!PumpUntil(startup))
            tally_.AddFinding("the service does not start again");
        SOAK_EXPORT(library_, PHN_Shutdown)();
        log_.Search();
        held_ = usb_.Control().Snapshot();
    }

    // The loading thread's part.
    void Dispatch(steady_clock::time_point end, std::uint32_t seed)
    {
        Dice dice(seed + 500);
        while (steady_clock::now() < end) {
            for (auto rounds = dice() % 200; rounds > 0 && steady_clock::now() < end; --rounds)
                DispatchFor(5);
            const HWND window = FindWindowExA(nullptr, nullptr, "PHNNRVDeviceWindow", nullptr);
            SendMessageA(window, WM_POWERBROADCAST, PBT_APMSUSPEND, 0);
            SendMessageA(window, WM_POWERBROADCAST, PBT_APMRESUMESUSPEND, 0);
        }
    }

    static void DispatchFor(DWORD milliseconds)
    {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, milliseconds, QS_ALLINPUT);
        DispatchPending();
    }

    // The handsets' part.
    void Disturb(const std::stop_token& stop, std::uint32_t seed)
    {
        Dice dice(seed + 600);
        while (!stop.stop_requested()) {
            simulator::Simulator& handset = dice() % 4 ? usb_ : serial_;
            usb_.Control().Change(static_cast<std::uint16_t>(dice() % 0x200), [](simulator::Phone&) {});
            const auto turn = dice() % 16;
            if (turn == 0)
                handset.Unplug();
            else if (turn == 1)
                handset.HangUp();
            else if (turn < 6)
                handset.Replug();
            else
                usb_.Control().AddFault(AnyFault(dice));
            log_.Search();
            std::this_thread::sleep_for(std::chrono::milliseconds(dice() % 400));
        }
    }

    // Strikes at most three times, or the line would soon carry nothing right. One in four is out of all proportion: a
    // reply that is late, or too long. None has the identifier of a request to come, which the handset has not read
    // yet, or is so short that its zeros tell of a contact 0.
    static std::string AnyFault(Dice& dice)
    {
        constexpr std::uint32_t kShortest = 4;
        const auto kinds = simulator::AllFaultKinds();
        const simulator::FaultKind& kind = kinds[dice() % kinds.size()];
        const auto most = kind.name == "delay" ? dice() % 300 : dice() % 60000;
        const auto least = kind.name == "payload" ? kShortest : 0;
        std::string fault(kind.name);
        for (std::size_t value = 0; value < std::min<std::size_t>(kind.values, 2); ++value)
            fault += (value                     ? ","
                      : kind.name == "sequence" ? "=-"
                                                : "=") +
                     std::to_string(value ? 0xFFFF : least + (dice() % 4 ? dice() % 40 : most));
        return fault + "*" + std::to_string(1 + dice() % 3);
    }

    void Compare(const char* what, std::size_t before, std::size_t after, std::size_t more)
    {
        std::printf("%-14s %zu, at the end %zu\n", what, before, after);
        if (after > before + more)
            tally_.AddFinding(std::string("more ") + what + " at the end");
    }

    const std::uint32_t seed_;
    Tally tally_;
    Refusals refusals_;
    simulator::Simulator usb_;
    simulator::Simulator serial_;
    Library library_;
    Host host_;
    LogSearch log_;
    simulator::Phone held_;
};

} // namespace

bool RunStorm(const Surroundings& surroundings, double minutes, std::uint32_t seed)
{
    return Storm(surroundings, seed).Run(std::chrono::milliseconds(static_cast<long>(minutes * 60000)));
}

} // namespace soak
