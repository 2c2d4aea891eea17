// Windows without a face: classes, hidden windows, per-thread message queues, timers and device notifications. A window
// belongs to the thread that created it, and its procedure runs there only.
#pragma once

#include <minwinbase.h>

DECLARE_HANDLE(HWND);
DECLARE_HANDLE(HMENU);
DECLARE_HANDLE(HICON);
DECLARE_HANDLE(HBRUSH);
typedef HICON HCURSOR;
typedef PVOID HDEVNOTIFY;

typedef LRESULT(CALLBACK* WNDPROC)(HWND hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);
typedef void(CALLBACK* TIMERPROC)(HWND hWnd, UINT uMsg, UINT_PTR idEvent, DWORD dwTime);

typedef struct tagPOINT
{
    LONG x;
    LONG y;
} POINT;

typedef struct tagMSG
{
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
} MSG, *LPMSG;

typedef struct tagWNDCLASSA
{
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra;
    int cbWndExtra;
    HINSTANCE hInstance;
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground;
    LPCSTR lpszMenuName;
    LPCSTR lpszClassName;
} WNDCLASSA, *LPWNDCLASSA;

typedef struct tagCREATESTRUCTA
{
    LPVOID lpCreateParams;
    HINSTANCE hInstance;
    HMENU hMenu;
    HWND hwndParent;
    int cy;
    int cx;
    int y;
    int x;
    LONG style;
    LPCSTR lpszName;
    LPCSTR lpszClass;
    DWORD dwExStyle;
} CREATESTRUCTA, *LPCREATESTRUCTA;

#define GWLP_WNDPROC (-4)
#define GWLP_USERDATA (-21)

#define WM_NULL 0x0000
#define WM_CREATE 0x0001
#define WM_DESTROY 0x0002
#define WM_CLOSE 0x0010
#define WM_QUIT 0x0012
#define WM_NCCREATE 0x0081
#define WM_NCDESTROY 0x0082
#define WM_TIMER 0x0113
#define WM_POWERBROADCAST 0x0218
#define WM_DEVICECHANGE 0x0219
#define WM_USER 0x0400
#define WM_APP 0x8000

#define PBT_APMQUERYSUSPEND 0x0000
#define PBT_APMQUERYSUSPENDFAILED 0x0002
#define PBT_APMSUSPEND 0x0004
#define PBT_APMRESUMECRITICAL 0x0006
#define PBT_APMRESUMESUSPEND 0x0007
#define PBT_APMBATTERYLOW 0x0009
#define PBT_APMPOWERSTATUSCHANGE 0x000A
#define PBT_APMOEMEVENT 0x000B
#define PBT_APMRESUMEAUTOMATIC 0x0012

#define PM_NOREMOVE 0x0000u
#define PM_REMOVE 0x0001u
#define QS_TIMER 0x0010u
#define QS_POSTMESSAGE 0x0008u
#define QS_SENDMESSAGE 0x0040u
#define QS_ALLEVENTS 0x04BFu
#define QS_ALLINPUT 0x04FFu
#define USER_TIMER_MINIMUM 0x0000000A
#define USER_TIMER_MAXIMUM 0x7FFFFFFF

#define DEVICE_NOTIFY_WINDOW_HANDLE 0x0u

PHN_PLATFORM_BEGIN
WINBASEAPI ATOM WINAPI RegisterClassA(const WNDCLASSA* lpWndClass) PHN_WIN32_NAME(RegisterClassA);
WINBASEAPI BOOL WINAPI UnregisterClassA(LPCSTR lpClassName, HINSTANCE hInstance) PHN_WIN32_NAME(UnregisterClassA);
WINBASEAPI HWND WINAPI CreateWindowExA(DWORD dwExStyle, LPCSTR lpClassName, LPCSTR lpWindowName, DWORD dwStyle, int X,
                                       int Y, int nWidth, int nHeight, HWND hWndParent, HMENU hMenu,
                                       HINSTANCE hInstance, LPVOID lpParam) PHN_WIN32_NAME(CreateWindowExA);
WINBASEAPI BOOL WINAPI DestroyWindow(HWND hWnd) PHN_WIN32_NAME(DestroyWindow);
WINBASEAPI LRESULT WINAPI DefWindowProcA(HWND hWnd, UINT Msg, WPARAM wParam, LPARAM lParam)
    PHN_WIN32_NAME(DefWindowProcA);
WINBASEAPI LONG_PTR WINAPI GetWindowLongPtrA(HWND hWnd, int nIndex) PHN_WIN32_NAME(GetWindowLongPtrA);
WINBASEAPI LONG_PTR WINAPI SetWindowLongPtrA(HWND hWnd, int nIndex, LONG_PTR dwNewLong)
    PHN_WIN32_NAME(SetWindowLongPtrA);
WINBASEAPI HWND WINAPI FindWindowExA(HWND hWndParent, HWND hWndChildAfter, LPCSTR lpszClass, LPCSTR lpszWindow)
    PHN_WIN32_NAME(FindWindowExA);

WINBASEAPI BOOL WINAPI PeekMessageA(LPMSG lpMsg, HWND hWnd, UINT wMsgFilterMin, UINT wMsgFilterMax, UINT wRemoveMsg)
    PHN_WIN32_NAME(PeekMessageA);
WINBASEAPI BOOL WINAPI GetMessageA(LPMSG lpMsg, HWND hWnd, UINT wMsgFilterMin, UINT wMsgFilterMax)
    PHN_WIN32_NAME(GetMessageA);
WINBASEAPI BOOL WINAPI TranslateMessage(const MSG* lpMsg) PHN_WIN32_NAME(TranslateMessage);
WINBASEAPI LRESULT WINAPI DispatchMessageA(const MSG* lpMsg) PHN_WIN32_NAME(DispatchMessageA);
WINBASEAPI BOOL WINAPI PostMessageA(HWND hWnd, UINT Msg, WPARAM wParam, LPARAM lParam) PHN_WIN32_NAME(PostMessageA);
WINBASEAPI BOOL WINAPI PostThreadMessageA(DWORD idThread, UINT Msg, WPARAM wParam, LPARAM lParam)
    PHN_WIN32_NAME(PostThreadMessageA);
WINBASEAPI void WINAPI PostQuitMessage(int nExitCode) PHN_WIN32_NAME(PostQuitMessage);
WINBASEAPI LRESULT WINAPI SendMessageA(HWND hWnd, UINT Msg, WPARAM wParam, LPARAM lParam) PHN_WIN32_NAME(SendMessageA);
WINBASEAPI UINT WINAPI RegisterWindowMessageA(LPCSTR lpString) PHN_WIN32_NAME(RegisterWindowMessageA);
WINBASEAPI DWORD WINAPI MsgWaitForMultipleObjects(DWORD nCount, const HANDLE* pHandles, BOOL fWaitAll,
                                                  DWORD dwMilliseconds, DWORD dwWakeMask)
    PHN_WIN32_NAME(MsgWaitForMultipleObjects);

WINBASEAPI UINT_PTR WINAPI SetTimer(HWND hWnd, UINT_PTR nIDEvent, UINT uElapse, TIMERPROC lpTimerFunc)
    PHN_WIN32_NAME(SetTimer);
WINBASEAPI BOOL WINAPI KillTimer(HWND hWnd, UINT_PTR uIDEvent) PHN_WIN32_NAME(KillTimer);

WINBASEAPI HDEVNOTIFY WINAPI RegisterDeviceNotificationA(HANDLE hRecipient, LPVOID NotificationFilter, DWORD Flags)
    PHN_WIN32_NAME(RegisterDeviceNotificationA);
WINBASEAPI BOOL WINAPI UnregisterDeviceNotification(HDEVNOTIFY Handle) PHN_WIN32_NAME(UnregisterDeviceNotification);
PHN_PLATFORM_END
