#include "log/host_check.h"

#include <algorithm>

#include "common/handle.h"
#include "log/log.h"
#include "log/setting.h"

constinit std::atomic<bool> CHostCheck::s_bOn{false};

namespace {

constexpr CLogSource Log{LOG_CCALDERAPP};

constexpr ULONGLONG kPatience = 5000;
constexpr uint32_t kLargestRecord = 65536;

enum EHostFault
{
    eNotDispatching,
    eLoadingThreadEnded,
    eStartupInRemoval,
    eCallDuringUnload,
    eSecondFunction,
    eRecordSize,
    eHostFaults
};

constinit std::atomic<bool> s_abTold[eHostFaults];

constinit DWORD s_dwLoadingThread = 0;
constinit HANDLE s_hLoadingThread = nullptr;
constinit std::atomic<bool> s_bUnloading{false};
constinit std::atomic<LONG> s_nCalls{0};  // exports in progress, on any thread
constinit std::atomic<LONG> s_nInside{0}; // calls and messages that the loading thread is in
constinit ULONGLONG s_ullEntered = 0;     // when the outermost of them began; that thread's own
constinit std::atomic<DWORD> s_dwRemovalThread{0};
constinit std::atomic<HWND> s_hAwaited{nullptr};
constinit std::atomic<ULONGLONG> s_ullAsked{0}; // when the message was posted; 0 while none is out

bool IsFirst(EHostFault eFault)
{
    return !s_abTold[eFault].exchange(true);
}

void EnterLibrary()
{
    if (GetCurrentThreadId() == s_dwLoadingThread && s_nInside++ == 0)
        s_ullEntered = GetTickCount64();
}

// What the thread has spent in a call does not count.
void LeaveLibrary()
{
    if (GetCurrentThreadId() != s_dwLoadingThread || --s_nInside > 0)
        return;
    const ULONGLONG ullNow = GetTickCount64();
    if (ULONGLONG ullAsked = s_ullAsked)
        s_ullAsked.compare_exchange_strong(ullAsked, std::min(ullNow, ullAsked + (ullNow - s_ullEntered)));
}

void TellUnload()
{
    if (IsFirst(eCallDuringUnload))
        Log.Always("Check Host - A call was made, or not over, while the library was being unloaded.");
}

} // namespace

void CHostCheck::Start() noexcept
{
    if (ReadSetting("Check Host") == 0)
        return;
    for (std::atomic<bool>& bTold : s_abTold)
        bTold = false;
    s_bUnloading = false;
    s_dwLoadingThread = GetCurrentThreadId();
    s_hLoadingThread = OpenOwnThread().Release();
    s_bOn = true;
}

void CHostCheck::BeginUnload() noexcept
{
    if (!IsOn())
        return;
    s_bUnloading = true;
    if (s_nCalls > 0)
        TellUnload();
}

void CHostCheck::Stop() noexcept
{
    s_bOn = false;
    CHandle(s_hLoadingThread).Reset();
    s_hLoadingThread = nullptr;
}

void CHostCheck::LookAtLoadingThread() noexcept
{
    if (!IsOn() || s_bUnloading)
        return;
    if (WaitForSingleObject(s_hLoadingThread, 0) == WAIT_OBJECT_0) {
        if (IsFirst(eLoadingThreadEnded))
            Log.Always("Check Host - The loading thread ended before the library was unloaded.");
        return;
    }
    const HWND hWnd = s_hAwaited;
    if (!hWnd || s_nInside > 0)
        return;
    ULONGLONG ullAsked = 0;
    if (s_ullAsked.compare_exchange_strong(ullAsked, GetTickCount64()))
        PostMessageA(hWnd, WM_NULL, 0, 0);
    else if (GetTickCount64() > ullAsked + kPatience && IsFirst(eNotDispatching))
        Log.Always("Check Host - The loading thread dispatched no message for 5 s while callbacks were registered.");
}

void CHostCheck::SetAwaited(HWND hWnd) noexcept
{
    if (!IsOn() || s_hAwaited.exchange(hWnd) || !hWnd)
        return;
    s_ullAsked = GetTickCount64();
    PostMessageA(hWnd, WM_NULL, 0, 0);
}

void CHostCheck::OnStartup() noexcept
{
    if (IsOn() && s_dwRemovalThread == GetCurrentThreadId() && IsFirst(eStartupInRemoval))
        Log.Always("Check Host - PHN_Startup was called inside a removal callback.");
}

void CHostCheck::OnRegisteredAgain(int32_t eCallbackType, bool bSame) noexcept
{
    if (IsOn() && !bSame && IsFirst(eSecondFunction))
        Log.Always("Check Host - A second function for callback type %d was not registered: the first one stays.",
                   eCallbackType);
}

void CHostCheck::OnRecordSize(const char* pszExport, uint32_t uSize) noexcept
{
    if (IsOn() && uSize > kLargestRecord && IsFirst(eRecordSize))
        Log.Always("Check Host - %s was given a uSize of 0x%X, which no record has.", pszExport, uSize);
}

void CHostCheck::EnterCall() noexcept
{
    ++s_nCalls;
    if (s_bUnloading)
        TellUnload();
    LookAtLoadingThread();
    EnterLibrary();
}

void CHostCheck::LeaveCall() noexcept
{
    LeaveLibrary();
    --s_nCalls;
}

void CHostCheck::EnterDispatch() noexcept
{
    s_ullAsked = 0;
    EnterLibrary();
}

void CHostCheck::LeaveDispatch() noexcept
{
    LeaveLibrary();
}

void CHostCheck::EnterRemoval() noexcept
{
    s_dwRemovalThread = GetCurrentThreadId();
}

void CHostCheck::LeaveRemoval() noexcept
{
    s_dwRemovalThread = 0;
}
