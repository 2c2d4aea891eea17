// Tells a host's developer what the host does against the contract of phnnrv.h: one Error line for each kind of fault,
// whatever the log's masks say, where the registry's "Check Host" was not 0 when the library was loaded. Otherwise each
// place that looks costs the reading of a flag. docs/hosting.md lists the lines.
#pragma once

#include <atomic>
#include <cstdint>

#include <windows.h>

class CHostCheck
{
public:
    // On attach, on the loading thread; at the beginning and at the end of detach. The log's lock is there.
    static void Start() noexcept;
    static void BeginUnload() noexcept;
    static void Stop() noexcept;

    static bool IsOn() noexcept { return s_bOn.load(std::memory_order_relaxed); }

    // Has the loading thread ended, or does it leave its messages alone? A message that is posted to the window tells:
    // it is given 5 s in which that thread is outside of the library. For any thread, now and then.
    static void LookAtLoadingThread() noexcept;

    // The window whose messages must be dispatched because callbacks are registered; null when none is.
    static void SetAwaited(HWND hWnd) noexcept;

    static void OnStartup() noexcept;
    static void OnRegisteredAgain(int32_t eCallbackType, bool bSame) noexcept;
    static void OnRecordSize(const char* pszExport, uint32_t uSize) noexcept;

    // The beginnings and ends of the scopes below.
    static void EnterCall() noexcept;
    static void LeaveCall() noexcept;
    static void EnterDispatch() noexcept;
    static void LeaveDispatch() noexcept;
    static void EnterRemoval() noexcept;
    static void LeaveRemoval() noexcept;

private:
    static std::atomic<bool> s_bOn;
};

template <void (*pfnEnter)() noexcept, void (*pfnLeave)() noexcept>
class CHostScope
{
public:
    CHostScope() noexcept
    {
        if (m_bOn)
            pfnEnter();
    }
    ~CHostScope()
    {
        if (m_bOn)
            pfnLeave();
    }
    CHostScope(const CHostScope&) = delete;
    CHostScope& operator=(const CHostScope&) = delete;

private:
    const bool m_bOn = CHostCheck::IsOn();
};

using CHostCall = CHostScope<CHostCheck::EnterCall, CHostCheck::LeaveCall>;             // an export
using CHostDispatch = CHostScope<CHostCheck::EnterDispatch, CHostCheck::LeaveDispatch>; // a message of the window
using CHostRemoval = CHostScope<CHostCheck::EnterRemoval, CHostCheck::LeaveRemoval>;    // the host's removal function
