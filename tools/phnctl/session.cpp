#include "phnctl/session.h"

#include "phnctl/dispatch.h"
#include "phnctl/error_names.h"
#include "phnctl/failure.h"
#include "system/system.h"

#include <atomic>
#include <fmt/format.h>

namespace phnctl {

namespace {

constexpr DWORD kPauseAfterSilence = 500;

// Tells a person at a terminal what takes so long, and wipes the line when it is over.
class SearchNotice
{
public:
    SearchNotice()
    {
        if (m_shown)
            fmt::print(stderr, "looking for a handset ...");
    }
    ~SearchNotice()
    {
        if (m_shown)
            fmt::print(stderr, "\r\033[K");
    }
    SearchNotice(const SearchNotice&) = delete;
    SearchNotice& operator=(const SearchNotice&) = delete;

private:
    const bool m_shown = host::TerminalWidth(stderr) != 0;
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

std::string NoHandset(PHN_ERROR answer, const Options& options)
{
    const std::string wait = fmt::format(" within {} s.", options.waitSeconds);
    if (answer == PHN_ERROR_COMMUNICATION)
        return "a port is open, but no handset answered on it" + wait + "\n'phnctl doctor' shows the ports.";
    return "no handset was found" + wait +
           "\n"
           "'phnctl doctor' shows what was looked for. To try a simulated handset:\n"
           "  phnctl --simulator info\n"
           "or, in another terminal:\n"
           "  phnsim --port com5";
}

std::string NotServed(PHN_ERROR answer)
{
    if (answer == PHN_ERROR_NOT_SUPPORTED)
        return "the handset is not served: its model is excluded, or it did not tell its model.";
    return "the handset was found, but its service did not start.";
}

} // namespace

Session::Session(const Options& options) : m_options(options)
{
    if (options.simulator)
        m_embedded = StartEmbeddedHandset();
    if (options.logLevel)
        m_log = SetUpLog(*options.logLevel);
    m_library = std::make_shared<Library>(options.library);
}

Session::~Session()
{
    const std::string path = m_library->Path();
    if (!m_abandoned)
        m_library.reset();
    if (m_log && m_options.logLevel != 0u) {
        const std::string file = m_log->LogFile(path);
        fmt::print(stderr, "{}\n",
                   file.empty() ? "log: none was written; is the library's folder writable?" : "log: " + file);
    }
}

PHN_ERROR Session::Find()
{
    const auto search = std::make_shared<Search>();
    search->library = m_library;
    const SearchNotice notice;
    m_abandoned = !RunDispatching([search] { search->Run(); }, std::chrono::seconds(m_options.waitSeconds));
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
    m_abandoned = !RunDispatching([library = m_library, run = std::move(work)] { run(library); }, std::nullopt, stop);
}

int WithHandset(const Options& options, const std::function<void(const Handset&)>& work)
{
    Session session(options);
    const PHN_ERROR answer = session.Find();
    if (answer == PHN_ERROR_NO_DEVICE || answer == PHN_ERROR_COMMUNICATION)
        throw Refusal(answer, Explain(answer) + '\n' + NoHandset(answer, options));
    if (answer != PHN_ERROR_NONE)
        throw Refusal(answer, Explain(answer) + '\n' + NotServed(answer));
    session.Run(work);
    return kDone;
}

} // namespace phnctl
