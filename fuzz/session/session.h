// A host's whole session with a hostile handset: the port that arrives, startup, calls of any export, messages of the
// system in between, removal. What the host does and asks for comes from the input; what the handset answers comes from
// a Replier, which for the fuzz target reads the same input.
#pragma once

#include "fuzz/hostile_reply.h"

namespace fuzz {

class Replier
{
public:
    virtual ~Replier() = default;
    // A modem port has no frames.
    virtual Reply Answer(std::span<const std::uint8_t> request, bool isFramed) = 0;
};

// The first byte of an input: the port that arrives.
enum PortBits : std::uint8_t
{
    kPromptReads = 1,
    kModemPort = 2,
    kPortRefuses = 4,
    kPortTellsNothing = 8,
    kWindowIsFull = 16,
};

class Session
{
public:
    Session(Input& input, Replier& replier) : input_(input), replier_(replier) {}

    // Until the input is over, or long enough. Everything is released again.
    void Run();

    // For the calls of the host (host_calls.h).
    Input& In() { return input_; }
    void Arrive();
    void Remove();
    void Suspend();
    void Dispatch();
    void Tick();
    // One call, named by the input; inside a callback too.
    void RunCall();

private:
    Outcome OnWrite(std::span<const std::uint8_t> request);

    Input& input_;
    Replier& replier_;
    bool isModem_ = false;
    int depth_ = 0;
};

} // namespace fuzz
