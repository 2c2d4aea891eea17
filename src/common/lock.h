// Critical sections with clang's thread-safety annotations. CCriticalSection is a plain record, so that the named
// process-wide locks can stand at namespace scope without a constructor: they are created on attach and destroyed on
// detach. CLock holds one for a scope.
#pragma once

#include <windows.h>

#if defined(__clang__)
#define PHN_THREAD_ANNOTATION(x) __attribute__((x))
#else
#define PHN_THREAD_ANNOTATION(x)
#endif
#define PHN_CAPABILITY(name) PHN_THREAD_ANNOTATION(capability(name))
#define PHN_SCOPED_CAPABILITY PHN_THREAD_ANNOTATION(scoped_lockable)
#define PHN_GUARDED_BY(lock) PHN_THREAD_ANNOTATION(guarded_by(lock))
#define PHN_REQUIRES(...) PHN_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
#define PHN_ACQUIRE(...) PHN_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define PHN_RELEASE(...) PHN_THREAD_ANNOTATION(release_capability(__VA_ARGS__))
#define PHN_EXCLUDES(...) PHN_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))
#define PHN_NO_THREAD_SAFETY_ANALYSIS PHN_THREAD_ANNOTATION(no_thread_safety_analysis)

struct PHN_CAPABILITY("mutex") CCriticalSection
{
    CRITICAL_SECTION m_cs;

    void Create() noexcept { InitializeCriticalSection(&m_cs); }
    void Destroy() noexcept { DeleteCriticalSection(&m_cs); }
    void Lock() noexcept PHN_ACQUIRE() { EnterCriticalSection(&m_cs); }
    void Unlock() noexcept PHN_RELEASE() { LeaveCriticalSection(&m_cs); }
};

// A critical section that lives and dies with the object that holds it.
struct PHN_CAPABILITY("mutex") COwnedCriticalSection : CCriticalSection
{
    COwnedCriticalSection() noexcept { Create(); }
    ~COwnedCriticalSection() { Destroy(); }
    COwnedCriticalSection(const COwnedCriticalSection&) = delete;
    COwnedCriticalSection& operator=(const COwnedCriticalSection&) = delete;
};

class PHN_SCOPED_CAPABILITY CLock
{
public:
    explicit CLock(CCriticalSection& Section) noexcept PHN_ACQUIRE(Section) : m_Section(Section) { m_Section.Lock(); }
    ~CLock() PHN_RELEASE() { m_Section.Unlock(); }
    CLock(const CLock&) = delete;
    CLock& operator=(const CLock&) = delete;

private:
    CCriticalSection& m_Section;
};
