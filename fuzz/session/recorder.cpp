#include "fuzz/session/recorder.h"

#include <utility>

#include "simulator/handset/frame.h"

namespace fuzz {

Recorder::Recorder(const Arguments& script, const Departure& departure, unsigned honestReplies)
    : script_(script.bytes), departure_(departure), honestReplies_(honestReplies)
{
    handset_.Change(0xFFFF, [](simulator::Phone&) {});
}

Bytes Recorder::Record()
{
    Session(input_, *this).Run();
    TakeScript();
    return std::move(seed_);
}

Reply Recorder::Answer(std::span<const std::uint8_t> request, bool isFramed)
{
    TakeScript();
    const Departure& departure = replies_++ < honestReplies_ ? HonestReply() : departure_;
    const Bytes encoded = departure.encode(Payload(request, isFramed));
    seed_.insert(seed_.end(), encoded.begin(), encoded.end());
    Input reply(encoded);
    return HostileReply(reply, isFramed);
}

void Recorder::TakeScript()
{
    const auto end = script_.end() - static_cast<std::ptrdiff_t>(input_.Left());
    seed_.insert(seed_.end(), taken_, end);
    taken_ = end;
}

Bytes Recorder::Payload(std::span<const std::uint8_t> request, bool isFramed)
{
    Bytes bytes;
    for (const simulator::Step& step : (isFramed ? diagnostic_ : modem_).Receive(request))
        bytes.insert(bytes.end(), step.bytes.begin(), step.bytes.end());
    if (!isFramed || bytes.size() <= 16)
        return bytes;
    const Bytes frame = simulator::Unstuff(std::span(bytes).first(bytes.size() - 1));
    return {frame.begin() + simulator::kReplyPayloadOffset, frame.end() - simulator::kCheckSize};
}

} // namespace fuzz
