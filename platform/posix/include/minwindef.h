// The basic Win32 types, with the sizes they have on Windows: LONG and DWORD are 32 bits wide on every target, and
// WCHAR is a 16-bit unit. Code shared with Windows writes no wide literals, as their type differs there.
#pragma once

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define PHN_PLATFORM_BEGIN extern "C" {
#define PHN_PLATFORM_END }
typedef char16_t WCHAR;
#else
#define PHN_PLATFORM_BEGIN
#define PHN_PLATFORM_END
typedef uint16_t WCHAR;
#endif

#define WINBASEAPI __attribute__((visibility("default")))
// Each call is linked under a name of its own ("phn_ReadFile"): a program that has a function ReadFile keeps it.
#define PHN_WIN32_NAME(name) __asm__("phn_" #name)
#define DECLSPEC_NORETURN __attribute__((noreturn))
#define WINAPI
#define APIENTRY
#define CALLBACK
#define CONST const
#define VOID void

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

typedef char CHAR;
typedef unsigned char BYTE, UCHAR, BOOLEAN;
typedef short SHORT;
typedef unsigned short WORD, USHORT, ATOM;
typedef int BOOL, INT, LONG;
typedef unsigned int DWORD, UINT, ULONG;
typedef long long LONGLONG;
typedef unsigned long long ULONGLONG, DWORD64;
typedef intptr_t INT_PTR, LONG_PTR;
typedef uintptr_t UINT_PTR, ULONG_PTR, DWORD_PTR;
typedef ULONG_PTR SIZE_T;

typedef void *PVOID, *LPVOID, *HANDLE;
typedef const void *PCVOID, *LPCVOID;
typedef char *PSTR, *LPSTR;
typedef const char *PCSTR, *LPCSTR;
typedef WCHAR *PWSTR, *LPWSTR;
typedef const WCHAR *PCWSTR, *LPCWSTR;
typedef BYTE *PBYTE, *LPBYTE;
typedef WORD *PWORD, *LPWORD;
typedef DWORD *PDWORD, *LPDWORD;
typedef LONG *PLONG, *LPLONG;
typedef BOOL *PBOOL, *LPBOOL;
typedef HANDLE *PHANDLE, *LPHANDLE;

typedef UINT_PTR WPARAM;
typedef LONG_PTR LPARAM, LRESULT;

#define DECLARE_HANDLE(name)                                                                                           \
    struct name##__;                                                                                                   \
    typedef struct name##__* name

DECLARE_HANDLE(HINSTANCE);
DECLARE_HANDLE(HKEY);
typedef HKEY* PHKEY;
typedef HINSTANCE HMODULE;
typedef INT_PTR(WINAPI* FARPROC)(void);

typedef struct _FILETIME
{
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
} FILETIME, *LPFILETIME;

#define MAX_PATH 260
