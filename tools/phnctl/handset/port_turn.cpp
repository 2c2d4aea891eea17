#include "phnctl/handset/port_turn.h"

#include "phnctl/text/text.h"
#include "system/system.h"

#include <algorithm>
#include <fmt/format.h>
#include <thread>

namespace phnctl {

namespace {

constexpr std::chrono::milliseconds kPause{50};
constexpr std::chrono::milliseconds kShortestSearch{1000};

} // namespace

PortTurn::PortTurn(const Options& options) : m_options(options)
{
    while (!options.simulator && !TryToTake() && Clock::now() < m_end)
        std::this_thread::sleep_for(kPause);
}

std::chrono::milliseconds PortTurn::Left() const
{
    return std::max(std::chrono::duration_cast<std::chrono::milliseconds>(m_end - Clock::now()), kShortestSearch);
}

void PortTurn::TellBusy()
{
    Tell(LookAtPorts(LookAround().entries));
}

bool PortTurn::TryToTake()
{
    const Surroundings around = LookAround();
    std::shared_ptr<void> lock = host::LockPortFolder(around.folder);
    if (!lock) {
        m_rivals = Names(host::PortFolderHolders(around.folder)) + " is looking for a handset";
        return false;
    }
    const std::vector<PortFinding> ports = LookAtPorts(around.entries);
    const bool isOneFree = std::ranges::any_of(ports, &PortFinding::isAsked);
    if (!isOneFree && std::ranges::any_of(ports, &PortFinding::isBusy)) {
        Tell(ports);
        return false;
    }
    m_lock = std::move(lock);
    return true;
}

void PortTurn::Tell(const std::vector<PortFinding>& ports)
{
    if (const std::string inUse = InUse(ports); !inUse.empty())
        m_rivals = inUse;
    for (const PortFinding& port : ports)
        if (port.isBusy && m_told.insert(port.name).second)
            fmt::print(stderr, "phnctl: {}{}\n", Printable(InUse({port})),
                       port.isThisTools ? fmt::format(": waiting for it, {} s at most", m_options.waitSeconds)
                                        : ". To mend it: " + Printable(port.remedy));
}

} // namespace phnctl
