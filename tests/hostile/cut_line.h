// A simulated handset's line on which one reply, or one answer to an AT command, breaks off at a byte, and what a host
// must make of it. The test says what happens to which of those to come; the serving thread asks here for every
// request.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

#include "simulator/lines/simulator.h"
#include "soak/host_calls.h"

constexpr std::chrono::milliseconds kPause{25}; // more than the silence that ends a read

enum class Ending
{
    Silence,      // nothing more comes
    TheRestLater, // it does, behind a silence that ends a read
    HangUp,       // the line drops
    Garbage,      // as many other bytes come as are missing
};

struct Cut
{
    std::size_t exchange; // of those to come, from 0
    std::size_t at;       // bytes of the reply that are right
    Ending ending;
    std::uint32_t seed = 0; // of the garbage
    bool saysError = false; // instead of OK, which an answer to an AT command ends in
};

// What a host can tell from the bytes that came at once.
enum class Verdict
{
    Whole,   // the reply is good as far as its frame, status and result go; the answer has no error in it
    Refused, // the handset refuses, with a status or result that has a code, or with an error
    Foreign, // no reply to the request, or refused with what has no code
    Missing, // more bytes would have to come, and none do
};

class CutLine
{
public:
    explicit CutLine(simulator::PortKind kind = simulator::PortKind::Diagnostic) : kind_(kind) {}

    // What a simulator is made of that offers this line under the name.
    simulator::LineOpener Opener(std::filesystem::path devices, std::string name);
    simulator::ConversationMaker Maker();

    // From here on; none: all replies are whole.
    void Arm(std::optional<Cut> cut);

    // Waits until the armed reply has been asked for and what comes at once was sent; none if that takes ten seconds.
    std::optional<Verdict> AwaitVerdict();

    // The sizes of the replies since the last time, before they were cut.
    std::vector<std::size_t> TakeSizes();

    // Called for every request, with what the handset would do; and when something has been sent.
    std::vector<simulator::Step> Answer(std::vector<simulator::Step> steps);
    void OnSent();

private:
    const simulator::PortKind kind_;
    std::mutex mutex_;
    std::condition_variable judged_;
    std::optional<Cut> armed_;
    std::size_t seen_ = 0;
    std::vector<std::size_t> sizes_;
    std::optional<Verdict> verdict_;
    bool isSent_ = false;
};
