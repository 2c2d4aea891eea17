// The service object that calls the host back: it keeps the host's functions, asks the handset on every tick of the
// poll timer what has changed, and tells the loss of the handset. Functions may be registered on any thread; the polled
// ones are called on the thread that loaded the library. A function is called under the lock that its removal takes, so
// that none is called once its removal has returned.
#pragma once

#include <atomic>

#include <windows.h>

#include "link/device_owner.h"
#include "phnnrv.h"

class CCallback
{
public:
    CCallback() = default;
    // Stops the poll timer, unless Retire has done so.
    virtual ~CCallback();
    CCallback(const CCallback&) = delete;
    CCallback& operator=(const CCallback&) = delete;

    // Registers the function (bRemove 0) or removes the registration, for one type or (PHN_CALLBACK_ALL) for every one.
    // The window is the one whose timer polls. False with PHN_ERROR_NOT_SUPPORTED for a type without callback, and with
    // PHN_ERROR_FAILED when the poll cannot be started: then nothing is registered.
    bool SetCallback(HWND hWnd, HANDLE hDevice, int32_t eCallbackType, PHN_CALLBACK_FUNCTION pfnCallback,
                     uint32_t bRemove, PHN_ERROR* pError);

    // Asks the handset what has changed. On false *pwFlags stays as it was.
    bool GetPhoneVariance(HANDLE hDevice, WORD* pwFlags);

    // One tick: asks, and calls the functions of what has changed. Does nothing without a window or a handle.
    void CallbackTimerFunction(HWND hWnd, HANDLE hDevice);

    // Tells the host that the handset was lost. An open port is told to nobody.
    void NotifyDeviceState(bool bConnected);

    // Ends every registration, and the poll timer, for good: whoever still holds the object registers nothing more.
    void Retire() PHN_REQUIRES(g_csCallbackPoll, g_csCallbackRemoved);

private:
    struct SPolledType;
    static const SPolledType kPolledTypes[6];

    bool SetPolled(const SPolledType& Type, PHN_CALLBACK_FUNCTION pfnCallback, uint32_t bRemove);
    bool RegisterPolled(const SPolledType& Type, PHN_CALLBACK_FUNCTION pfnCallback) PHN_REQUIRES(g_csCallbackPoll);
    void RemovePolled(const SPolledType& Type) PHN_REQUIRES(g_csCallbackPoll);
    void SetRemoved(PHN_CALLBACK_FUNCTION pfnCallback, uint32_t bRemove);
    bool PostPollMessage(LPARAM lStart) const;

    PHN_CALLBACK_FUNCTION m_pfnRemoved PHN_GUARDED_BY(g_csCallbackRemoved) = nullptr;
    PHN_CALLBACK_FUNCTION m_pfnGetConnectionInfo PHN_GUARDED_BY(g_csCallbackPoll) = nullptr;
    PHN_CALLBACK_FUNCTION m_pfnGetStateInfo PHN_GUARDED_BY(g_csCallbackPoll) = nullptr;
    PHN_CALLBACK_FUNCTION m_pfnGetNetworkInfo PHN_GUARDED_BY(g_csCallbackPoll) = nullptr;
    PHN_CALLBACK_FUNCTION m_pfnGetBatteryInfo PHN_GUARDED_BY(g_csCallbackPoll) = nullptr;
    PHN_CALLBACK_FUNCTION m_pfnGetMessageCount PHN_GUARDED_BY(g_csCallbackPoll) = nullptr;
    PHN_CALLBACK_FUNCTION m_pfnActivation PHN_GUARDED_BY(g_csCallbackPoll) = nullptr;
    LONG m_nPollUsers PHN_GUARDED_BY(g_csCallbackPoll) = 0;
    std::atomic<DWORD> m_dwFlags{0}; // each flag changes under the lock of its function
    std::atomic<HWND> m_hNotifyWnd{nullptr};
    std::atomic<bool> m_bRetired{false}; // set under both locks
};
