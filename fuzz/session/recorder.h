// A session of the script's host with the simulated handset, written down as a seed: what the host reads, and each
// reply where it was asked for. Used by the program that writes the seeds of the session target.
#pragma once

#include "fuzz/session/departures.h"
#include "fuzz/session/script.h"
#include "fuzz/session/session.h"
#include "simulator/handset/session.h"

namespace fuzz {

// Answers as the simulated handset does, and departs from it behind the first replies.
class Recorder final : public Replier
{
public:
    Recorder(const Arguments& script, const Departure& departure, unsigned honestReplies);

    Bytes Record();

    Reply Answer(std::span<const std::uint8_t> request, bool isFramed) override;

private:
    // The script's bytes that the session has read by now stand in front of the reply.
    void TakeScript();

    Bytes Payload(std::span<const std::uint8_t> request, bool isFramed);

    simulator::Handset handset_;
    simulator::Session diagnostic_{handset_, simulator::PortKind::Diagnostic};
    simulator::Session modem_{handset_, simulator::PortKind::Modem};
    const Bytes script_;
    Bytes::const_iterator taken_ = script_.begin();
    Input input_{script_};
    const Departure& departure_;
    const unsigned honestReplies_;
    unsigned replies_ = 0;
    Bytes seed_;
};

} // namespace fuzz
