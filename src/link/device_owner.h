// What the link needs from above, implemented by the instance: the port that an exchange goes to, and the services'
// side of a handset found or lost. The owner is set when the library is loaded and cleared when it is unloaded.
// The callback locks stand here because the link takes them before its own: a loss is told to the host in the middle of
// the arrival and removal handling, and the host's function may register another callback.
#pragma once

#include <memory>

#include <windows.h>

#include "common/lock.h"
#include "link/open_port.h"

// Order of all locks: g_mtxWatch, g_csCallbackPoll, g_csCallbackRemoved, g_csDevice, g_csCommand. The log's lock, the
// slots and the services' own locks are leaves.
extern CCriticalSection g_csCallbackPoll;    // polled registrations and every call of a polled host function
extern CCriticalSection g_csCallbackRemoved; // the removal function and its call

void CreateCallbackLocks();
void DestroyCallbackLocks();

// Both callback locks, in their order, for whoever may tell a loss or release the callback object.
class PHN_SCOPED_CAPABILITY CCallbackLocks
{
public:
    CCallbackLocks() PHN_ACQUIRE(g_csCallbackPoll, g_csCallbackRemoved)
    {
        g_csCallbackPoll.Lock();
        g_csCallbackRemoved.Lock();
    }
    ~CCallbackLocks() PHN_RELEASE()
    {
        g_csCallbackRemoved.Unlock();
        g_csCallbackPoll.Unlock();
    }
    CCallbackLocks(const CCallbackLocks&) = delete;
    CCallbackLocks& operator=(const CCallbackLocks&) = delete;
};

class CDeviceOwner
{
public:
    // The device object's current port; null when there is none.
    virtual std::shared_ptr<COpenPort> GetCurrentPort() = 0;

    // A port was opened (true; tells nobody today) or the handset was lost (false; inside CCallbackLocks, before
    // DestroyObjects).
    virtual void NotifyDeviceState(bool bConnected) = 0;

    // Releases every service object.
    virtual void DestroyObjects() PHN_REQUIRES(g_csCallbackPoll, g_csCallbackRemoved) = 0;

    // The poll timer fired, on the window's thread.
    virtual void PollCallbacks(HWND hWnd, HANDLE hDevice) = 0;

protected:
    ~CDeviceOwner() = default;
};

// Null before the library is loaded and after it is unloaded.
CDeviceOwner* GetDeviceOwner();
void SetDeviceOwner(CDeviceOwner* pOwner);
