#include "phnctl/dispatch.h"

#include <algorithm>
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

bool DispatchUntil(HANDLE done, std::optional<std::chrono::milliseconds> limit)
{
    const ULONGLONG start = GetTickCount64();
    for (;;) {
        DWORD left = INFINITE;
        if (limit) {
            const auto passed = std::chrono::milliseconds(GetTickCount64() - start);
            left = static_cast<DWORD>(std::max(*limit - passed, std::chrono::milliseconds(0)).count());
        }
        const DWORD woken = MsgWaitForMultipleObjects(1, &done, FALSE, left, QS_ALLINPUT);
        if (woken == WAIT_OBJECT_0)
            return true;
        if (woken != WAIT_OBJECT_0 + 1)
            return false;
        DispatchPending();
    }
}

} // namespace

bool RunDispatching(std::function<void()> work, std::optional<std::chrono::milliseconds> limit)
{
    const auto task = std::make_shared<Task>(std::move(work));
    std::thread thread([task] { task->Run(); });
    if (!DispatchUntil(task->done, limit)) {
        thread.detach();
        return false;
    }
    thread.join();
    if (task->failure)
        std::rethrow_exception(task->failure);
    return true;
}

} // namespace phnctl
