#include "simulator/lines/simulator.h"

#include <array>
#include <memory>

namespace simulator {

std::string UsbInterfaceName(const std::string& instance)
{
    return "usb#vid_fffe&pid_0001#" + instance + "#{6b1d2e40-5c77-4a1e-9d3a-2f80c4e1b7a5}";
}

std::string ModemInterfaceName(const std::string& instance)
{
    return "usb#vid_fffe&pid_0001#" + instance + "#{2c7089aa-2e0e-11d1-b114-00c04fc2aae4}";
}

ConversationMaker SessionsOf(PortKind kind)
{
    return [kind](Handset& handset, Line&) { return std::make_unique<Session>(handset, kind); };
}

Simulator::Simulator(LineOpener opener, ConversationMaker maker, Phone phone)
    : opener_(std::move(opener)), maker_(std::move(maker)), handset_(std::move(phone)), worker_([this] { Serve(); })
{
}

Simulator::~Simulator()
{
    Stop();
}

void Simulator::Want(Wanted wanted)
{
    std::unique_lock lock(mutex_);
    if (wanted_ == Wanted::Stopped)
        return;
    failure_ = nullptr;
    wanted_ = wanted;
    if (wanted != Wanted::Plugged && line_)
        line_->Interrupt();
    changed_.notify_all();
    if (worker_.IsCurrent())
        return;
    const Presence presence = wanted == Wanted::Plugged ? Presence::There : Presence::Gone;
    Await(lock, [&] { return wanted_ != wanted || presence_ == presence; });
}

void Simulator::Await(std::unique_lock<std::mutex>& lock, const std::function<bool()>& isDone)
{
    ++waiting_;
    changed_.wait(lock, [&] { return failure_ || isDone(); });
    --waiting_;
    if (failure_)
        std::rethrow_exception(std::exchange(failure_, nullptr));
}

void Simulator::Stop()
{
    {
        const std::scoped_lock lock(mutex_);
        wanted_ = Wanted::Stopped;
        if (line_)
            line_->Interrupt();
        changed_.notify_all();
    }
    worker_.Join();
}

void Simulator::HangUp()
{
    std::unique_lock lock(mutex_);
    if (!line_)
        return;
    const std::uint64_t before = opened_;
    line_->Interrupt();
    if (worker_.IsCurrent())
        return;
    Await(lock, [&] { return opened_ != before || wanted_ != Wanted::Plugged; });
}

bool Simulator::IsPlugged() const
{
    const std::scoped_lock lock(mutex_);
    return presence_ == Presence::There;
}

void Simulator::Serve()
{
    std::unique_lock lock(mutex_);
    while (wanted_ != Wanted::Stopped) {
        if (wanted_ == Wanted::Unplugged) {
            presence_ = Presence::Gone;
            changed_.notify_all();
            lock.unlock();
            handset_.TellChange();
            lock.lock();
            changed_.wait(lock, [&] { return wanted_ != Wanted::Unplugged; });
            continue;
        }
        lock.unlock();
        if (const Offer offer = Open(); offer.line)
            ServeLine(offer);
        lock.lock();
    }
    presence_ = Presence::Gone;
    changed_.notify_all();
}

// The next line; none, and unplugged, when it cannot be offered.
Simulator::Offer Simulator::Open()
{
    Offer offer;
    std::exception_ptr failure;
    std::string why;
    try {
        offer.line = opener_();
        offer.conversation = maker_(handset_, *offer.line);
        offer.line->WhenHostCloses([this] { handset_.Tell({.command = kPortClosed, .name = "close"}); });
    } catch (const std::exception& error) {
        failure = std::current_exception();
        why = error.what();
        offer.line.reset();
    }
    std::unique_lock lock(mutex_);
    const bool isLost = failure && waiting_ == 0 && wanted_ == Wanted::Plugged;
    if (failure) {
        if (waiting_ != 0)
            failure_ = failure;
        if (wanted_ == Wanted::Plugged)
            wanted_ = Wanted::Unplugged;
    } else {
        line_ = offer.line.get();
        presence_ = Presence::There;
        ++opened_;
        if (wanted_ != Wanted::Plugged)
            line_->Interrupt();
    }
    changed_.notify_all();
    lock.unlock();
    if (isLost)
        lost_(why);
    handset_.TellChange();
    return offer;
}

void Simulator::ServeLine(const Offer& offer)
{
    std::array<std::uint8_t, 16384> buffer;
    bool isOpen = true;
    while (isOpen) {
        const std::size_t size = offer.line->Read(buffer);
        isOpen = size != 0;
        for (const Step& step : offer.conversation->Receive(std::span(buffer).first(size)))
            isOpen = isOpen && Perform(step, *offer.line);
    }
    const std::scoped_lock lock(mutex_);
    line_ = nullptr;
    presence_ = Presence::Changing;
}

bool Simulator::Perform(const Step& step, Line& line)
{
    if (step.delay.count() > 0 && !line.Pause(step.delay))
        return false;
    if (step.kind == Step::Kind::Send)
        return line.Write(step.bytes);
    const std::scoped_lock lock(mutex_);
    if (step.kind == Step::Kind::Unplug && wanted_ == Wanted::Plugged)
        wanted_ = Wanted::Unplugged;
    return false;
}

} // namespace simulator
