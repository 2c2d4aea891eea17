// A thread's message queue: its windows, the messages posted and sent to them, and their timers. A timer has no message
// of its own: when it is due and nothing else is there, WM_TIMER is made for the one who asks, and the timer starts
// anew. Messages from other threads are sent by laying them into the queue; the owner runs them whenever it looks for
// messages. Everything is under the base lock; new input wakes those who are blocked for the queue, and the end of a
// sent message those who are blocked for the message.
#pragma once

#include <deque>
#include <vector>

#include "base/base_lock.h"
#include "messages/window.h"

namespace platform {

struct SentMessage
{
    std::shared_ptr<Window> window;
    UINT message = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
    std::string data; // what lParam points to, where the sender does not wait
    LRESULT result = 0;
    bool done = false;
    bool reached = false; // the window's procedure ran

    void SetDone(const Lock& lock)
    {
        done = true;
        WakeWaiters(lock, this);
    }
};

struct MessageFilter
{
    HWND window; // null for every message of the thread
    UINT first;
    UINT last; // with first 0: every message

    bool Accepts(HWND messageWindow, UINT message) const
    {
        return (!window || window == messageWindow) &&
               ((first == 0 && last == 0) || (message >= first && message <= last));
    }
};

struct WindowTimer
{
    HWND window;
    UINT_PTR id;
    Duration period;
    TimePoint due;
    bool seen = false; // its being due no longer ends a wait for input
};

class MessageQueue
{
public:
    // The calling thread's queue, made at first need and closed when the thread ends.
    static const std::shared_ptr<MessageQueue>& Current(const Lock& lock);

    // Null for a thread that has no queue.
    static std::shared_ptr<MessageQueue> OfThread(const Lock& lock, DWORD threadId);

    // Every window that there is, thread by thread in the order of their making.
    static std::vector<std::shared_ptr<Window>> AllWindows(const Lock& lock);

    void Adopt(const Lock&, std::shared_ptr<Window> window) { windows_.push_back(std::move(window)); }

    // Drops the window with its messages and timers.
    void Forget(const Lock& lock, const Window& window);

    // Throws ERROR_NOT_ENOUGH_QUOTA when the queue is full.
    void Post(const Lock& lock, HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void PostQuit(const Lock& lock, int exitCode);
    void Send(const Lock& lock, std::shared_ptr<SentMessage> message);

    // Runs what was sent. Only on the queue's own thread, and the lock is released while a procedure runs.
    void RunSent(Lock& lock);

    // The next message that the filter accepts: posted ones, then the end of the thread, then timers.
    bool Take(const Lock& lock, const MessageFilter& filter, bool remove, MSG& message);

    // Whether there is input of these QS_ kinds that nobody has looked at.
    bool HasNewInput(const Lock& lock, DWORD kinds) const;

    // When the next timer is due that was not seen; kNever without one.
    TimePoint NextTimer(const Lock& lock) const;

    // A timer of the same window and id is replaced.
    void StartTimer(const Lock& lock, HWND window, UINT_PTR id, DWORD milliseconds);
    bool StopTimer(const Lock& lock, HWND window, UINT_PTR id);

private:
    static void Close(DWORD threadId);

    bool TakePosted(const MessageFilter& filter, bool remove, MSG& message);
    bool TakeQuit(bool remove, MSG& message);
    bool TakeTimer(const MessageFilter& filter, bool remove, MSG& message);
    void MarkSeen();

    std::vector<std::shared_ptr<Window>> windows_;
    std::deque<MSG> posted_;
    std::deque<std::shared_ptr<SentMessage>> sent_;
    std::vector<WindowTimer> timers_;
    bool newPosted_ = false;
    bool quitting_ = false;
    int exitCode_ = 0;
};

} // namespace platform
