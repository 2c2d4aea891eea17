// The log as every other file uses it: one constant source per file, `constexpr CLogSource Log{LOG_CPORT};`, then
// Log.Error("...%d", dwX) or Log.Comment(...), with the texts exactly as they appear in the file. A line that the
// registry's masks filter out is never formatted. Nothing here fails or throws: what cannot be logged is dropped.
#pragma once

#include <string_view>

#include <windows.h>

#include "log/log_format.h"

inline constexpr DWORD LOG_DEBUG = 0x1;
inline constexpr DWORD LOG_COMMENT = 0x2;
inline constexpr DWORD LOG_ERROR = 0x4;

inline constexpr DWORD LOG_CCALDERAPP = 0x100;
inline constexpr DWORD LOG_PHNNRV = 0x200;
inline constexpr DWORD LOG_CDEVICE = 0x400;
inline constexpr DWORD LOG_CPORT = 0x800;
inline constexpr DWORD LOG_READWRITE = 0x1000;
inline constexpr DWORD LOG_CCALENDAR = 0x2000;
inline constexpr DWORD LOG_CCALLBACK = 0x4000;
inline constexpr DWORD LOG_CCALLHISTORY = 0x8000;
inline constexpr DWORD LOG_CONNECTIONSTATUS = 0x10000;
inline constexpr DWORD LOG_CPHONEBOOK = 0x20000;
inline constexpr DWORD LOG_SETUPINFORMATION = 0x40000;
inline constexpr DWORD LOG_CSMS = 0x80000;

// Writes one line if the masks let it pass.
void LogMessage(std::string_view strText, DWORD dwCategory, DWORD dwLevel) noexcept;

class CLogSource
{
public:
    constexpr explicit CLogSource(DWORD dwCategory) : m_dwCategory(dwCategory) {}

    template <typename... Args>
    void Error(CLogFormat<std::type_identity_t<Args>...> Format, const Args&... Arguments) const noexcept
    {
        Message(LOG_ERROR, Format.Get(), Arguments...);
    }

    template <typename... Args>
    void Comment(CLogFormat<std::type_identity_t<Args>...> Format, const Args&... Arguments) const noexcept
    {
        Message(LOG_COMMENT, Format.Get(), Arguments...);
    }

    // An Error line that no mask keeps out.
    template <typename... Args>
    void Always(CLogFormat<std::type_identity_t<Args>...> Format, const Args&... Arguments) const noexcept
    {
        OpenLog();
        Write(LOG_ERROR, Format.Get(), ToLogArgument(Arguments)...);
    }

private:
    template <typename... Args>
    void Message(DWORD dwLevel, const char* pszFormat, const Args&... Arguments) const noexcept
    {
        if constexpr (sizeof...(Args) == 0)
            LogMessage(pszFormat, m_dwCategory, dwLevel);
        else if (Passes(dwLevel))
            Write(dwLevel, pszFormat, ToLogArgument(Arguments)...);
    }

    bool Passes(DWORD dwLevel) const noexcept;
    static void OpenLog() noexcept;
    // The arguments are those of ToLogArgument.
    void Write(DWORD dwLevel, const char* pszFormat, ...) const noexcept;

    DWORD m_dwCategory;
};
