#include "simulator/phnsim/loop.h"

#include <algorithm>
#include <array>
#include <utility>

#include <poll.h>
#include <unistd.h>

namespace simulator {

using Clock = std::chrono::steady_clock;

void Loop::Run()
{
    while (!control_.isOver) {
        control_.changed.Clear();
        control_.history.Added().Clear();
        script_.Advance();
        input_.Advance();
        RunTimers();
        EndOnceHostIsGone();
        if (!control_.isOver)
            Wait();
    }
}

void Loop::Wait()
{
    // Lines that wait are not overtaken by more of them.
    const int input = isInputOpen_ && input_.IsDone() ? STDIN_FILENO : -1;
    std::array<pollfd, 4> waits{pollfd{signals_, POLLIN, 0}, pollfd{control_.changed.Get(), POLLIN, 0},
                                pollfd{control_.history.Added().Get(), POLLIN, 0}, pollfd{input, POLLIN, 0}};
    if (poll(waits.data(), waits.size(), Timeout()) <= 0)
        return;
    if (waits[0].revents != 0) {
        if (!script_.IsDone())
            script_.GiveUp("a signal has ended phnsim");
        control_.End();
    }
    if (waits[3].revents != 0)
        TakeInput();
}

// Milliseconds until something is due; -1: nothing will be.
int Loop::Timeout() const
{
    std::optional<Clock::time_point> first;
    const auto consider = [&](Clock::time_point due) { first = std::min(first.value_or(due), due); };
    for (const LineQueue* queue : {&script_, &input_})
        if (const auto due = queue->Due(); due && !queue->IsDone())
            consider(*due);
    for (const Timer& timer : control_.timers)
        consider(timer.due);
    if (!first)
        return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*first - Clock::now());
    return static_cast<int>(std::max<std::int64_t>(left.count(), 0));
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

void Loop::TakeInput()
{
    std::array<char, 4096> buffer;
    const ssize_t size = read(STDIN_FILENO, buffer.data(), buffer.size());
    isInputOpen_ = size > 0;
    if (!isInputOpen_ && !pending_.empty())
        TakeInputLine(std::exchange(pending_, {}));
    pending_.append(buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    std::size_t end = 0;
    while (!control_.isOver && (end = pending_.find('\n')) != std::string::npos) {
        const std::string line = pending_.substr(0, end);
        pending_.erase(0, end + 1);
        TakeInputLine(line);
    }
}

void Loop::TakeInputLine(const std::string& line)
{
    input_.Add({"standard input", ++inputLines_, isStrict_}, line);
    input_.Advance();
}

void Loop::EndOnceHostIsGone()
{
    if (!isOnce_ || control_.isOver || control_.history.Count(kPortClosed) == 0)
        return;
    for (LineQueue* queue : {&script_, &input_})
        if (queue->WaitsForHost())
            queue->GiveUp("the host has closed the port");
    if ((script_.IsDone() || script_.WaitsForHost()) && (input_.IsDone() || input_.WaitsForHost()))
        control_.End();
}

} // namespace simulator
