#include "messages/message_queue.h"

#include <algorithm>
#include <map>

#include "threads/thread_record.h"

namespace platform {
namespace {

constexpr size_t kMaxPosted = 10000;

// Under the base lock. Never destroyed: threads may still use their queues while the process ends.
std::map<DWORD, std::shared_ptr<MessageQueue>>& Queues()
{
    static auto& queues = *new std::map<DWORD, std::shared_ptr<MessageQueue>>;
    return queues;
}

MSG MakeMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    return {.hwnd = window,
            .message = message,
            .wParam = wParam,
            .lParam = lParam,
            .time = static_cast<DWORD>(
                std::chrono::duration_cast<std::chrono::milliseconds>(Now().time_since_epoch()).count()),
            .pt = {0, 0}};
}

auto IsTimer(HWND window, UINT_PTR id)
{
    return [=](const WindowTimer& timer) { return timer.window == window && timer.id == id; };
}

} // namespace

const std::shared_ptr<MessageQueue>& MessageQueue::Current(const Lock&)
{
    const DWORD id = CurrentThread()->id;
    const auto found = Queues().find(id);
    if (found != Queues().end())
        return found->second;
    AtThreadEnd([id] { Close(id); });
    return Queues()[id] = std::make_shared<MessageQueue>();
}

std::shared_ptr<MessageQueue> MessageQueue::OfThread(const Lock&, DWORD threadId)
{
    const auto found = Queues().find(threadId);
    return found == Queues().end() ? nullptr : found->second;
}

std::vector<std::shared_ptr<Window>> MessageQueue::AllWindows(const Lock&)
{
    std::vector<std::shared_ptr<Window>> windows;
    for (const auto& [id, queue] : Queues())
        windows.insert(windows.end(), queue->windows_.begin(), queue->windows_.end());
    return windows;
}

void MessageQueue::Close(DWORD threadId)
{
    const Lock lock = TakeBaseLock();
    const auto queue = OfThread(lock, threadId);
    if (!queue)
        return;
    while (!queue->windows_.empty())
        RemoveWindow(lock, std::shared_ptr(queue->windows_.back()));
    for (const auto& message : queue->sent_)
        message->SetDone(lock);
    queue->sent_.clear();
    Queues().erase(threadId);
}

void MessageQueue::Forget(const Lock&, const Window& window)
{
    std::erase_if(windows_, [&](const auto& own) { return own.get() == &window; });
    std::erase_if(posted_, [&](const MSG& message) { return message.hwnd == window.handle; });
    std::erase_if(timers_, [&](const WindowTimer& timer) { return timer.window == window.handle; });
}

void MessageQueue::Post(const Lock& lock, HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (posted_.size() >= kMaxPosted)
        throw Win32Error{ERROR_NOT_ENOUGH_QUOTA};
    posted_.push_back(MakeMessage(window, message, wParam, lParam));
    newPosted_ = true;
    WakeWaiters(lock, this);
}

void MessageQueue::PostQuit(const Lock& lock, int exitCode)
{
    quitting_ = true;
    exitCode_ = exitCode;
    newPosted_ = true;
    WakeWaiters(lock, this);
}

void MessageQueue::Send(const Lock& lock, std::shared_ptr<SentMessage> message)
{
    sent_.push_back(std::move(message));
    WakeWaiters(lock, this);
}

void MessageQueue::RunSent(Lock& lock)
{
    while (!sent_.empty()) {
        const auto message = std::move(sent_.front());
        sent_.pop_front();
        if (!message->window->destroyed) {
            message->reached = true;
            message->result = CallWindow(lock, *message->window, message->message, message->wParam, message->lParam);
        }
        message->SetDone(lock);
    }
}

bool MessageQueue::Take(const Lock&, const MessageFilter& filter, bool remove, MSG& message)
{
    MarkSeen();
    return TakePosted(filter, remove, message) || TakeQuit(remove, message) || TakeTimer(filter, remove, message);
}

bool MessageQueue::TakePosted(const MessageFilter& filter, bool remove, MSG& message)
{
    const auto found =
        std::ranges::find_if(posted_, [&](const MSG& posted) { return filter.Accepts(posted.hwnd, posted.message); });
    if (found == posted_.end())
        return false;
    message = *found;
    if (remove)
        posted_.erase(found);
    return true;
}

// The end of the thread passes every filter, once no posted message is left.
bool MessageQueue::TakeQuit(bool remove, MSG& message)
{
    if (!quitting_ || !posted_.empty())
        return false;
    message = MakeMessage(nullptr, WM_QUIT, static_cast<WPARAM>(exitCode_), 0);
    quitting_ = !remove;
    return true;
}

// The timer that has been due for longest.
bool MessageQueue::TakeTimer(const MessageFilter& filter, bool remove, MSG& message)
{
    const TimePoint now = Now();
    WindowTimer* taken = nullptr;
    for (WindowTimer& timer : timers_) {
        if (timer.due <= now && filter.Accepts(timer.window, WM_TIMER) && (!taken || timer.due < taken->due))
            taken = &timer;
    }
    if (!taken)
        return false;
    message = MakeMessage(taken->window, WM_TIMER, taken->id, 0);
    if (remove) {
        // On the timer's own beat; beats that nobody asked for are lost.
        taken->due += (1 + (now - taken->due) / taken->period) * taken->period;
        taken->seen = false;
    }
    return true;
}

void MessageQueue::MarkSeen()
{
    newPosted_ = false;
    for (const TimePoint now = Now(); WindowTimer & timer : timers_)
        timer.seen = timer.seen || timer.due <= now;
}

bool MessageQueue::HasNewInput(const Lock&, DWORD kinds) const
{
    const auto due = [now = Now()](const WindowTimer& timer) { return !timer.seen && timer.due <= now; };
    return ((kinds & QS_POSTMESSAGE) && newPosted_) || ((kinds & QS_SENDMESSAGE) && !sent_.empty()) ||
           ((kinds & QS_TIMER) && std::ranges::any_of(timers_, due));
}

TimePoint MessageQueue::NextTimer(const Lock&) const
{
    TimePoint next = kNever;
    for (const WindowTimer& timer : timers_) {
        if (!timer.seen)
            next = std::min(next, timer.due);
    }
    return next;
}

void MessageQueue::StartTimer(const Lock&, HWND window, UINT_PTR id, DWORD milliseconds)
{
    std::erase_if(timers_, IsTimer(window, id));
    const Duration period = Scaled(std::chrono::milliseconds(milliseconds));
    timers_.push_back({window, id, std::max(period, Duration(1)), Now() + period});
}

bool MessageQueue::StopTimer(const Lock&, HWND window, UINT_PTR id)
{
    return std::erase_if(timers_, IsTimer(window, id)) > 0;
}

} // namespace platform
