// Access rights, file and event constants, and the records that several groups of calls share.
#pragma once

#include <guiddef.h>
#include <minwindef.h>

#define MAXDWORD 0xFFFFFFFFu

#define DELETE 0x00010000u
#define READ_CONTROL 0x00020000u
#define GENERIC_READ 0x80000000u
#define GENERIC_WRITE 0x40000000u
#define FILE_READ_DATA 0x0001u
#define FILE_WRITE_DATA 0x0002u
#define FILE_APPEND_DATA 0x0004u
#define THREAD_TERMINATE 0x0001u
#define THREAD_QUERY_INFORMATION 0x0040u
#define THREAD_ALL_ACCESS 0x001FFFFFu
#define KEY_QUERY_VALUE 0x0001u
#define KEY_ENUMERATE_SUB_KEYS 0x0008u
#define KEY_NOTIFY 0x0010u
#define KEY_READ 0x00020019u

#define FILE_SHARE_READ 0x1u
#define FILE_SHARE_WRITE 0x2u
#define FILE_SHARE_DELETE 0x4u
#define FILE_ATTRIBUTE_NORMAL 0x80u
#define DUPLICATE_SAME_ACCESS 0x2u

#define REG_NONE 0u
#define REG_SZ 1u
#define REG_EXPAND_SZ 2u
#define REG_BINARY 3u
#define REG_DWORD 4u
#define REG_MULTI_SZ 7u

#define DLL_PROCESS_DETACH 0
#define DLL_PROCESS_ATTACH 1
#define DLL_THREAD_ATTACH 2
#define DLL_THREAD_DETACH 3

#define WAIT_OBJECT_0 0u
#define WAIT_ABANDONED 0x80u
#define WAIT_ABANDONED_0 0x80u
#define WAIT_TIMEOUT 258u
#define WAIT_FAILED 0xFFFFFFFFu
#define MAXIMUM_WAIT_OBJECTS 64
#define INFINITE 0xFFFFFFFFu
#define STATUS_PENDING 0x103u

#define VER_PLATFORM_WIN32_NT 2

typedef struct _OSVERSIONINFOA
{
    DWORD dwOSVersionInfoSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    CHAR szCSDVersion[128];
} OSVERSIONINFOA, *LPOSVERSIONINFOA;

// The storage of a critical section; what it holds is the stand-in's own.
typedef struct _RTL_CRITICAL_SECTION
{
    ULONGLONG storage[6];
} CRITICAL_SECTION, *LPCRITICAL_SECTION;
