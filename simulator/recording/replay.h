// A recording that plays the handset's side: the same answers to the same requests, with the host's sequence
// identifiers, and a sentence as soon as the host departs from what was recorded.
// The order of requests counts, with what hosts do of their own accord let through (docs/simulator.md).
#pragma once

#include "simulator/lines/simulator.h"
#include "simulator/recording/turns.h"

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace simulator {

struct Deviation
{
    unsigned line; // of the recording
    std::string what;
};

class Replay
{
public:
    // Calls `departed`, on the serving thread, at each request that the recording has no answer to.
    Replay(const Recording& recording, std::function<void(const Deviation&)> departed);

    // For a Simulator. The replay goes on from line to line.
    ConversationMaker Conversations();
    // What the host has left out.
    std::optional<Deviation> Missing() const;
    // How often the host or the handset ended a line. Of each that is played, the handset's watcher is told.
    unsigned Closings() const { return closings_; }

private:
    class Voice;

    const Turn* Find(const Bytes& request, std::uint32_t command);
    std::vector<Step> Answer(const Dissection& dissection);
    std::vector<Step> Depart(const Dissection& dissection) const;
    bool MayBeginRequest(const Bytes& bytes) const;

    const PortKind kind_;
    const std::vector<Turn> turns_;
    const unsigned lastLine_;
    const unsigned closings_;
    const std::function<void(const Deviation&)> departed_;
    mutable std::mutex mutex_; // of next_
    std::size_t next_ = 0;
};

} // namespace simulator
