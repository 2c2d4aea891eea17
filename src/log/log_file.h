// The log file and its filter. One object, designated by a process-wide pointer and made on first need, holds the open
// file. The application object opens the log before anything else exists and closes it after everything else is gone.
#pragma once

#include <atomic>
#include <initializer_list>
#include <string>
#include <string_view>

#include <windows.h>

#include "common/handle.h"
#include "common/lock.h"

// Guards the file, and the registry keys that were deleted while they were open.
extern CCriticalSection g_csLog;

// Made on attach, destroyed on detach.
void CreateLogLock();
void DestroyLogLock();

// Closes the file and the registry key and deletes the process-wide object; a line that is logged later makes a new
// one.
void CloseLog();

class CLogFile
{
public:
    CLogFile() = default;
    CLogFile(const CLogFile&) = delete;
    CLogFile& operator=(const CLogFile&) = delete;

    // Reads the registry; if logging is on, makes the process-wide object and opens its file. False without a registry
    // key or if the file cannot be opened.
    static bool Open();

    // Opens a closed file whatever the registry says.
    static void OpenAnyway();

    // Writes one line to the process-wide object's file if the masks let it pass.
    static void Log(std::string_view strText, DWORD dwCategory, DWORD dwLevel);

    // The filter of Log alone, with its effects: takes over the registry's value, opens a closed file.
    static bool Passes(DWORD dwCategory, DWORD dwLevel);

    // Writes one line that has passed; by way of WriteLine, which puts the time before it.
    static void WriteMessage(std::string_view strText, DWORD dwCategory, DWORD dwLevel);
    static void WriteLine(std::initializer_list<std::string_view> Texts);

    // The process-wide object; null before it is needed, and after CloseLog.
    static CLogFile* GetGlobal();

private:
    static CLogFile* MakeGlobal();
    static bool Open(DWORD dwValue);
    void SetMasks(DWORD dwValue);
    bool OpenFile(const std::string& strName);
    void WriteStamped(std::initializer_list<std::string_view> Texts) PHN_REQUIRES(g_csLog);
    std::string_view FormatTime() PHN_REQUIRES(g_csLog);

    std::atomic<DWORD> m_dwLevelMask{0};
    std::atomic<DWORD> m_dwCategoryMask{0};
    CHandle m_hFile PHN_GUARDED_BY(g_csLog);
    std::atomic<bool> m_bFileOpen{false};
    SYSTEMTIME m_stFormatted PHN_GUARDED_BY(g_csLog) = {};
    char m_szTime[40] PHN_GUARDED_BY(g_csLog) = {};
    std::string m_strLine PHN_GUARDED_BY(g_csLog); // the line being written; kept for its memory
};

// The file's full path for a time of opening: the module's own path, then the local time.
std::string MakeLogFileName(const SYSTEMTIME& stNow);
