// The simulated handset: its memory, its faults and its counters, safe to drive from any thread while it serves.
// Tests, phnctl and phnsim change and watch it here; a Session speaks its protocol, whatever carries the bytes.
// Everything behind one mutex; the trace sink and the watcher are called outside it, on the serving thread.
#pragma once

#include "simulator/handset/exchange.h"
#include "simulator/handset/fault.h"
#include "simulator/phone/phone.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace simulator {

enum class TraceDetail
{
    Decoded, // one line per frame
    Hex,     // the bytes as well
};

class Handset
{
public:
    explicit Handset(Phone phone = DefaultPhone());

    // Memory. Change() runs on the caller's thread, under the lock; `changed` are Variance bits to report to the host.
    Phone Snapshot() const;
    void Change(std::uint16_t changed, const std::function<void(Phone&)>& change);
    void SetBattery(const Battery& battery);
    void SetNetwork(const Network& network);
    void SetConnection(const Connection& connection);
    void SetEndReason(std::uint8_t reason);
    void SetModel(const std::string& model);
    // A message arrives in the inbox; returns its index.
    std::uint32_t Deliver(const Message& message);

    // `path` names a place in the state file ("battery/battery2", "contacts/3/firstName"), `value` is its JSON text, or
    // plain text where a text is wanted. Status sections set their variance bit. Throws std::invalid_argument.
    void Set(std::string_view path, std::string_view value);
    // The state, or the part at `path`, as JSON text. Throws std::invalid_argument.
    std::string Show(std::string_view path = {}) const;

    // The state file. Load leaves everything as it was when it throws (std::runtime_error with file and place).
    void Load(const std::filesystem::path& file);
    void Save(const std::filesystem::path& file) const;

    // Faults. Those that strike by chance strike the same requests again after the same seed.
    void Seed(std::uint32_t seed);
    void AddFault(const Fault& fault);
    void AddFault(std::string_view text) { AddFault(ParseFault(text)); }
    void ClearFaults();
    void ClearFaults(const FaultKind& kind);
    std::vector<Fault> Faults() const;

    // Counters of well-formed requests, by command number, and of everything that was turned away with the last reason.
    std::uint64_t Requests(std::uint32_t command) const;
    std::uint64_t Requests() const;
    std::uint64_t Rejected() const;
    std::string LastRejection() const;
    // The last request record of this command, header included; empty when none came.
    std::vector<std::uint8_t> LastRequest(std::uint32_t command) const;
    // True once `count` requests of the command have come in all, false when real time runs out first.
    bool WaitForRequests(std::uint32_t command, std::uint64_t count, std::chrono::milliseconds timeout) const;

    // One line per frame, without a line end. An empty sink turns tracing off.
    using TraceSink = std::function<void(std::string_view line)>;
    void SetTrace(TraceSink sink, TraceDetail detail = TraceDetail::Decoded);

    // Every exchange, decoded, before its reply is sent. Called on the serving thread, which waits for it: what is
    // changed here is in place when the host reads the reply. An empty watcher sees nothing.
    using Watcher = std::function<void(const Exchange&)>;
    void SetWatcher(Watcher watcher);
    void Tell(const Exchange& exchange) const;

    // Called behind each change of the memory, the faults or the line, on the thread that made it, without the lock.
    // An empty function is told nothing.
    void WhenChanged(std::function<void()> told);
    void TellChange() const;

private:
    friend class Session;

    void CountRequest(std::uint32_t command, std::vector<std::uint8_t> record);
    void CountRejection(const std::string& reason);
    // The faults that strike this request, in their order; kAtCommands asks for those of an AT command.
    std::vector<Fault> TakeFaults(std::uint32_t command);
    std::pair<TraceSink, TraceDetail> Trace() const;

    const Phone fresh_; // what a file that is loaded does not name
    mutable std::mutex mutex_;
    mutable std::condition_variable requestCame_;
    Phone phone_;
    std::vector<Fault> faults_;
    std::mt19937 random_;
    std::map<std::uint32_t, std::uint64_t> requests_;
    std::map<std::uint32_t, std::vector<std::uint8_t>> lastRequest_;
    std::uint64_t rejected_ = 0;
    std::string lastRejection_;
    TraceSink trace_;
    Watcher watcher_;
    std::function<void()> changed_;
    TraceDetail traceDetail_ = TraceDetail::Decoded;
};

} // namespace simulator
