#include "simulator/phnsim/counterpart.h"

#include "simulator/lines/bridge.h"

#include <algorithm>
#include <stdexcept>

namespace simulator {

Counterpart::Counterpart(const Options& options) : options_(options)
{
    if (options.replay.empty())
        return;
    if (options.recording.header.kind != options.port.kind)
        throw std::invalid_argument(options.replay + " is of a " +
                                    (options.port.kind == PortKind::Modem
                                         ? "diagnostic port: --port, --usb or --tcp replays it"
                                         : "modem port: --modem replays it"));
    replay_.emplace(options.recording, [this](const Deviation& deviation) { Report(deviation); });
}

ConversationMaker Counterpart::Conversations()
{
    if (replay_)
        return replay_->Conversations();
    if (options_.between.empty())
        return SessionsOf(options_.port.kind);
    return BridgeTo(options_.port.openHandset(options_.between), [this] {
        control_->print("the handset has gone");
        control_->End();
    });
}

std::string Counterpart::Name(Simulator& simulator) const
{
    if (replay_)
        return options_.replay;
    return options_.between.empty() ? simulator.Control().Snapshot().identity.model : options_.between;
}

unsigned Counterpart::Closings() const
{
    if (!options_.once)
        return 0;
    return replay_ ? std::max(replay_->Closings(), 1u) : 1;
}

void Counterpart::ReportMissing()
{
    if (const auto missing = replay_ ? replay_->Missing() : std::nullopt)
        Report(*missing);
}

void Counterpart::Report(const Deviation& deviation)
{
    control_->Report({.file = options_.replay, .line = deviation.line, .isStrict = true}, deviation.what);
}

} // namespace simulator
