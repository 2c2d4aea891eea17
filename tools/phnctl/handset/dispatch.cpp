#include "phnctl/handset/dispatch.h"

#include <exception>
#include <memory>
#include <system_error>
#include <thread>
#include <windows.h>

namespace phnctl {

namespace {

// Shared by both threads, as either may be the last to need it.
struct Task
{
    explicit Task(std::function<void()> what) : work(std::move(what)), done(CreateEventA(nullptr, TRUE, FALSE, nullptr))
    {
        if (!done)
            throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "CreateEvent");
    }
    ~Task() { CloseHandle(done); }
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;

    void Run()
    {
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
        SetEvent(done);
    }

    std::function<void()> work;
    HANDLE done;
    std::exception_ptr failure;
};

void DispatchPending()
{
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

// Until the work is done (true), or the time is over.
class Dispatcher
{
public:
    Dispatcher(std::optional<std::chrono::milliseconds> limit, HANDLE stop) : m_stop(stop)
    {
        if (limit)
            EndIn(*limit);
    }

    bool DispatchUntil(HANDLE done)
    {
        for (;;) {
            const HANDLE events[]{done, m_stop};
            const DWORD count = m_stop ? 2 : 1;
            const DWORD woken = MsgWaitForMultipleObjects(count, events, FALSE, Left(), QS_ALLINPUT);
            if (woken == WAIT_OBJECT_0)
                return true;
            if (woken == WAIT_OBJECT_0 + count) {
                DispatchPending();
            } else if (woken == WAIT_OBJECT_0 + 1) {
                m_stop = nullptr;
                EndIn(kGrace);
            } else {
                return false;
            }
        }
    }

private:
    static constexpr std::chrono::milliseconds kGrace{1000};

    void EndIn(std::chrono::milliseconds time) { m_end = GetTickCount64() + static_cast<ULONGLONG>(time.count()); }

    DWORD Left() const
    {
        const ULONGLONG now = GetTickCount64();
        return !m_end ? INFINITE : static_cast<DWORD>(*m_end > now ? *m_end - now : 0);
    }

    HANDLE m_stop;
    std::optional<ULONGLONG> m_end;
};

} // namespace

bool RunDispatching(std::function<void()> work, std::optional<std::chrono::milliseconds> limit, HANDLE stop)
{
    const auto task = std::make_shared<Task>(std::move(work));
    std::thread thread([task] { task->Run(); });
    if (!Dispatcher(limit, stop).DispatchUntil(task->done)) {
        thread.detach();
        return false;
    }
    thread.join();
    if (task->failure)
        std::rethrow_exception(task->failure);
    return true;
}

} // namespace phnctl
