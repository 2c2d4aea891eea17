#include "threads/mutex.h"

#include <utility>

#include "base/win32_call.h"
#include "threads/section_order.h"

namespace platform {

bool Mutex::Acquire(const Lock&)
{
    if (!owner_) {
        ThreadRecord& thread = *CurrentThread();
        thread.owned.push_back(shared_from_this());
        owner_ = &thread;
    }
    taken_++;
    NoteTaken(this);
    return std::exchange(abandoned_, false);
}

void Mutex::Release(const Lock& lock)
{
    ThreadRecord& thread = *CurrentThread();
    if (owner_ != &thread)
        throw Win32Error{ERROR_NOT_OWNER};
    NoteLeft(this);
    if (--taken_ == 0) {
        owner_ = nullptr;
        std::erase(thread.owned, shared_from_this());
        Wake(lock);
    }
}

void Mutex::Abandon(const Lock& lock)
{
    owner_ = nullptr;
    taken_ = 0;
    abandoned_ = true;
    Wake(lock);
}

} // namespace platform

using namespace platform;

// Names, which would share the object between processes, are not offered.
HANDLE WINAPI CreateMutexA(LPSECURITY_ATTRIBUTES, BOOL bInitialOwner, LPCSTR lpName)
{
    return Win32Call(Call::CreateMutexA, HANDLE{}, [&] {
        if (lpName)
            throw Win32Error{ERROR_NOT_SUPPORTED};
        const auto mutex = std::make_shared<Mutex>();
        if (bInitialOwner)
            mutex->Acquire(TakeBaseLock());
        return NewHandle(mutex);
    });
}

BOOL WINAPI ReleaseMutex(HANDLE hMutex)
{
    return Win32Call(Call::ReleaseMutex, FALSE, [&] {
        const auto mutex = FromHandle<Mutex>(hMutex);
        mutex->Release(TakeBaseLock());
        return TRUE;
    });
}
