// Posting, sending, taking and dispatching messages, and waiting for them together with handles.
#include <array>
#include <map>

#include "base/lower_case.h"
#include "base/win32_call.h"
#include "messages/message_queue.h"
#include "threads/waitable.h"

using namespace platform;

namespace {

constexpr UINT kFirstRegistered = 0xC000;
constexpr UINT kLastRegistered = 0xFFFF;

// Checks the window of a filter: none, or one that is there.
MessageFilter FilterOf(const Lock& lock, HWND window, UINT first, UINT last)
{
    if (window)
        WindowOf(lock, window);
    return {window, first, last};
}

// The calling thread's new input, as an object that a wait can be for.
class InputArrival : public Waitable
{
public:
    InputArrival(std::shared_ptr<MessageQueue> queue, DWORD kinds) : queue_(std::move(queue)), kinds_(kinds) {}

    bool IsSignalled(const Lock& lock) const override { return queue_->HasNewInput(lock, kinds_); }
    Source ChangesWith() const override { return queue_.get(); }
    TimePoint IsDueAt(const Lock& lock) const override
    {
        return (kinds_ & QS_TIMER) ? queue_->NextTimer(lock) : kNever;
    }

private:
    const std::shared_ptr<MessageQueue> queue_;
    const DWORD kinds_;
};

// Sends to another thread's window and waits until it was handled; the messages that others send to this thread are
// handled meanwhile.
LRESULT SendAcross(Lock& lock, const std::shared_ptr<SentMessage>& message)
{
    message->window->queue->Send(lock, message);
    const auto own = MessageQueue::Current(lock);
    const std::array<Source, 2> sources{message.get(), own.get()};
    for (;;) {
        own->RunSent(lock);
        if (message->done)
            break;
        WaitForWake(lock, sources, kNever);
    }
    if (!message->reached)
        throw Win32Error{ERROR_INVALID_WINDOW_HANDLE};
    return message->result;
}

} // namespace

BOOL WINAPI PeekMessageA(LPMSG lpMsg, HWND hWnd, UINT wMsgFilterMin, UINT wMsgFilterMax, UINT wRemoveMsg)
{
    return Win32Call(Call::PeekMessageA, FALSE, [&]() -> BOOL {
        Lock lock = TakeBaseLock();
        const auto queue = MessageQueue::Current(lock);
        const auto filter = FilterOf(lock, hWnd, wMsgFilterMin, wMsgFilterMax);
        queue->RunSent(lock);
        return queue->Take(lock, filter, (wRemoveMsg & PM_REMOVE) != 0, *lpMsg);
    });
}

BOOL WINAPI GetMessageA(LPMSG lpMsg, HWND hWnd, UINT wMsgFilterMin, UINT wMsgFilterMax)
{
    return Win32Call(Call::GetMessageA, BOOL{-1}, [&]() -> BOOL {
        Lock lock = TakeBaseLock();
        const auto queue = MessageQueue::Current(lock);
        const auto filter = FilterOf(lock, hWnd, wMsgFilterMin, wMsgFilterMax);
        const std::array<Source, 1> sources{queue.get()};
        for (;;) {
            queue->RunSent(lock);
            if (queue->Take(lock, filter, true, *lpMsg))
                return lpMsg->message != WM_QUIT;
            WaitForWake(lock, sources, queue->NextTimer(lock));
        }
    });
}

BOOL WINAPI TranslateMessage(const MSG*)
{
    return FALSE; // there are no keys
}

LRESULT WINAPI DispatchMessageA(const MSG* lpMsg)
{
    return Win32Call(Call::DispatchMessageA, LRESULT{0}, [&]() -> LRESULT {
        Lock lock = TakeBaseLock();
        if (!lpMsg->hwnd)
            return 0;
        const auto window = OwnWindowOf(lock, lpMsg->hwnd);
        return CallWindow(lock, *window, lpMsg->message, lpMsg->wParam, lpMsg->lParam);
    });
}

BOOL WINAPI PostMessageA(HWND hWnd, UINT Msg, WPARAM wParam, LPARAM lParam)
{
    return Win32Call(Call::PostMessageA, FALSE, [&] {
        const Lock lock = TakeBaseLock();
        const auto queue = hWnd ? WindowOf(lock, hWnd)->queue : MessageQueue::Current(lock);
        queue->Post(lock, hWnd, Msg, wParam, lParam);
        return TRUE;
    });
}

BOOL WINAPI PostThreadMessageA(DWORD idThread, UINT Msg, WPARAM wParam, LPARAM lParam)
{
    return Win32Call(Call::PostThreadMessageA, FALSE, [&] {
        const Lock lock = TakeBaseLock();
        const auto queue = MessageQueue::OfThread(lock, idThread);
        if (!queue)
            throw Win32Error{ERROR_INVALID_THREAD_ID};
        queue->Post(lock, nullptr, Msg, wParam, lParam);
        return TRUE;
    });
}

void WINAPI PostQuitMessage(int nExitCode)
{
    const Lock lock = TakeBaseLock();
    MessageQueue::Current(lock)->PostQuit(lock, nExitCode);
}

LRESULT WINAPI SendMessageA(HWND hWnd, UINT Msg, WPARAM wParam, LPARAM lParam)
{
    return Win32Call(Call::SendMessageA, LRESULT{0}, [&]() -> LRESULT {
        Lock lock = TakeBaseLock();
        const auto window = WindowOf(lock, hWnd);
        if (window->queue == MessageQueue::Current(lock))
            return CallWindow(lock, *window, Msg, wParam, lParam);
        return SendAcross(lock, std::make_shared<SentMessage>(SentMessage{window, Msg, wParam, lParam, {}}));
    });
}

UINT WINAPI RegisterWindowMessageA(LPCSTR lpString)
{
    return Win32Call(Call::RegisterWindowMessageA, UINT{0}, [&] {
        if (!lpString || !*lpString)
            throw Win32Error{ERROR_INVALID_PARAMETER};
        static auto& registered = *new std::map<std::string, UINT>;
        const Lock lock = TakeBaseLock();
        const UINT next = kFirstRegistered + static_cast<UINT>(registered.size());
        const std::string name = LowerCase(lpString);
        if (next > kLastRegistered && !registered.contains(name))
            throw Win32Error{ERROR_NOT_ENOUGH_MEMORY};
        return registered.try_emplace(name, next).first->second;
    });
}

DWORD WINAPI MsgWaitForMultipleObjects(DWORD nCount, const HANDLE* pHandles, BOOL fWaitAll, DWORD dwMilliseconds,
                                       DWORD dwWakeMask)
{
    return Win32Call(Call::MsgWaitForMultipleObjects, WAIT_FAILED, [&]() -> DWORD {
        if (nCount >= MAXIMUM_WAIT_OBJECTS)
            throw Win32Error{ERROR_INVALID_PARAMETER};
        WaitableList objects(pHandles, nCount);
        Lock lock = TakeBaseLock();
        objects.Add(std::make_shared<InputArrival>(MessageQueue::Current(lock), dwWakeMask));
        return WaitFor(lock, objects, fWaitAll != FALSE, dwMilliseconds, After(dwMilliseconds));
    });
}
