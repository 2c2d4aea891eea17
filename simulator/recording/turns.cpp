#include "simulator/recording/turns.h"

#include "simulator/commands/command.h"

#include <algorithm>
#include <set>
#include <utility>

namespace simulator {
namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t kPolls[] = {3, 4, 5, 49};
constexpr std::uint32_t kQuestions[] = {1, 2, 6, 12, 15, 17, 18, 25, 26, 27, 30, 34, 35, 39, 40, 41, 46, kAtCommands};

// A wait that a person or a host's time-out would notice.
constexpr auto kKeptWait = 1s;
constexpr auto kLongestWait = 60s; // longer than any of them

bool Has(std::span<const std::uint32_t> commands, std::uint32_t command)
{
    return std::find(commands.begin(), commands.end(), command) != commands.end();
}

// Appends what the handset does next to the last turn; nothing once the host has closed the port.
class Answers
{
public:
    explicit Answers(std::vector<Turn>& turns) : turns_(turns) {}

    void Begin(Moment time)
    {
        isOpen_ = true;
        last_ = time;
    }
    void End() { isOpen_ = false; }

    void Add(const Packet& packet)
    {
        if (!isOpen_)
            return;
        const auto wait = std::chrono::duration_cast<std::chrono::milliseconds>(packet.time + packet.took - last_);
        last_ = packet.time + packet.took;
        turns_.back().steps.push_back(
            {.kind = packet.bytes.empty() ? Step::Kind::HangUp : Step::Kind::Send,
             .delay = wait >= kKeptWait ? std::min<std::chrono::milliseconds>(wait, kLongestWait) : 0ms,
             .bytes = packet.bytes});
    }

private:
    std::vector<Turn>& turns_;
    bool isOpen_ = false; // for the host
    Moment last_{};
};

void FindOptional(std::vector<Turn>& turns)
{
    std::set<Bytes> asked; // since the last change
    for (Turn& turn : turns) {
        const bool changes = Changes(turn.exchange.command);
        turn.isOptional = IsPoll(turn.exchange.command) || (!changes && asked.contains(turn.request));
        if (changes)
            asked.clear();
        asked.insert(turn.request);
    }
}

} // namespace

bool IsPoll(std::uint32_t command)
{
    return Has(kPolls, command);
}

bool Changes(std::uint32_t command)
{
    return !IsPoll(command) && !Has(kQuestions, command);
}

std::string Describe(const Exchange& exchange)
{
    std::string text = exchange.name;
    if (!exchange.rejection.empty())
        text += " (" + exchange.rejection + ")";
    return exchange.request.empty() ? text : text + " " + ToString(exchange.request);
}

Bytes RequestOf(const Dissection& dissection)
{
    const Bytes& plain = dissection.plain;
    if (dissection.kind != Dissection::Kind::Framed)
        return plain;
    return {plain.begin() + static_cast<std::ptrdiff_t>(kRequestRecordOffset),
            plain.end() - static_cast<std::ptrdiff_t>(kCheckSize)};
}

std::vector<Turn> TurnsOf(const Recording& recording)
{
    std::vector<Turn> turns;
    Answers answers(turns);
    Dissector dissector(recording.header.kind);
    for (const RecordedPacket& recorded : recording.packets) {
        const Packet& packet = recorded.packet;
        const Dissection dissection = dissector.Dissect(packet);
        if (packet.sender == Sender::Handset)
            answers.Add(packet);
        else if (packet.bytes.empty())
            answers.End();
        else if (packet.bytes != Bytes{kFlag}) { // one alone parts frames, and asks nothing
            turns.push_back({.line = recorded.line,
                             .request = RequestOf(dissection),
                             .sequence = dissection.exchange.sequence,
                             .exchange = dissection.exchange});
            answers.Begin(packet.time + packet.took);
        }
    }
    FindOptional(turns);
    return turns;
}

} // namespace simulator
