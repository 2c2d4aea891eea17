#include "log/log_file.h"

#include <bit>
#include <cstdio>
#include <cstring>

#include "log/log.h"
#include "log/logging_level.h"

CCriticalSection g_csLog;

namespace {

constexpr const char* kModuleName = "PHNNRV.dll";
constexpr DWORD kLevelBits = 0xFF;
constexpr DWORD kCategoryBits = 0xFFF00;

constinit std::atomic<CLogFile*> s_pGlobal{nullptr};
constinit CLoggingLevel s_LoggingLevel;

// By the number of the bit, from the mask's first one on.
constexpr std::string_view kLevelNames[] = {"Debug\t",    "Comment\t",  "Error\t",    "Reserved\t",
                                            "Reserved\t", "Reserved\t", "Reserved\t", "Reserved\t"};
constexpr int kFirstCategoryBit = 8;
constexpr std::string_view kCategoryNames[] = {
    "CCalderApp\t", "phnnrv\t",       "CDevice\t",          "CPort\t",      "readwrite\t",        "CCalendar\t",
    "CCallback\t",  "CCallHistory\t", "connectionstatus\t", "CPhonebook\t", "setupinformation\t", "CSMS\t"};
static_assert(LOG_ERROR == 1 << 2 && LOG_CCALDERAPP == 1 << kFirstCategoryBit && LOG_CSMS == LOG_CCALDERAPP << 11);

template <size_t N>
std::string_view FindName(const std::string_view (&Names)[N], int nFirstBit, DWORD dwValue)
{
    const size_t uIndex = static_cast<size_t>(std::countr_zero(dwValue) - nFirstBit); // wraps for a lower bit
    return std::has_single_bit(dwValue) && uIndex < N ? Names[uIndex] : std::string_view("Unknown\t");
}

} // namespace

void CreateLogLock()
{
    g_csLog.Create();
}

void DestroyLogLock()
{
    g_csLog.Destroy();
}

void CloseLog()
{
    delete s_pGlobal.exchange(nullptr);
    s_LoggingLevel.Close();
}

CLogFile* CLogFile::GetGlobal()
{
    return s_pGlobal.load(std::memory_order_acquire);
}

CLogFile* CLogFile::MakeGlobal()
{
    CLock Lock(g_csLog);
    if (!GetGlobal())
        s_pGlobal.store(new CLogFile, std::memory_order_release);
    return GetGlobal();
}

void CLogFile::SetMasks(DWORD dwValue)
{
    m_dwLevelMask = dwValue & kLevelBits;
    m_dwCategoryMask = dwValue & kCategoryBits;
}

bool CLogFile::Open()
{
    const std::optional<DWORD> Value = s_LoggingLevel.Read();
    return Value && (*Value == 0 || Open(*Value));
}

bool CLogFile::Open(DWORD dwValue)
{
    SYSTEMTIME stNow;
    GetLocalTime(&stNow);
    CLogFile* pGlobal = MakeGlobal();
    pGlobal->SetMasks(dwValue);
    return pGlobal->OpenFile(MakeLogFileName(stNow));
}

void CLogFile::OpenAnyway()
{
    const CLogFile* pGlobal = GetGlobal();
    if (!pGlobal || !pGlobal->m_bFileOpen)
        Open(s_LoggingLevel.Read().value_or(0));
}

bool CLogFile::OpenFile(const std::string& strName)
{
    CLock Lock(g_csLog);
    if (m_bFileOpen)
        return true;
    // With append access alone, every line goes to the file's end, also when another process writes the same file.
    m_hFile.Reset(CreateFileA(strName.c_str(), GENERIC_READ | FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                              nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    m_bFileOpen = static_cast<bool>(m_hFile);
    return m_bFileOpen;
}

void CLogFile::Log(std::string_view strText, DWORD dwCategory, DWORD dwLevel)
{
    if (Passes(dwCategory, dwLevel))
        WriteMessage(strText, dwCategory, dwLevel);
}

bool CLogFile::Passes(DWORD dwCategory, DWORD dwLevel)
{
    const DWORD dwValue = s_LoggingLevel.Read().value_or(0);
    if (dwValue == 0)
        return false;
    CLogFile* pGlobal = GetGlobal();
    if (pGlobal && pGlobal->m_bFileOpen)
        pGlobal->SetMasks(dwValue);
    else
        Open(dwValue);
    pGlobal = GetGlobal();
    return pGlobal && (pGlobal->m_dwLevelMask & dwLevel) != 0 && (pGlobal->m_dwCategoryMask & dwCategory) != 0;
}

void CLogFile::WriteMessage(std::string_view strText, DWORD dwCategory, DWORD dwLevel)
{
    WriteLine({FindName(kCategoryNames, kFirstCategoryBit, dwCategory), FindName(kLevelNames, 0, dwLevel), strText});
}

void CLogFile::WriteLine(std::initializer_list<std::string_view> Texts)
{
    CLock Lock(g_csLog);
    CLogFile* pGlobal = GetGlobal();
    if (pGlobal && pGlobal->m_bFileOpen)
        pGlobal->WriteStamped(Texts);
}

void CLogFile::WriteStamped(std::initializer_list<std::string_view> Texts)
{
    m_strLine.assign(FormatTime());
    for (const std::string_view strText : Texts)
        m_strLine.append(strText);
    m_strLine.append("\r\n");
    DWORD dwWritten = 0;
    WriteFile(m_hFile.Get(), m_strLine.data(), static_cast<DWORD>(m_strLine.size()), &dwWritten, nullptr);
}

// The time that begins a line, made once a second.
std::string_view CLogFile::FormatTime()
{
    SYSTEMTIME stNow;
    GetLocalTime(&stNow);
    stNow.wMilliseconds = 0;
    if (std::memcmp(&stNow, &m_stFormatted, sizeof stNow) != 0) {
        m_stFormatted = stNow;
        std::snprintf(m_szTime, sizeof m_szTime, "%02u/%02u/%02u %02u:%02u:%02u\t", stNow.wMonth, stNow.wDay,
                      stNow.wYear % 100u, stNow.wHour, stNow.wMinute, stNow.wSecond);
    }
    return m_szTime;
}

// The path of the library's own module; empty if the system does not know it.
static std::string GetModulePath()
{
    const HMODULE hModule = GetModuleHandleA(kModuleName);
    if (!hModule)
        return {};
    constexpr DWORD kLongestPath = 32768;
    std::string strPath(MAX_PATH, '\0');
    for (;;) {
        const DWORD dwSize = static_cast<DWORD>(strPath.size());
        const DWORD dwLength = GetModuleFileNameA(hModule, strPath.data(), dwSize);
        if (dwLength < dwSize || dwSize >= kLongestPath) {
            strPath.resize(dwLength);
            return strPath;
        }
        strPath.resize(strPath.size() * 2);
    }
}

std::string MakeLogFileName(const SYSTEMTIME& stNow)
{
    char szTime[64];
    std::snprintf(szTime, sizeof szTime, "%04u_%02u_%02u_%02u_%02u_.log", stNow.wYear, stNow.wMonth, stNow.wDay,
                  stNow.wHour, stNow.wMinute);
    return GetModulePath() + szTime;
}
