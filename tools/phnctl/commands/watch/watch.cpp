// phnctl watch: a live view that follows the callbacks. Whatever happens to the handset, it waits for the next one and
// registers again.
#include "phnctl/cli/ending.h"
#include "phnctl/commands/nouns.h"
#include "phnctl/commands/status_report.h"
#include "phnctl/commands/watch/changes.h"
#include "phnctl/commands/watch/view.h"
#include "phnctl/handset/port_finding.h"
#include "phnctl/handset/session.h"
#include "phnctl/handset/surroundings.h"
#include "phnctl/text/error_names.h"
#include "phnctl/text/failure.h"
#include "phnctl/text/text.h"

#include <algorithm>
#include <atomic>
#include <fmt/format.h>
#include <system_error>

namespace phnctl {

namespace {

// A poll that fails tells the host nothing, so a handset that is quiet for so long is asked for its battery.
constexpr std::chrono::seconds kQuiet(10);
constexpr DWORD kPauseAfterSilence = 500;

constexpr const char* kSearching = "for a handset (USB at once, serial within 15 s)";
constexpr const char* kNoGreeting = "for an answer: a port is open, but nobody answers";
constexpr const char* kSilent =
    "no answer; waiting for one, or for the library to give the handset up: on a serial port it "
    "asks every 105 s whether the handset is still there";

// The fields that people see another value of.
std::string Difference(const Section& before, const Section& after)
{
    std::string text;
    for (std::size_t i = 0; i < after.fields.size(); ++i) {
        const Field& field = after.fields[i];
        if (!field.label.empty() && before.fields[i].shown != field.shown)
            text += fmt::format("{}{} {}", text.empty() ? "" : ", ", field.label, field.shown);
    }
    return text;
}

// One handset, from its greeting until it is lost.
class Visit
{
public:
    Visit(const Library& library, const Options& options, Changes& changes, WatchView& view)
        : m_handset(library), m_changes(changes), m_view(view)
    {
        const auto identity = m_handset.Read(library.GetDeviceInfo, "reading the identity");
        const std::string model = FromHandset(identity.szModel);
        m_labels = Labels::ForModel(model, options);
        m_changes.Clear();
        m_handset.Check(library.SetCallback(PHN_CALLBACK_ALL, Changes::Note, 0), "registering callbacks");
        m_known = {{"", "", {{"model", "Model", model}}},
                   ReadBattery(m_handset, m_labels),
                   ReadNetwork(m_handset, m_labels),
                   ReadConnection(m_handset, m_labels),
                   ReadMessageCounts(m_handset, m_labels)};
        m_view.Show({"connected", model, {}, m_known, Effect::Present});
    }

    // Returns when Stop was called; throws Refusal when the handset is lost.
    void Follow()
    {
        while (!m_changes.IsStopped()) {
            const std::vector<std::uint32_t> types = m_changes.Await(kQuiet);
            if (std::find(types.begin(), types.end(), std::uint32_t{PHN_CALLBACK_REMOVED}) != types.end())
                throw Refusal(PHN_ERROR_NO_DEVICE, "");
            if (types.empty() && !m_changes.IsStopped())
                Try([this] { Update(ReadBattery(m_handset, m_labels), false); });
            for (const std::uint32_t type : types)
                Try([&] { Tell(type); });
        }
    }

private:
    void Tell(std::uint32_t type)
    {
        switch (type) {
        case PHN_CALLBACK_CONNECTION_INFO:
            return Update(ReadConnection(m_handset, m_labels), true);
        case PHN_CALLBACK_NETWORK_INFO:
            return Update(ReadNetwork(m_handset, m_labels), true);
        case PHN_CALLBACK_BATTERY_INFO:
            return Update(ReadBattery(m_handset, m_labels), true);
        case PHN_CALLBACK_SMS:
            return Update(ReadMessageCounts(m_handset, m_labels), true);
        case PHN_CALLBACK_STATE_INFO:
            return m_view.Show({"state", "the handset's state has changed", {}, {}});
        default:
            return m_view.Show({"activation", "the activation has gone on", {}, {}});
        }
    }

    void Update(const Section& section, bool isReported)
    {
        Section& known =
            *std::find_if(m_known.begin(), m_known.end(), [&](const Section& old) { return old.key == section.key; });
        const std::string text = Difference(known, section);
        known = section;
        if (isReported || !text.empty())
            m_view.Show({section.key, text.empty() ? "as before" : text, {}, {section}});
    }

    // A refusal is shown and survived, unless the handset is lost.
    void Try(const std::function<void()>& read)
    {
        try {
            read();
            if (std::exchange(m_isSilent, false))
                m_view.Show({"answers", "the handset answers again", {}, {}, Effect::Present});
        } catch (const Refusal& refusal) {
            if (refusal.IsLoss())
                throw;
            if (refusal.Code() != PHN_ERROR_FAILED)
                m_view.Show({"refused", refusal.what(), {{"code", "", refusal.Code()}}, {}});
            else if (!std::exchange(m_isSilent, true))
                m_view.Show({"silent", kSilent, {}, {}, Effect::Missing});
        }
    }

    const Handset m_handset;
    Changes& m_changes;
    WatchView& m_view;
    Labels m_labels;
    std::vector<Section> m_known;
    bool m_isSilent = false;
};

struct Waiting
{
    std::string reason;
    std::string text;
    std::string holders; // of the ports

    std::vector<Field> Members() const
    {
        std::vector<Field> members{{"reason", "", reason}};
        if (!holders.empty())
            members.emplace_back("holders", "", holders);
        return members;
    }
    bool operator==(const Waiting&) const = default;
};

// What is waited for when the library has given that answer.
Waiting WaitingAfter(PHN_ERROR answer)
{
    if (const std::string holders = InUse(LookAtPorts(LookAround().entries)); !holders.empty())
        return {"in-use", "until it is free: " + holders, holders};
    return answer == PHN_ERROR_COMMUNICATION ? Waiting{"answer", kNoGreeting, ""} : Waiting{"search", kSearching, ""};
}

// Lives until the process ends when the library does not come back from a call.
struct Watch
{
    explicit Watch(const Options& all) : options(all), view(MakeWatchView(all)) {}

    void Run(const Library& library)
    {
        while (Greet(library)) {
            const Goodbye goodbye{library};
            try {
                Visit(library, options, changes, *view).Follow();
            } catch (const Refusal& refusal) {
                if (refusal.IsLoss())
                    view->Show({"disconnected", "the handset is gone", {}, {}, Effect::Missing});
                else if (refusal.Code() == PHN_ERROR_FAILED)
                    view->Show({"silent", kSilent, {}, {}, Effect::Missing});
                else
                    throw;
            }
        }
    }

    // False when Stop was called, or a port that another program had is free.
    bool Greet(const Library& library)
    {
        PHN_ERROR answer = PHN_ERROR_NO_DEVICE;
        for (Waiting before; !changes.IsStopped();) {
            const Waiting now = WaitingAfter(answer);
            isFreed = !before.holders.empty() && now.holders.empty();
            if (isFreed)
                return false;
            // What is waited for is said before the call, which may take 15 s.
            if (std::exchange(before, now) != now)
                view->Show({"waiting", now.text, now.Members(), {}, Effect::Missing});
            answer = library.Startup();
            if (answer == PHN_ERROR_NONE)
                return true;
            if (answer == PHN_ERROR_COMMUNICATION)
                Sleep(kPauseAfterSilence);
            else if (answer != PHN_ERROR_NO_DEVICE)
                throw Refusal(answer, Explain(answer));
        }
        return false;
    }

    const Options options;
    const std::unique_ptr<WatchView> view;
    Changes changes;
    std::atomic<bool> isFreed = false;
};

int Follow(const Invocation& invocation)
{
    const auto watch = std::make_shared<Watch>(invocation.options);
    const HANDLE stop = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    if (!stop)
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "CreateEvent");
    {
        const StopRequest request([watch, stop] {
            watch->changes.Stop();
            SetEvent(stop);
        });
        // The library looks at USB ports when it is loaded and when one arrives, not when one becomes free.
        for (bool goesOn = true; goesOn;) {
            Session session(invocation.options);
            session.RunUntil(stop, [watch](const std::shared_ptr<Library>& library) { watch->Run(*library); });
            goesOn = watch->isFreed && !watch->changes.IsStopped();
            if (goesOn)
                session.Unload();
            else
                watch->view->Close();
        }
    }
    CloseHandle(stop);
    return kDone;
}

} // namespace

std::vector<Command> WatchCommands()
{
    return {{"watch",
             "Follow battery, network, connection and messages until Ctrl-C",
             "Shows what changes as the handset reports it; redraws in place on a terminal, prints a\n"
             "line per event elsewhere and a JSON object per line with --json. A handset that goes is\n"
             "waited for, without limit, and followed again. Ctrl-C ends it with exit status 0.\n\n"
             "Examples:\n"
             "  phnctl watch\n"
             "  phnctl watch --json | jq -c 'select(.event == \"battery\")'\n",
             {},
             Follow}};
}

} // namespace phnctl
