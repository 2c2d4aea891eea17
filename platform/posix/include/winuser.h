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
WINBASEAPI ATOM WINAPI RegisterClassA(const WNDCLASSA* lpWndClass);
WINBASEAPI BOOL WINAPI UnregisterClassA(LPCSTR lpClassName, HINSTANCE hInstance);
WINBASEAPI HWND WINAPI CreateWindowExA(DWORD dwExStyle, LPCSTR lpClassName, LPCSTR lpWindowName, DWORD dwStyle, int X,
                                       int Y, int nWidth, int nHeight, HWND hWndParent, HMENU hMenu,
                                       HINSTANCE hInstance, LPVOID lpParam);
WINBASEAPI BOOL WINAPI DestroyWindow(HWND hWnd);
WINBASEAPI BOOL WINAPI IsWindow(HWND hWnd);
WINBASEAPI LRESULT WINAPI DefWindowProcA(HWND hWnd, UINT Msg, WPARAM wParam, LPARAM lParam);
WINBASEAPI LONG_PTR WINAPI GetWindowLongPtrA(HWND hWnd, int nIndex);
WINBASEAPI LONG_PTR WINAPI SetWindowLongPtrA(HWND hWnd, int nIndex, LONG_PTR dwNewLong);
WINBASEAPI HWND WINAPI FindWindowExA(HWND hWndParent, HWND hWndChildAfter, LPCSTR lpszClass, LPCSTR lpszWindow);
WINBASEAPI int WINAPI GetClassNameA(HWND hWnd, LPSTR lpClassName, int nMaxCount);

WINBASEAPI BOOL WINAPI PeekMessageA(LPMSG lpMsg, HWND hWnd, UINT wMsgFilterMin, UINT wMsgFilterMax, UINT wRemoveMsg);
WINBASEAPI BOOL WINAPI GetMessageA(LPMSG lpMsg, HWND hWnd, UINT wMsgFilterMin, UINT wMsgFilterMax);
WINBASEAPI BOOL WINAPI TranslateMessage(const MSG* lpMsg);
WINBASEAPI LRESULT WINAPI DispatchMessageA(const MSG* lpMsg);
WINBASEAPI BOOL WINAPI PostMessageA(HWND hWnd, UINT Msg, WPARAM wParam, LPARAM lParam);
WINBASEAPI BOOL WINAPI PostThreadMessageA(DWORD idThread, UINT Msg, WPARAM wParam, LPARAM lParam);
WINBASEAPI void WINAPI PostQuitMessage(int nExitCode);
WINBASEAPI LRESULT WINAPI SendMessageA(HWND hWnd, UINT Msg, WPARAM wParam, LPARAM lParam);
WINBASEAPI UINT WINAPI RegisterWindowMessageA(LPCSTR lpString);
WINBASEAPI DWORD WINAPI MsgWaitForMultipleObjects(DWORD nCount, const HANDLE* pHandles, BOOL fWaitAll,
                                                  DWORD dwMilliseconds, DWORD dwWakeMask);

WINBASEAPI UINT_PTR WINAPI SetTimer(HWND hWnd, UINT_PTR nIDEvent, UINT uElapse, TIMERPROC lpTimerFunc);
WINBASEAPI BOOL WINAPI KillTimer(HWND hWnd, UINT_PTR uIDEvent);

WINBASEAPI HDEVNOTIFY WINAPI RegisterDeviceNotificationA(HANDLE hRecipient, LPVOID NotificationFilter, DWORD Flags);
WINBASEAPI BOOL WINAPI UnregisterDeviceNotification(HDEVNOTIFY Handle);
PHN_PLATFORM_END
