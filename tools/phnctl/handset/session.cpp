#include "phnctl/handset/session.h"

#include "phnctl/handset/dispatch.h"
#include "phnctl/handset/port_finding.h"
#include "phnctl/handset/port_turn.h"
#include "phnctl/handset/prompt_reads.h"
#include "phnctl/text/error_names.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"
#include "system/system.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <fmt/format.h>
#include <mutex>
#include <stop_token>
#include <thread>

namespace phnctl {

namespace {

constexpr DWORD kPauseAfterSilence = 500;

// While a search goes on: `onDelay` when it does not come to its end soon, and what takes so long and for how long: at
// a terminal a line that counts, and that is wiped when it is over; elsewhere one sentence.
class SearchNotice
{
public:
    SearchNotice(std::chrono::milliseconds wait, std::function<void()> onDelay)
        : m_wait(std::chrono::ceil<std::chrono::seconds>(wait).count()),
          m_onDelay(std::move(onDelay)),
          m_thread([this](const std::stop_token& over) { Count(over); })
    {
    }

private:
    void Count(const std::stop_token& over)
    {
        const bool isShown = host::TerminalWidth(stderr) != 0;
        std::unique_lock lock(m_mutex);
        for (unsigned seconds = 0; !over.stop_requested(); ++seconds) {
            if (seconds == kDelay && m_onDelay) {
                fmt::print(stderr, "{}", isShown ? kWipe : "");
                m_onDelay();
            }
            if (seconds == kDelay && !isShown)
                fmt::print(stderr, "phnctl: looking for a handset, for up to {} s (--wait).\n", m_wait);
            if (isShown && seconds != 0)
                fmt::print(stderr, "\rlooking for a handset: {} of {} s (a serial port is asked every 15 s)", seconds,
                           m_wait);
            m_ended.wait_for(lock, over, std::chrono::seconds(1), [] { return false; });
        }
        fmt::print(stderr, "{}", isShown ? kWipe : "");
    }

    static constexpr unsigned kDelay = 2; // seconds
    static constexpr const char* kWipe = "\r\033[K";

    const std::int64_t m_wait; // seconds
    const std::function<void()> m_onDelay;
    std::mutex m_mutex;
    std::condition_variable_any m_ended;
    std::jthread m_thread; // the last member, so that it ends first
};

struct Search
{
    std::shared_ptr<Library> library;
    std::atomic<bool> over = false;
    std::atomic<PHN_ERROR> answer = PHN_ERROR_NO_DEVICE;

    // One startup waits some 15 s for a port; the second search for a serial handset comes later than that.
    void Run()
    {
        while (!over) {
            answer = library->Startup();
            if (answer == PHN_ERROR_COMMUNICATION)
                Sleep(kPauseAfterSilence);
            else if (answer != PHN_ERROR_NO_DEVICE)
                return;
        }
    }
};

std::string HowToSimulate()
{
    std::string text;
    if (HasEmbeddedHandset())
        text += "To try a simulated handset:\n  phnctl --simulator info\n";
    if (const std::string command = SimulatorCommand(); !command.empty())
        text += "or, in another terminal:\n  " + command + "\n";
    return text;
}

// Why a search found nothing, as far as the ports tell, and what to do. With rivals, a port that is free now need not
// have been free while it was searched.
std::string NoHandsetAdvice(const Options& options, const std::string& rivals)
{
    const std::vector<PortFinding> ports = LookAtPorts(LookAround().entries);
    std::string text = fmt::format("No handset answered within {} s.\n", options.waitSeconds);
    for (const PortFinding& port : ports)
        if (!port.remedy.empty())
            text += fmt::format("{}\n  to mend it: {}\n", Printable(port.detail), Printable(port.remedy));
    const std::string inUse = InUse(ports);
    const std::string silent = Unanswered(ports);
    if (!rivals.empty() && rivals != inUse)
        text += fmt::format("Seen meanwhile: {}. Run the command again.\n", Printable(rivals));
    else if (inUse.empty() && !silent.empty())
        text += fmt::format("{}: {}.\n", Printable(silent), kUnansweredRemedy);
    return text + (ports.empty() ? HowToSimulate() : "") + "'phnctl doctor' shows what was looked for.";
}

std::string NotServedAdvice(PHN_ERROR answer)
{
    if (answer == PHN_ERROR_NOT_SUPPORTED)
        return "The handset is not served: its model is excluded, or it did not tell its model.";
    return "The handset was found, but its service did not start.";
}

// What helps when a handset that was served does not answer any more; nothing for other refusals.
std::string LossAdvice(const Refusal& refusal)
{
    if (refusal.IsLoss())
        return "The handset was lost. Plug it in and run the command again.";
    if (refusal.Code() == PHN_ERROR_FAILED || refusal.Code() == PHN_ERROR_COMMUNICATION)
        return "If the handset was unplugged or switched off meanwhile, run the command again. 'phnctl doctor' looks\n"
               "whether it is there; --log all shows what it was asked and what it answered.";
    return "";
}

} // namespace

Session::Session(const Options& options) : m_options(options)
{
    if (options.simulator)
        m_embedded = StartEmbeddedHandset();
    if (options.logLevel)
        m_log = SetUpLog(*options.logLevel);
    ChooseReads(options.slowReads);
    m_library = std::make_shared<Library>(options.library);
}

Session::~Session()
{
    if (m_log && m_options.logLevel != 0u) {
        const std::string file = m_log->LogFile(m_library->Path());
        fmt::print(stderr, "{}\n",
                   file.empty() ? "log: none was written; is the library's folder writable?" : "log: " + file);
    }
}

PHN_ERROR Session::Find(std::chrono::milliseconds wait, const std::function<void()>& onDelay)
{
    const auto search = std::make_shared<Search>();
    search->library = m_library;
    const SearchNotice notice(wait, onDelay);
    RunDispatching([search] { search->Run(); }, wait);
    search->over = true;
    return search->answer;
}

void Session::Run(const std::function<void(const Handset&)>& work)
{
    const Handset handset(*m_library);
    RunDispatching([&] {
        const Goodbye goodbye(*m_library);
        work(handset);
    });
}

void Session::RunUntil(HANDLE stop, std::function<void(std::shared_ptr<Library>)> work)
{
    RunDispatching([library = m_library, run = std::move(work)] { run(library); }, std::nullopt, stop);
}

int WithHandset(const Options& options, const std::function<void(const Handset&)>& work)
{
    PortTurn turn(options);
    if (!turn.HasCome())
        throw Refusal(ErrorOf(PHN_ERROR_NO_DEVICE), "", NoHandsetAdvice(options, turn.Rivals()));
    Session session(options);
    const PHN_ERROR answer = session.Find(turn.Left(), [&turn] { turn.TellBusy(); });
    if (answer == PHN_ERROR_NO_DEVICE || answer == PHN_ERROR_COMMUNICATION)
        throw Refusal(ErrorOf(answer), "", NoHandsetAdvice(options, turn.Rivals()));
    if (answer != PHN_ERROR_NONE)
        throw Refusal(ErrorOf(answer), "", NotServedAdvice(answer));
    turn.End();
    try {
        session.Run(work);
    } catch (const Refusal& refusal) {
        if (!refusal.Advice().empty())
            throw;
        throw refusal.Advised(LossAdvice(refusal));
    }
    return kDone;
}

} // namespace phnctl
