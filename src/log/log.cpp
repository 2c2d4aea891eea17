#include "log/log.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <exception>
#include <string>

#include "log/log_file.h"
#include "log/shown_text.h"

namespace {

size_t GetFormatted(int nLength)
{
    return nLength < 0 ? 0 : static_cast<size_t>(nLength);
}

// A line end that the format itself has stays one.
void WriteShown(std::string_view strText, std::string_view strFormat, DWORD dwCategory, DWORD dwLevel)
{
    const bool bOwnEnd = strFormat.ends_with('\n');
    strText.remove_suffix(bOwnEnd && !strText.empty());
    CLogFile::WriteMessage(ShowControls(strText) + (bOwnEnd ? "\n" : ""), dwCategory, dwLevel);
}

} // namespace

void LogMessage(std::string_view strText, DWORD dwCategory, DWORD dwLevel) noexcept
{
    try {
        CLogFile::Log(strText, dwCategory, dwLevel);
    } catch (const std::exception&) {
        // No failure of logging reaches a caller.
    }
}

bool CLogSource::Passes(DWORD dwLevel) const noexcept
{
    try {
        return CLogFile::Passes(m_dwCategory, dwLevel);
    } catch (const std::exception&) {
        return false;
    }
}

void CLogSource::OpenLog() noexcept
{
    try {
        CLogFile::OpenAnyway();
    } catch (const std::exception&) {
        // As above.
    }
}

void CLogSource::Write(DWORD dwLevel, const char* pszFormat, ...) const noexcept
{
    va_list Arguments;
    va_start(Arguments, pszFormat);
    va_list Again;
    va_copy(Again, Arguments);
    try {
        std::array<char, 512> szText;
        const size_t uLength = GetFormatted(std::vsnprintf(szText.data(), szText.size(), pszFormat, Arguments));
        if (uLength < szText.size()) {
            WriteShown({szText.data(), uLength}, pszFormat, m_dwCategory, dwLevel);
        } else {
            std::string strText(uLength, '\0');
            std::vsnprintf(strText.data(), uLength + 1, pszFormat, Again);
            WriteShown(strText, pszFormat, m_dwCategory, dwLevel);
        }
    } catch (const std::exception&) {
        // As above.
    }
    va_end(Again);
    va_end(Arguments);
}
