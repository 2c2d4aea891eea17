// Takes turns with other programs: a search for a handset begins when a port is free on which one may answer, and no
// other phnctl is searching, so that of several that start at once each gets the port as soon as it is free. Used by
// the session before the library is loaded, which opens the first port it can.
#pragma once

#include "phnctl/cli/options.h"
#include "phnctl/handset/port_finding.h"

#include <chrono>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace phnctl {

class PortTurn
{
public:
    // Waits until the turn has come, as long as the options say. Tells who has the ports while all of them are in use.
    // A simulated handset is the tool's own.
    explicit PortTurn(const Options& options);

    // False: the wait was over first.
    bool HasCome() const { return m_options.simulator || m_lock; }

    // What is left of the wait: at least a moment, as long as a handset needs to answer.
    std::chrono::milliseconds Left() const;

    // Names the ports that are in use, each of them once.
    void TellBusy();

    // The next one's turn: the handset was found.
    void End() { m_lock.reset(); }

    // That a port was in use or another phnctl was searching, as far as it was seen; empty: neither.
    const std::string& Rivals() const { return m_rivals; }

private:
    using Clock = std::chrono::steady_clock;

    bool TryToTake();
    void Tell(const std::vector<PortFinding>& ports);

    const Options& m_options;
    const Clock::time_point m_end = Clock::now() + std::chrono::seconds(m_options.waitSeconds);
    std::shared_ptr<void> m_lock;
    std::string m_rivals;
    std::set<std::string> m_told;
};

} // namespace phnctl
