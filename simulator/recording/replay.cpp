#include "simulator/recording/replay.h"

#include <algorithm>
#include <utility>

namespace simulator {
namespace {

// Of lines on which the host had sent something. Where the handset closed first, the host's closing is not another one.
unsigned CountClosings(const Recording& recording)
{
    unsigned closings = 0;
    bool isOpen = false;
    for (const auto& [line, packet, blanked] : recording.packets) {
        if (packet.bytes.empty())
            closings += std::exchange(isOpen, false) ? 1 : 0;
        else if (packet.sender == Sender::Host)
            isOpen = true;
    }
    return closings;
}

// The reply frame with its sequence identifier moved by as much as the request's is, and the check value as right or
// wrong as it was.
Bytes Carried(const Bytes& stuffed, std::uint32_t shift)
{
    if (stuffed.empty() || stuffed.back() != kFlag)
        return stuffed;
    const Bytes frame = Unstuff(std::span(stuffed).first(stuffed.size() - 1));
    if (frame.size() < kReplyPayloadOffset + kCheckSize)
        return stuffed;
    const auto checked = std::span(frame).first(frame.size() - kCheckSize);
    const bool isRight = FieldReader(std::span(frame).last(kCheckSize)).U16("check") == CheckValue(checked);
    FieldWriter carried;
    carried.Append(checked.first(kReplySequenceOffset));
    carried.U32("sequence", FieldReader(checked.subspan(kReplySequenceOffset)).U32("sequence") + shift);
    carried.Append(checked.subspan(kReplyPayloadOffset));
    carried.U16("check", static_cast<std::uint16_t>(CheckValue(carried.Written()) ^ (isRight ? 0 : 0xFFFF)));
    return Stuff(carried.Written());
}

// Two requests that read the same differ in bytes that nobody interprets.
std::string Instead(const Exchange& expected, const Exchange& came)
{
    const std::string text = Describe(came);
    return text == Describe(expected) ? "it came with other bytes" : text + " came";
}

} // namespace

// Packets out of the host's bytes, for one line.
class Replay::Voice : public Conversation
{
public:
    Voice(Replay& replay, Handset& handset) : replay_(replay), handset_(handset), dissector_(replay.kind_) {}

    // A line that the recorded handset has dropped ends as one that the host closes.
    ~Voice() override
    {
        if (isDropped_)
            handset_.Tell({.command = kPortClosed, .name = "close"});
    }
    Voice(const Voice&) = delete;
    Voice& operator=(const Voice&) = delete;

    std::vector<Step> Receive(std::span<const std::uint8_t> bytes) override
    {
        std::vector<Step> steps;
        for (const std::uint8_t byte : bytes) {
            received_.push_back(byte);
            if (IsWhole())
                Take(steps);
        }
        return steps;
    }

private:
    // On a modem port, a request is whole as soon as the recording has it, or cannot have it.
    bool IsWhole() const
    {
        return replay_.kind_ == PortKind::Diagnostic ? received_.back() == kFlag : !replay_.MayBeginRequest(received_);
    }

    void Take(std::vector<Step>& steps)
    {
        const Dissection dissection =
            dissector_.Dissect({.time = std::chrono::system_clock::now(), .bytes = std::exchange(received_, {})});
        const std::vector<Step> answer = replay_.Answer(dissection);
        steps.insert(steps.end(), answer.begin(), answer.end());
        handset_.Tell(dissection.exchange);
        isDropped_ = isDropped_ || std::any_of(answer.begin(), answer.end(),
                                               [](const Step& step) { return step.kind == Step::Kind::HangUp; });
    }

    Replay& replay_;
    Handset& handset_;
    Dissector dissector_;
    Bytes received_;
    bool isDropped_ = false;
};

Replay::Replay(const Recording& recording, std::function<void(const Deviation&)> departed)
    : kind_(recording.header.kind),
      turns_(TurnsOf(recording)),
      lastLine_(recording.packets.empty() ? 1 : recording.packets.back().line),
      closings_(CountClosings(recording)),
      departed_(std::move(departed))
{
}

ConversationMaker Replay::Conversations()
{
    return [this](Handset& handset, Line&) { return std::make_unique<Voice>(*this, handset); };
}

// The turn that answers this request: the next one, where those that hosts may leave out do not count; or one before
// since which nothing has changed; or, for a poll, the last one before or else the first one behind.
const Turn* Replay::Find(const Bytes& request, std::uint32_t command)
{
    const auto isIt = [&](const Turn& turn) { return turn.request == request; };
    const auto next = turns_.begin() + static_cast<std::ptrdiff_t>(next_);
    const auto due = std::find_if(next, turns_.end(), [&](const Turn& turn) { return isIt(turn) || !turn.isOptional; });
    if (due != turns_.end() && isIt(*due)) {
        next_ = static_cast<std::size_t>(due - turns_.begin()) + 1;
        return &*due;
    }
    for (auto turn = next; turn != turns_.begin();) {
        --turn;
        if (isIt(*turn) && !Changes(command))
            return &*turn;
        if (Changes(turn->exchange.command) && !IsPoll(command))
            break;
    }
    const auto later = IsPoll(command) ? std::find_if(next, turns_.end(), isIt) : turns_.end();
    return later == turns_.end() ? nullptr : &*later;
}

std::vector<Step> Replay::Answer(const Dissection& dissection)
{
    const std::scoped_lock lock(mutex_);
    if (dissection.plain == Bytes{kFlag}) // parts frames, and asks nothing
        return {};
    const Turn* const turn = Find(RequestOf(dissection), dissection.exchange.command);
    if (!turn)
        return Depart(dissection);
    std::vector<Step> steps = turn->steps;
    if (turn->sequence && dissection.exchange.sequence)
        for (Step& step : steps)
            step.bytes = Carried(step.bytes, *dissection.exchange.sequence - *turn->sequence);
    return steps;
}

std::vector<Step> Replay::Depart(const Dissection& dissection) const
{
    if (const auto missing = std::find_if(turns_.begin() + static_cast<std::ptrdiff_t>(next_), turns_.end(),
                                          [](const Turn& turn) { return !turn.isOptional; });
        missing != turns_.end())
        departed_({missing->line, Describe(missing->exchange) + " was expected, but " +
                                      Instead(missing->exchange, dissection.exchange)});
    else
        departed_({lastLine_, "nothing more was expected, but " + Describe(dissection.exchange) + " came"});
    return {};
}

std::optional<Deviation> Replay::Missing() const
{
    const std::scoped_lock lock(mutex_);
    const auto missing = std::find_if(turns_.begin() + static_cast<std::ptrdiff_t>(next_), turns_.end(),
                                      [](const Turn& turn) { return !turn.isOptional; });
    if (missing == turns_.end())
        return std::nullopt;
    return Deviation{missing->line, Describe(missing->exchange) + " was expected, but never came"};
}

bool Replay::MayBeginRequest(const Bytes& bytes) const
{
    return std::any_of(turns_.begin(), turns_.end(), [&](const Turn& turn) {
        return turn.request.size() > bytes.size() && std::equal(bytes.begin(), bytes.end(), turn.request.begin());
    });
}

} // namespace simulator
