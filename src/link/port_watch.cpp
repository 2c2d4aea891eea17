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

void CloseAndClear(HANDLE* phObject)
{
    if (*phObject)
        CloseHandle(*phObject);
    *phObject = nullptr;
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
    m_evRunning = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    m_evRequest = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    if (!m_evRunning || !m_evRequest || !StartThread(ScanPortsWorker, &m_hWorker))
        return false;
    if (StartThread(BT_Thread, &m_hWatch))
        return true;
    const DWORD dwError = GetLastError();
    EndWorker();
    SetLastError(dwError);
    return false;
}

bool CPortWatch::StartThread(LPTHREAD_START_ROUTINE pfnThread, HANDLE* phThread)
{
    *phThread = CreateThread(nullptr, 0, pfnThread, this, 0, nullptr);
    return *phThread && WaitForSingleObject(m_evRunning, INFINITE) == WAIT_OBJECT_0;
}

void CPortWatch::End()
{
    SetEvent(g_evStop);
    WaitForSingleObject(g_evWatchEnded, INFINITE);
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
    SetEvent(m_evRequest);
}

void CPortWatch::AwaitWorker()
{
    WaitForSingleObject(g_evScanDone, INFINITE);
}

void CPortWatch::EndWorker()
{
    m_bEndWorker = true;
    ScanOnWorker({});
    AwaitWorker();
}

void CPortWatch::RunWorker()
{
    SetEvent(m_evRunning);
    while (WaitForSingleObject(m_evRequest, INFINITE) == WAIT_OBJECT_0 && !m_bEndWorker) {
        RunGuarded([this] { m_Work.ScanPortList(m_WorkerPorts); });
        SetEvent(g_evScanDone);
    }
}

void CPortWatch::RunCycles()
{
    WaitForSingleObject(g_mtxWatch, INFINITE);
    ResetEvent(g_evWatchEnded);
    SetEvent(m_evRunning);
    while (WaitForSingleObject(g_evStop, 1) == WAIT_TIMEOUT) {
        RunGuarded([this] { m_Work.RunWatchCycle(); });
        if (WaitForSingleObject(g_evStop, kCycle) != WAIT_TIMEOUT)
            break;
    }
    EndWorker();
    Log.Comment("BT_Thread - Ending thread\n");
    ReleaseMutex(g_mtxWatch);
}

// Both return right after their last event, because their code may be gone a second later: they keep nothing that has a
// destructor, and the system ends them as ExitThread does.
DWORD WINAPI CPortWatch::ScanPortsWorker(LPVOID pWatch)
{
    static_cast<CPortWatch*>(pWatch)->RunWorker();
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
