#include "simulator/handset/session.h"

#include "simulator/commands/command.h"
#include "simulator/handset/reply.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace simulator {
namespace {

constexpr std::size_t kLongestAtLine = 512;
constexpr unsigned kRecordMode = 2;

std::string HexLine(std::span<const std::uint8_t> bytes, std::size_t offset)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string line = "    ";
    for (int shift = 12; shift >= 0; shift -= 4)
        line += kDigits[offset >> shift & 0xF];
    line += " ";
    for (const std::uint8_t byte : bytes)
        line.append({' ', kDigits[byte >> 4], kDigits[byte & 0xF]});
    return line;
}

std::string Printable(std::string_view text)
{
    std::string printable;
    for (const char c : text)
        printable += std::isprint(static_cast<unsigned char>(c)) ? std::string(1, c)
                     : c == '\r'                                 ? "\\r"
                     : c == '\n'                                 ? "\\n"
                                                                 : "?";
    return printable;
}

std::string RequestLine(const Exchange& exchange)
{
    if (!exchange.rejection.empty())
        return exchange.name + " (" + exchange.rejection + ")";
    return exchange.request.empty() ? exchange.name : exchange.name + ": " + ToString(exchange.request);
}

bool IsAt(const Bytes& received)
{
    const auto is = [&](std::size_t i, char letter) {
        return received.size() <= i || std::toupper(received[i]) == letter;
    };
    return is(0, 'A') && is(1, 'T');
}

// What the steps from `first` on send.
Bytes SentBytes(const std::vector<Step>& steps, std::size_t first)
{
    Bytes sent;
    for (const Step& step : std::span(steps).subspan(first))
        sent.insert(sent.end(), step.bytes.begin(), step.bytes.end());
    return sent;
}

} // namespace

std::vector<Step> Session::Receive(std::span<const std::uint8_t> bytes)
{
    std::vector<Step> steps;
    if (kind_ == PortKind::Diagnostic)
        for (const std::uint8_t byte : bytes)
            ReceiveFramed(byte, steps);
    else {
        received_.insert(received_.end(), bytes.begin(), bytes.end());
        while (!received_.empty() && TakeModemInput(steps))
            ;
    }
    return steps;
}

void Session::ReceiveFramed(std::uint8_t byte, std::vector<Step>& steps)
{
    if (byte != kFlag) {
        overlong_ = overlong_ || received_.size() >= kLongestRequestFrame - 1;
        if (!overlong_)
            received_.push_back(byte);
        return;
    }
    Bytes received = std::exchange(received_, {});
    if (std::exchange(overlong_, false))
        return Reject("a frame of more than " + std::to_string(kLongestRequestFrame) + " bytes", received);
    if (received.empty())
        return;
    const RequestFrame frame = ParseRequest(received);
    received.push_back(kFlag);
    if (!frame.reason.empty())
        return Reject(frame.reason, received);
    Answer(frame.record, frame.sequence, received, steps);
}

// Takes one item from the front of what was received; false when more bytes are needed.
bool Session::TakeModemInput(std::vector<Step>& steps)
{
    const bool isLineEnd = received_.front() == '\r' || received_.front() == '\n';
    // Records of commands 13 and 10 begin with the same bytes; there, zeros follow.
    const bool mayBeRecord = mode_ == kRecordMode && (received_.size() < 2 || received_[1] == 0);
    if (isLineEnd && !mayBeRecord)
        received_.erase(received_.begin());
    else if (IsAt(received_))
        return TakeAtLine(steps);
    else if (mode_ == kRecordMode)
        return TakeRawRecord(steps);
    else {
        Reject("bytes that are no AT command before AT+MODE=2", std::exchange(received_, {}));
    }
    return true;
}

bool Session::TakeAtLine(std::vector<Step>& steps)
{
    const auto end = std::find(received_.begin(), received_.end(), '\r');
    if (end == received_.end() && received_.size() <= kLongestAtLine)
        return false;
    const std::string line(received_.begin(), end);
    received_.erase(received_.begin(), end == received_.end() ? end : end + 1);
    if (line.size() > kLongestAtLine)
        Reject("an AT command of more than " + std::to_string(kLongestAtLine) + " characters",
               Bytes(line.begin(), line.end()));
    else
        AnswerAt(line, steps);
    return true;
}

bool Session::TakeRawRecord(std::vector<Step>& steps)
{
    if (received_.size() < kRequestHeaderSize)
        return false;
    FieldReader header(received_);
    const Command* command = FindCommand(header.U32("command"));
    const bool isKnown = command && header.U16("one") == 1;
    const auto expected = isKnown ? ExpectedSize(*command, received_) : received_.size();
    if (!expected || (*expected <= kLongestRequest && *expected > received_.size()))
        return false;
    const auto size = static_cast<std::ptrdiff_t>(std::min<std::uint64_t>(*expected, received_.size()));
    const Bytes record(received_.begin(), received_.begin() + size);
    received_.erase(received_.begin(), received_.begin() + size);
    Answer(record, std::nullopt, record, steps);
    return true;
}

void Session::Answer(const Bytes& record, std::optional<std::uint32_t> sequence, const Bytes& received,
                     std::vector<Step>& steps)
{
    if (record.size() < kRequestHeaderSize)
        return Reject("a request of " + std::to_string(record.size()) + " bytes", received);
    FieldReader header(record);
    const std::vector<Fault> faults = handset_.TakeFaults(header.U32("command"));
    const Departure departure = DepartureOf(faults);
    Answered answered;
    handset_.Change(0, [&](Phone& phone) { answered = CarryOut(phone, record, departure); });
    const Bytes reply = ReplyBytes(std::move(answered.payload), sequence, departure);
    const std::size_t first = steps.size();
    AppendSteps(reply, departure, steps);
    Exchange& exchange = answered.exchange;
    exchange.sequence = sequence;
    exchange.faults = faults;
    exchange.received = received;
    exchange.sent = SentBytes(steps, first);
    TraceAnswer(exchange, record, reply);
    if (exchange.rejection.empty())
        handset_.CountRequest(exchange.command, record);
    else
        handset_.CountRejection(RequestLine(exchange));
    handset_.Tell(exchange);
}

void Session::TraceAnswer(const Exchange& exchange, const Bytes& record, const Bytes& reply)
{
    const std::string tag = (exchange.sequence ? "#" + std::to_string(*exchange.sequence) : "raw") + " " +
                            std::to_string(exchange.command) + " ";
    std::string struck;
    for (const Fault& fault : exchange.faults)
        struck += " [" + ToString(fault) + "]";
    Trace("< " + tag + RequestLine(exchange), record);
    Trace("> " + tag + exchange.name + ": " + ToString(exchange.reply) + struck, reply);
}

void Session::AnswerAt(const std::string& line, std::vector<Step>& steps)
{
    const std::vector<Fault> faults = handset_.TakeFaults(kAtCommands);
    const Departure departure = DepartureOf(faults);
    const std::string echo = echo_ ? line + "\r" : "";
    const std::string answer = echo + "\r\n" + (departure.isAtError ? "ERROR" : ExecuteAt(line)) + "\r\n";
    const Bytes bytes = ReplyBytes(Bytes(answer.begin(), answer.end()), std::nullopt, departure);
    Trace("< AT " + Printable(line), Bytes(line.begin(), line.end()));
    Trace("> AT " + Printable(answer), bytes);
    const std::size_t first = steps.size();
    AppendSteps(bytes, departure, steps);
    handset_.CountRequest(kAtCommands, Bytes(line.begin(), line.end()));
    handset_.Tell({.command = kAtCommands,
                   .name = "at",
                   .request = {{"line", line, Field::Kind::Text}},
                   .reply = {{"answer", answer, Field::Kind::Text}},
                   .faults = faults,
                   .received = Bytes(line.begin(), line.end()),
                   .sent = SentBytes(steps, first)});
}

std::string Session::ExecuteAt(std::string_view line)
{
    std::string command(line.substr(2));
    std::transform(command.begin(), command.end(), command.begin(),
                   [](char c) { return static_cast<char>(std::toupper(static_cast<unsigned char>(c))); });
    if (command == "E0" || command == "E1")
        echo_ = command == "E1";
    else if (command == "+MODE?")
        return "+MODE: " + std::to_string(mode_) + "\r\n\r\nOK";
    else if (command.size() == 7 && command.starts_with("+MODE=") && command.back() >= '0' && command.back() <= '2')
        mode_ = static_cast<unsigned>(command.back() - '0');
    else if (!command.empty())
        return "ERROR";
    return "OK";
}

void Session::Reject(const std::string& reason, const Bytes& received)
{
    handset_.CountRejection(reason);
    Trace("< rejected: " + reason, {});
    handset_.Tell({.name = "rejected", .rejection = reason, .received = received});
}

void Session::Trace(const std::string& line, std::span<const std::uint8_t> bytes)
{
    constexpr std::size_t kPerLine = 16;
    const auto [sink, detail] = handset_.Trace();
    if (!sink)
        return;
    sink(line);
    for (std::size_t at = 0; detail == TraceDetail::Hex && at < bytes.size(); at += kPerLine)
        sink(HexLine(bytes.subspan(at, std::min(kPerLine, bytes.size() - at)), at));
}

} // namespace simulator
