// What the link needs from above, implemented by the instance: the port that an exchange goes to, and the services'
// side of a handset found or lost. The owner is set when the library is loaded and cleared when it is unloaded.
#pragma once

#include <memory>

#include <windows.h>

#include "link/open_port.h"

class CDeviceOwner
{
public:
    // The device object's current port; null when there is none.
    virtual std::shared_ptr<COpenPort> GetCurrentPort() = 0;

    // A port was opened (true) or the handset was lost (false). Call it with false before DestroyObjects, and inside
    // CCallbackLocks.
    virtual void NotifyDeviceState(bool bConnected) = 0;

    // Releases every service object. Call it inside CCallbackLocks.
    virtual void DestroyObjects() = 0;

    // The poll timer fired, on the window's thread.
    virtual void PollCallbacks(HWND hWnd, HANDLE hDevice) = 0;

    // The two callback locks, in their order. Whoever may tell a loss takes them before the device lock.
    virtual void LockCallbacks() = 0;
    virtual void UnlockCallbacks() = 0;

protected:
    ~CDeviceOwner() = default;
};

CDeviceOwner* GetDeviceOwner();
void SetDeviceOwner(CDeviceOwner* pOwner);
