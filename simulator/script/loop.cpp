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

void Loop::Take(std::string line)
{
    const std::scoped_lock lock(mutex_);
    taken_.push_back(std::move(line));
    control_.wakeup.Raise();
}

void Loop::Stop(std::string why)
{
    const std::scoped_lock lock(mutex_);
    stopped_ = std::move(why);
    control_.wakeup.Raise();
}

// Lines that wait are not overtaken by more of them.
void Loop::TakeInput()
{
    input_.Advance();
    while (!control_.isOver && input_.IsDone()) {
        std::string line;
        {
            const std::scoped_lock lock(mutex_);
            if (taken_.empty())
                return;
            line = std::move(taken_.front());
            taken_.pop_front();
        }
        ++place_.line;
        input_.Add(place_, line);
        input_.Advance();
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
