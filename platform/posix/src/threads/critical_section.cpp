// Critical sections are recursive mutexes of the system. They have nothing to do with the base lock and cannot fail.
#include <pthread.h>

#include <windows.h>

#include "threads/section_order.h"

namespace {

static_assert(sizeof(pthread_mutex_t) <= sizeof(CRITICAL_SECTION) &&
              alignof(pthread_mutex_t) <= alignof(CRITICAL_SECTION));

pthread_mutex_t* MutexOf(LPCRITICAL_SECTION section)
{
    return reinterpret_cast<pthread_mutex_t*>(section->storage);
}

} // namespace

void WINAPI InitializeCriticalSection(LPCRITICAL_SECTION lpCriticalSection)
{
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(MutexOf(lpCriticalSection), &attributes);
    pthread_mutexattr_destroy(&attributes);
}

void WINAPI EnterCriticalSection(LPCRITICAL_SECTION lpCriticalSection)
{
    pthread_mutex_lock(MutexOf(lpCriticalSection));
    platform::NoteTaken(lpCriticalSection);
}

void WINAPI LeaveCriticalSection(LPCRITICAL_SECTION lpCriticalSection)
{
    platform::NoteLeft(lpCriticalSection);
    pthread_mutex_unlock(MutexOf(lpCriticalSection));
}

void WINAPI DeleteCriticalSection(LPCRITICAL_SECTION lpCriticalSection)
{
    pthread_mutex_destroy(MutexOf(lpCriticalSection));
}
