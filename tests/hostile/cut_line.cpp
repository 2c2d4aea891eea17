#include "hostile/cut_line.h"

#include <algorithm>
#include <chrono>
#include <random>
#include <string>
#include <string_view>
#include <utility>

#include "simulator/commands/command.h"
#include "simulator/handset/frame.h"

namespace {

using namespace std::chrono_literals;
using simulator::Bytes;
using simulator::Step;

constexpr std::size_t kPayload = simulator::kReplyPayloadOffset;

std::uint32_t NumberAt(const Bytes& frame, std::size_t offset, std::size_t size = 4)
{
    std::uint32_t number = 0;
    for (std::size_t i = size; i-- > 0;)
        number = number << 8 | (offset + i < frame.size() ? frame[offset + i] : 0u);
    return number;
}

// Zeros, ones or anything: what is left of lengths, counts and codes is then small, huge or neither.
Bytes Garbage(std::size_t size, std::uint32_t seed)
{
    std::minstd_rand dice(seed);
    Bytes bytes(size);
    for (std::uint8_t& byte : bytes)
        byte = seed % 3 == 0 ? 0 : seed % 3 == 1 ? 0xFF : static_cast<std::uint8_t>(dice() >> 8);
    return bytes;
}

// By docs/protocol.md, and from nothing of the library.
Verdict JudgeReply(const Bytes& sent, std::uint32_t sequence, std::uint32_t command)
{
    constexpr std::uint32_t kLastStatus = 12; // behind these none has a code
    constexpr std::uint32_t kLastResult = 148;
    const Bytes frame = simulator::Unstuff(sent);
    if (frame.size() < 4 || frame.size() < std::uint64_t{NumberAt(frame, 5)} + 9)
        return Verdict::Missing;
    if (frame[0] != simulator::kCommandCode || NumberAt(frame, simulator::kReplySequenceOffset) != sequence)
        return Verdict::Foreign;
    if (const std::uint32_t status = NumberAt(frame, kPayload + 6, 2))
        return status > kLastStatus ? Verdict::Foreign : Verdict::Refused;
    const std::uint32_t result = NumberAt(frame, kPayload + 8);
    if (!simulator::FindCommand(command)->hasResult || result == 0)
        return Verdict::Whole;
    return result > kLastResult ? Verdict::Foreign : Verdict::Refused;
}

Verdict JudgeAnswer(const Bytes& sent)
{
    if (sent.empty())
        return Verdict::Missing;
    constexpr std::string_view kError = "ERROR";
    const auto error = std::search(sent.begin(), sent.end(), kError.begin(), kError.end());
    return error == sent.end() ? Verdict::Whole : Verdict::Refused;
}

void SayError(Bytes& answer)
{
    std::string text(answer.begin(), answer.end());
    text.replace(text.rfind("OK"), 2, "ERROR");
    answer.assign(text.begin(), text.end());
}

class Conversation final : public simulator::Conversation
{
public:
    Conversation(simulator::Handset& handset, simulator::PortKind kind, CutLine& line)
        : session_(handset, kind), line_(line)
    {
    }

    std::vector<Step> Receive(std::span<const std::uint8_t> bytes) override
    {
        std::vector<Step> steps = session_.Receive(bytes);
        return steps.empty() ? steps : line_.Answer(std::move(steps));
    }

private:
    simulator::Session session_;
    CutLine& line_;
};

// Tells when something has been sent.
class ToldLine final : public simulator::Line
{
public:
    ToldLine(std::unique_ptr<simulator::Line> line, CutLine& told) : line_(std::move(line)), told_(told) {}

    std::size_t Read(std::span<std::uint8_t> buffer) override { return line_->Read(buffer); }
    bool Write(std::span<const std::uint8_t> bytes) override
    {
        const bool isOpen = line_->Write(bytes);
        told_.OnSent();
        return isOpen;
    }
    bool Pause(std::chrono::milliseconds time) override { return line_->Pause(time); }
    void Interrupt() override { line_->Interrupt(); }

private:
    const std::unique_ptr<simulator::Line> line_;
    CutLine& told_;
};

} // namespace

simulator::LineOpener CutLine::Opener(std::filesystem::path devices, std::string name)
{
    return [this, open = simulator::PtyLines(std::move(devices), std::move(name))] {
        return std::make_unique<ToldLine>(open(), *this);
    };
}

simulator::ConversationMaker CutLine::Maker()
{
    return [this](simulator::Handset& handset, simulator::Line&) {
        return std::make_unique<Conversation>(handset, kind_, *this);
    };
}

void CutLine::Arm(std::optional<Cut> cut)
{
    const std::scoped_lock lock(mutex_);
    armed_ = cut;
    seen_ = 0;
    verdict_.reset();
    isSent_ = false;
}

std::optional<Verdict> CutLine::AwaitVerdict()
{
    std::unique_lock lock(mutex_);
    judged_.wait_for(lock, 10s, [this] { return isSent_; });
    return isSent_ ? verdict_ : std::nullopt;
}

std::vector<std::size_t> CutLine::TakeSizes()
{
    const std::scoped_lock lock(mutex_);
    return std::exchange(sizes_, {});
}

std::vector<Step> CutLine::Answer(std::vector<Step> steps)
{
    const std::scoped_lock lock(mutex_);
    Bytes& reply = steps.front().bytes;
    const bool isCut = armed_ && seen_++ == armed_->exchange;
    if (isCut && armed_->saysError)
        SayError(reply);
    sizes_.push_back(reply.size());
    if (!isCut)
        return steps;
    const Bytes frame = simulator::Unstuff(reply); // repeats sequence identifier and command of the request
    const auto cut = reply.begin() + static_cast<std::ptrdiff_t>(armed_->at);
    Step rest{.delay = kPause, .bytes = Bytes(cut, reply.end())};
    reply.erase(cut, reply.end());
    if (armed_->ending == Ending::Garbage) {
        const Bytes garbage = Garbage(rest.bytes.size(), armed_->seed);
        reply.insert(reply.end(), garbage.begin(), garbage.end());
    }
    verdict_ = kind_ == simulator::PortKind::Modem
                   ? JudgeAnswer(reply)
                   : JudgeReply(reply, NumberAt(frame, simulator::kReplySequenceOffset), NumberAt(frame, kPayload));
    isSent_ = reply.empty();
    judged_.notify_all();
    if (reply.empty())
        steps.clear();
    if (armed_->ending == Ending::TheRestLater)
        steps.push_back(std::move(rest));
    if (armed_->ending == Ending::HangUp)
        steps.push_back({.kind = Step::Kind::HangUp});
    return steps;
}

void CutLine::OnSent()
{
    const std::scoped_lock lock(mutex_);
    isSent_ = verdict_.has_value();
    judged_.notify_all();
}
