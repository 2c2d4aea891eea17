// One line to a simulated handset: the bytes of a host in, what to send and when out. It knows no transport.
// Used by the transports, and directly by tests and fuzzers that need no port. A session is used by one thread.
#pragma once

#include "simulator/handset/conversation.h"
#include "simulator/handset/handset.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

enum class PortKind
{
    Diagnostic, // framed requests and replies
    Modem,      // AT commands, and raw request records once the mode is 2
};

class Session : public Conversation
{
public:
    Session(Handset& handset, PortKind kind) : handset_(handset), kind_(kind) {}

    std::vector<Step> Receive(std::span<const std::uint8_t> bytes) override;

private:
    void ReceiveFramed(std::uint8_t byte, std::vector<Step>& steps);
    bool TakeModemInput(std::vector<Step>& steps);
    bool TakeAtLine(std::vector<Step>& steps);
    bool TakeRawRecord(std::vector<Step>& steps);
    void Answer(const Bytes& record, std::optional<std::uint32_t> sequence, const Bytes& received,
                std::vector<Step>& steps);
    void TraceAnswer(const Exchange& exchange, const Bytes& record, const Bytes& reply);
    void AnswerAt(const std::string& line, std::vector<Step>& steps);
    std::string ExecuteAt(std::string_view line);
    void Reject(const std::string& reason, const Bytes& received);
    void Trace(const std::string& line, std::span<const std::uint8_t> bytes);

    Handset& handset_;
    const PortKind kind_;
    Bytes received_;
    bool overlong_ = false;
    bool echo_ = true;
    unsigned mode_ = 0;
};

} // namespace simulator
