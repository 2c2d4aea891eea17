// The two threads that watch for a handset on a plain serial port, and the named objects that tie them to unload. Both
// are started once, from the start timer's handler, which waits until they run: a thread created while the library is
// being unloaded could not begin before it is gone. Between scans the worker is parked on an event.
#pragma once

#include <atomic>
#include <string>
#include <vector>

#include <windows.h>

#include "link/sync.h"

extern HANDLE g_mtxWatch;     // held by the watch thread for its whole run
extern HANDLE g_evWatchEnded; // set while no watch thread runs
extern HANDLE g_evScanDone;   // reset while the scan worker has a list, or is about to end

// These and g_evStop, made on attach and destroyed on detach.
bool CreateWatchObjects();
void DestroyWatchObjects();

// What the threads run: the device object.
class CWatchWork
{
public:
    virtual void RunWatchCycle() = 0;                                     // on the watch thread, every 15 seconds
    virtual bool ScanPortList(const std::vector<std::string>& Ports) = 0; // on the worker, its half of a scan

protected:
    ~CWatchWork() = default;
};

class CPortWatch
{
public:
    explicit CPortWatch(CWatchWork& Work) : m_Work(Work) {}
    ~CPortWatch();
    CPortWatch(const CPortWatch&) = delete;
    CPortWatch& operator=(const CPortWatch&) = delete;

    // Starts both threads and waits until they run. False, with the system's error code, when that cannot be; the next
    // call starts what is missing.
    bool Start();

    // Asks both threads to end, waits until they have left this object, and gives them one second to be gone.
    void End();

    // Gives the worker its half of a scan, and waits until it is through with it.
    void ScanOnWorker(std::vector<std::string> Ports);
    void AwaitWorker();

private:
    static DWORD WINAPI BT_Thread(LPVOID pWatch);
    static DWORD WINAPI ScanPortsWorker(LPVOID pWatch);
    bool StartThread(LPTHREAD_START_ROUTINE pfnThread, HANDLE* phThread);
    bool AwaitStop(DWORD dwTime);
    void RunCycles();
    void RunWorker();
    void EndWorker();

    CWatchWork& m_Work;
    HANDLE m_hWatch = nullptr;
    HANDLE m_hWorker = nullptr;
    HANDLE m_evRunning = nullptr; // a thread has begun
    HANDLE m_evRequest = nullptr; // the worker has a list, or is to end
    std::vector<std::string> m_WorkerPorts;
    std::atomic<bool> m_bEndWorker = false;
    // What the events say, for a thread whose wait has failed.
    std::atomic<bool> m_bBegun = false;
    std::atomic<bool> m_bEnding = false;
    std::atomic<bool> m_bWatching = false;
    std::atomic<bool> m_bWorkerBusy = false;
};
