#include "simulator/script/loop.h"

#include <algorithm>
#include <utility>

namespace simulator {

using Clock = std::chrono::steady_clock;

void Loop::Run()
{
    while (!control_.isOver) {
        script_.Advance();
        TakeInput();
        TakePosted();
        RunTimers();
        EndOnceHostIsGone();
        EndWhenStopped();
        if (!control_.isOver)
            control_.wakeup.Wait(Due());
    }
}

void Loop::Refuse(const std::string& why)
{
    while (!IsStopped()) {
        while (const auto next = Next())
            if (next->turn)
                next->turn();
            else
                control_.print("error: " + why);
        control_.wakeup.Wait({});
    }
}

void Loop::Take(std::string line)
{
    constexpr std::size_t kRoom = std::size_t{16} * 1024 * 1024;
    std::unique_lock lock(mutex_);
    ++place_.line;
    if (isFull_)
        return;
    takenBytes_ += line.size() + 1;
    if (takenBytes_ <= kRoom) {
        taken_.push_back({.place = place_, .text = std::move(line)});
        control_.wakeup.Raise();
        return;
    }
    isFull_ = true;
    const Place place = place_;
    lock.unlock();
    control_.Report(place, "too many lines wait; from this one on they are dropped");
}

void Loop::Take(std::function<void()> turn)
{
    const std::scoped_lock lock(mutex_);
    taken_.push_back({.turn = std::move(turn)});
    control_.wakeup.Raise();
}

std::optional<Loop::Taken> Loop::Next()
{
    const std::scoped_lock lock(mutex_);
    if (taken_.empty())
        return std::nullopt;
    Taken next = std::move(taken_.front());
    taken_.pop_front();
    takenBytes_ -= next.turn ? 0 : next.text.size() + 1;
    if (taken_.empty()) {
        takenBytes_ = 0;
        isFull_ = false;
    }
    return next;
}

void Loop::Stop(std::string why)
{
    const std::scoped_lock lock(mutex_);
    stopped_ = std::move(why);
    control_.wakeup.Raise();
}

bool Loop::IsStopped()
{
    const std::scoped_lock lock(mutex_);
    return stopped_.has_value();
}

// Lines that wait are not overtaken by more of them.
void Loop::TakeInput()
{
    input_.Advance();
    while (!control_.isOver && input_.IsDone()) {
        const auto next = Next();
        if (!next)
            return;
        if (next->turn) {
            next->turn();
        } else {
            input_.Add(next->place, next->text);
            input_.Advance();
        }
    }
}

void Loop::TakePosted()
{
    if (posted_.IsDone())
        for (const std::string& line : control_.TakePosted())
            posted_.Add({.file = "the panel"}, line);
    posted_.Advance();
}

void Loop::RunTimers()
{
    for (Timer& timer : control_.timers) {
        if (control_.isOver || Clock::now() < timer.due)
            continue;
        RunControlLine(control_, timer.line, timer.place);
        timer.due = std::max(timer.due + timer.period, Clock::now());
    }
}

void Loop::EndOnceHostIsGone()
{
    if (closings_ == 0 || control_.isOver || control_.history.Count(kPortClosed) < closings_)
        return;
    for (LineQueue* queue : {&script_, &input_})
        if (queue->WaitsForHost())
            queue->GiveUp("the host has closed the port");
    if ((script_.IsDone() || script_.WaitsForHost()) && (input_.IsDone() || input_.WaitsForHost()))
        control_.End();
}

void Loop::EndWhenStopped()
{
    const std::scoped_lock lock(mutex_);
    if (!stopped_ || control_.isOver)
        return;
    if (!script_.IsDone())
        script_.GiveUp(*stopped_);
    control_.End();
}

// When the first of what waits for a time is to be done.
std::optional<Wakeup::Time> Loop::Due() const
{
    std::optional<Wakeup::Time> first;
    const auto consider = [&](Wakeup::Time due) { first = std::min(first.value_or(due), due); };
    for (const LineQueue* queue : {&script_, &input_, &posted_})
        if (const auto due = queue->Due(); due && !queue->IsDone())
            consider(*due);
    for (const Timer& timer : control_.timers)
        consider(timer.due);
    return first;
}

} // namespace simulator
