#include "simulator/lines/bridge.h"

#include "simulator/lines/worker.h"

#include <array>
#include <atomic>
#include <utility>

namespace simulator {
namespace {

class Bridge : public Conversation
{
public:
    Bridge(std::unique_ptr<Line> handset, Line& host, std::function<void()> gone)
        : handset_(std::move(handset)), host_(host), gone_(std::move(gone)), answers_([this] { PassAnswers(); })
    {
    }

    ~Bridge() override
    {
        isEnding_ = true;
        handset_->Interrupt();
    }

    std::vector<Step> Receive(std::span<const std::uint8_t> bytes) override
    {
        handset_->Write(bytes);
        return {};
    }

private:
    void PassAnswers()
    {
        std::array<std::uint8_t, 16384> buffer;
        while (const std::size_t size = handset_->Read(buffer))
            host_.Write(std::span(buffer).first(size));
        if (isEnding_)
            return;
        gone_();
        host_.Interrupt();
    }

    const std::unique_ptr<Line> handset_;
    Line& host_;
    const std::function<void()> gone_;
    std::atomic<bool> isEnding_ = false;
    Worker answers_; // ends first
};

} // namespace

ConversationMaker BridgeTo(LineOpener handset, std::function<void()> gone)
{
    return [handset = std::move(handset), gone = std::move(gone)](Handset&, Line& host) {
        return std::make_unique<Bridge>(handset(), host, gone);
    };
}

} // namespace simulator
