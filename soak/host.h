// A host of many threads that calls everything at random, and whose callbacks do so, too. One seed gives the choices of
// each thread.
#pragma once

#include <atomic>
#include <map>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "ledger.h"
#include "library.h"
#include "saved_messages.h"
#include "soak/host_calls.h"
#include "tally.h"

namespace soak {

using Dice = std::minstd_rand;

// A lock code that the host uses beside those of everybody.
inline constexpr const char* kLockCode = "Qz7#";

class Host
{
public:
    // One at a time: the functions that it registers are plain ones. The phone is the handset's before the run.
    Host(const Library& library, Tally& tally, const Refusals& refusals, const simulator::Phone& phone);
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    void Start(std::uint32_t seed);
    // No thread begins another call.
    void Stop() { isOver_ = true; }
    bool HasEnded() const { return running_ == 0; }
    void Join() { threads_.clear(); }

    // What of the threads' entries the handset has lost, or still has: a sentence for each.
    std::vector<std::string> Compare(const simulator::Phone& phone) const;
    std::map<std::string, std::chrono::milliseconds> Bounds() const;
    std::uint64_t Told() const { return told_; }

private:
    struct Call
    {
        std::string name;
        bool isCount;
        std::function<std::uint32_t(unsigned thread, Dice& dice)> call;
    };

    static void PHN_CALL Tell(std::uint32_t type);
    void Run(unsigned thread, std::uint32_t seed);
    std::uint32_t Make(const Call& call, unsigned thread, Dice& dice);
    void AddPlainCalls();
    void AddKeptCalls(const std::string& kind, Ledger& ledger);
    void AddMessageCalls();
    void AddChosenCalls();
    // Several times: they come as often.
    void Add(const std::string& name, const std::function<std::uint32_t(unsigned thread, Dice& dice)>& call);

    const Library& library_;
    Tally& tally_;
    const FindExport find_;
    Ledger events_;
    Ledger contacts_;
    SavedMessages messages_;
    const std::vector<HostCall> table_;
    std::vector<Call> calls_;
    std::atomic<bool> isOver_ = false;
    std::atomic<unsigned> running_ = 0;
    std::atomic<std::uint64_t> told_ = 0;
    std::vector<std::jthread> threads_;
};

} // namespace soak
