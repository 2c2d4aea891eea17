#include "simulator/recording/tap.h"

#include <mutex>
#include <utility>

namespace simulator {
namespace {

class TappedLine : public Line
{
public:
    TappedLine(std::unique_ptr<Line> line, Tap tap) : tap_(std::move(tap)), line_(std::move(line))
    {
        line_->WhenHostCloses([this] {
            Tell(Sender::Host, {});
            hostClosed_();
        });
    }

    ~TappedLine() override { Tell(Sender::Handset, {}); }

    std::size_t Read(std::span<std::uint8_t> buffer) override
    {
        const std::size_t size = line_->Read(buffer);
        if (size > 0)
            Tell(Sender::Host, buffer.first(size));
        return size;
    }

    // Told first: the host's answer must not be seen before what it answers.
    bool Write(std::span<const std::uint8_t> bytes) override
    {
        if (!bytes.empty())
            Tell(Sender::Handset, bytes);
        return line_->Write(bytes);
    }

    bool Pause(std::chrono::milliseconds time) override { return line_->Pause(time); }
    void Interrupt() override { line_->Interrupt(); }

private:
    void Tell(Sender sender, std::span<const std::uint8_t> bytes)
    {
        const std::scoped_lock lock(mutex_);
        tap_({std::chrono::system_clock::now(), sender, Bytes(bytes.begin(), bytes.end())});
    }

    std::mutex mutex_;
    const Tap tap_;
    const std::unique_ptr<Line> line_;
};

} // namespace

LineOpener Tapped(LineOpener opener, Tap tap)
{
    return [opener = std::move(opener), tap = std::move(tap)] { return std::make_unique<TappedLine>(opener(), tap); };
}

} // namespace simulator
