#include "link/port_watch.h"

#include <utility>

#include "link/watch_guard.h"
#include "log/log.h"

HANDLE g_mtxWatch;
HANDLE g_evWatchEnded;
HANDLE g_evScanDone;

namespace {

constexpr CLogSource Log{LOG_CDEVICE};

constexpr DWORD kCycle = 15000;
constexpr DWORD kGrace = 1000; // for the threads to be gone before their code is
constexpr DWORD kPause = 100;  // behind a wait that failed
// Between looks at whether what is awaited has come about without its event.
constexpr DWORD kLook = 1000;
constexpr DWORD kWorkerLook = 20000;

void CloseAndClear(HANDLE* phObject)
{
    if (*phObject)
        CloseHandle(*phObject);
    *phObject = nullptr;
}

// Waits without limit until the predicate holds, which the event tells, or until the thread has ended that would set
// it, when there is one. The predicate is looked at again and again: an event may be lost, or come late and tell what
// was so before. Of waits that fail one after the other, the first is said.
template <typename TDone>
void AwaitEvent(HANDLE hEvent, HANDLE hThread, TDone IsDone, DWORD dwLook = kLook)
{
    const HANDLE ahObjects[]{hEvent, hThread};
    for (bool bFailed = false; !IsDone();) {
        const DWORD dwResult = WaitForMultipleObjects(hThread ? 2 : 1, ahObjects, FALSE, dwLook);
        if (dwResult == WAIT_OBJECT_0 + 1)
            return;
        if (dwResult == WAIT_OBJECT_0 && !IsDone())
            ResetEvent(hEvent);
        if (dwResult == WAIT_FAILED) {
            if (!bFailed)
                Log.Error("BT_Thread - WaitForMultipleObjects failed with error = 0x%X.", GetLastError());
            Sleep(kPause);
        }
        bFailed = dwResult == WAIT_FAILED;
    }
}

} // namespace

bool CreateWatchObjects()
{
    g_mtxWatch = CreateMutexA(nullptr, FALSE, nullptr);
    g_evStop = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    g_evWatchEnded = CreateEventA(nullptr, TRUE, TRUE, nullptr);
    g_evScanDone = CreateEventA(nullptr, TRUE, TRUE, nullptr);
    return g_mtxWatch && g_evStop && g_evWatchEnded && g_evScanDone;
}

void DestroyWatchObjects()
{
    for (HANDLE* phObject : {&g_evScanDone, &g_evWatchEnded, &g_evStop, &g_mtxWatch})
        CloseAndClear(phObject);
}

CPortWatch::~CPortWatch()
{
    for (HANDLE* phObject : {&m_hWatch, &m_hWorker, &m_evRequest, &m_evRunning})
        CloseAndClear(phObject);
}

bool CPortWatch::Start()
{
    for (HANDLE* phEvent : {&m_evRunning, &m_evRequest}) {
        if (!*phEvent)
            *phEvent = CreateEventA(nullptr, FALSE, FALSE, nullptr);
        if (!*phEvent)
            return false;
    }
    return StartThread(ScanPortsWorker, &m_hWorker) && StartThread(BT_Thread, &m_hWatch);
}

bool CPortWatch::StartThread(LPTHREAD_START_ROUTINE pfnThread, HANDLE* phThread)
{
    if (*phThread)
        return true;
    m_bBegun = false;
    *phThread = CreateThread(nullptr, 0, pfnThread, this, 0, nullptr);
    if (!*phThread)
        return false;
    AwaitEvent(m_evRunning, *phThread, [this] { return m_bBegun.load(); });
    return true;
}

void CPortWatch::End()
{
    m_bEnding = true;
    SetEvent(g_evStop);
    AwaitEvent(g_evWatchEnded, m_hWatch, [this] { return !m_bWatching; });
    if (m_hWorker && !m_hWatch)
        EndWorker(); // otherwise the watch has done it
    // A handle is signalled in time where a thread can end while the library is being unloaded.
    const ULONGLONG ullStart = GetTickCount64();
    const HANDLE ahThreads[]{m_hWorker, m_hWatch};
    if (m_hWorker && m_hWatch)
        WaitForMultipleObjects(2, ahThreads, TRUE, kGrace);
    const ULONGLONG ullPassed = GetTickCount64() - ullStart;
    if (ullPassed < kGrace)
        Sleep(kGrace - static_cast<DWORD>(ullPassed));
}

void CPortWatch::ScanOnWorker(std::vector<std::string> Ports)
{
    m_WorkerPorts = std::move(Ports);
    ResetEvent(g_evScanDone);
    m_bWorkerBusy = true;
    SetEvent(m_evRequest);
}

void CPortWatch::AwaitWorker()
{
    AwaitEvent(g_evScanDone, m_hWorker, [this] { return !m_bWorkerBusy; });
}

void CPortWatch::EndWorker()
{
    m_bEndWorker = true;
    ScanOnWorker({});
    AwaitWorker();
}

void CPortWatch::RunWorker()
{
    m_bBegun = true;
    SetEvent(m_evRunning);
    for (;;) {
        AwaitEvent(
            m_evRequest, nullptr, [this] { return m_bWorkerBusy.load(); }, kWorkerLook);
        if (m_bEndWorker)
            break;
        RunGuarded([this] { m_Work.ScanPortList(m_WorkerPorts); });
        m_bWorkerBusy = false;
        SetEvent(g_evScanDone);
    }
}

// True once the watch is to end, false when the time is over.
bool CPortWatch::AwaitStop(DWORD dwTime)
{
    for (bool bFailed = false;; bFailed = true) {
        const DWORD dwResult = WaitForSingleObject(g_evStop, dwTime);
        if (dwResult != WAIT_FAILED)
            return dwResult != WAIT_TIMEOUT || m_bEnding;
        if (!bFailed)
            Log.Error("BT_Thread - WaitForSingleObject failed with error = 0x%X.", GetLastError());
        Sleep(kPause);
        if (m_bEnding)
            return true;
    }
}

void CPortWatch::RunCycles()
{
    if (WaitForSingleObject(g_mtxWatch, INFINITE) == WAIT_FAILED)
        Log.Error("BT_Thread - WaitForSingleObject failed with error = 0x%X.", GetLastError());
    m_bWatching = true;
    ResetEvent(g_evWatchEnded);
    m_bBegun = true;
    SetEvent(m_evRunning);
    while (!AwaitStop(1)) {
        RunGuarded([this] { m_Work.RunWatchCycle(); });
        if (AwaitStop(kCycle))
            break;
    }
    EndWorker();
    Log.Comment("BT_Thread - Ending thread\n");
    ReleaseMutex(g_mtxWatch);
    m_bWatching = false;
}

// Both return right after their last event, because their code may be gone a second later: they keep nothing that has a
// destructor, and the system ends them as ExitThread does.
DWORD WINAPI CPortWatch::ScanPortsWorker(LPVOID pWatch)
{
    auto* const pThis = static_cast<CPortWatch*>(pWatch);
    pThis->RunWorker();
    pThis->m_bWorkerBusy = false;
    SetEvent(g_evScanDone);
    return 0;
}

DWORD WINAPI CPortWatch::BT_Thread(LPVOID pWatch)
{
    if (!pWatch) {
        Log.Comment("BT_Thread - Ending thread as p is NULL\n");
        return 1;
    }
    static_cast<CPortWatch*>(pWatch)->RunCycles();
    SetEvent(g_evWatchEnded);
    return 0;
}
