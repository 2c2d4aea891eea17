#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include "base/win32_call.h"
#include "threads/thread_start.h"

namespace platform {
namespace {

// All signals that come from outside; those of the thread's own faults stay.
sigset_t SignalsFromOutside()
{
    sigset_t signals;
    sigfillset(&signals);
    for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP, SIGSYS, SIGPROF})
        sigdelset(&signals, fault);
    return signals;
}

struct ThreadStart
{
    std::shared_ptr<ThreadRecord> record;
    LPTHREAD_START_ROUTINE routine;
    LPVOID parameter;
};

extern "C" void* RunThread(void* argument)
{
    ThreadStart start = [argument] {
        const std::unique_ptr<ThreadStart> passed(static_cast<ThreadStart*>(argument));
        return std::move(*passed);
    }();
    const bool isAttached = ErrorOf([&] { AttachThread(start.record); }) == ERROR_SUCCESS;
    {
        const Lock lock = TakeBaseLock();
        isAttached ? start.record->SetStarted(lock) : start.record->SetEnded(lock);
    }
    start.record.reset();
    if (isAttached)
        start.routine(start.parameter);
    return nullptr;
}

} // namespace

void StartDetachedThread(void* (*entry)(void*), void* argument)
{
    const sigset_t blocked = SignalsFromOutside();
    sigset_t before;
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
    pthread_t thread;
    const int error = pthread_create(&thread, nullptr, entry, argument);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (error)
        throw Win32Error{ERROR_NOT_ENOUGH_MEMORY};
    pthread_detach(thread);
}

} // namespace platform

using namespace platform;

HANDLE WINAPI CreateThread(LPSECURITY_ATTRIBUTES, SIZE_T, LPTHREAD_START_ROUTINE lpStartAddress, LPVOID lpParameter,
                           DWORD dwCreationFlags, LPDWORD lpThreadId)
{
    return Win32Call(Call::CreateThread, HANDLE{}, [&] {
        if (!lpStartAddress || dwCreationFlags)
            throw Win32Error{ERROR_INVALID_PARAMETER};
        const auto record = std::make_shared<ThreadRecord>();
        auto start = std::make_unique<ThreadStart>(ThreadStart{record, lpStartAddress, lpParameter});
        const HANDLE handle = NewHandle(record);
        if (const DWORD error = ErrorOf([&] { StartDetachedThread(RunThread, start.get()); })) {
            FreeHandle(handle);
            throw Win32Error{error};
        }
        static_cast<void>(start.release()); // it is the thread's
        Lock lock = TakeBaseLock();
        BlockUntil(lock, record->ChangesWith(), [&] { return record->started || record->ended; });
        if (!record->started) {
            lock.unlock();
            FreeHandle(handle);
            throw Win32Error{ERROR_NOT_ENOUGH_MEMORY};
        }
        if (lpThreadId)
            *lpThreadId = record->id;
        return handle;
    });
}

// Unwinds the thread's stack, so objects on it are destroyed; a catch (...) on the way must pass the unwinding on.
void WINAPI ExitThread(DWORD)
{
    pthread_exit(nullptr);
}

DWORD WINAPI GetCurrentThreadId()
{
    return static_cast<DWORD>(gettid()); // as in the thread's record, which there may be no memory for
}

HANDLE WINAPI GetCurrentThread()
{
    return reinterpret_cast<HANDLE>(std::intptr_t{-2});
}

HANDLE WINAPI GetCurrentProcess()
{
    return reinterpret_cast<HANDLE>(std::intptr_t{-1});
}

DWORD WINAPI GetCurrentProcessId()
{
    return static_cast<DWORD>(getpid());
}
