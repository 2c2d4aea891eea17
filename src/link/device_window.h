// The hidden top-level window of the device object: its class, its messages and its two timers. It belongs to the
// thread that creates it, which must dispatch its messages; every handler runs there. A derived class handles the
// messages, and none reaches it before EnableMessages, because the window exists before the derived object does.
#pragma once

#include <windows.h>

class CDeviceWindow
{
public:
    CDeviceWindow();
    virtual ~CDeviceWindow();
    CDeviceWindow(const CDeviceWindow&) = delete;
    CDeviceWindow& operator=(const CDeviceWindow&) = delete;

    // Null when the window could not be made, or is gone.
    HWND GetWindow() const { return m_hWnd; }
    // Do all of its messages reach the object?
    bool IsListening() const { return m_bListening; }

    // The registered message that starts the poll timer (lParam not 0) or stops it. The same number on every call.
    static UINT GetPollMessage();

    // Dispatches at most one pending message of this window, if the calling thread has one. A request to quit, which
    // comes with any window's messages, is put back for the host's own loop.
    void PumpMessage() const;

    // Only on the thread that made it. The window sends nothing to the object from here on.
    void DestroyDeviceWindow();

protected:
    static constexpr UINT kPollTimer = 1;
    static constexpr UINT kStartTimer = 3;

    void EnableMessages();

    virtual BOOL OnDeviceChange(UINT uEvent, const void* pData) = 0;
    virtual void OnTimer(UINT_PTR nTimer) = 0;
    virtual void OnPollMessage(LPARAM lStart) = 0;
    virtual BOOL OnBroadCasting(UINT uEvent) = 0;

private:
    static LRESULT CALLBACK WindowProcedure(HWND hWnd, UINT uMessage, WPARAM wParam, LPARAM lParam);
    LRESULT Dispatch(UINT uMessage, WPARAM wParam, LPARAM lParam);

    const HINSTANCE m_hModule;
    HWND m_hWnd = nullptr;
    UINT m_uPollMessage = 0;
    bool m_bListening = false;
};
