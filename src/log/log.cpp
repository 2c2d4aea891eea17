#include "log/log.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <exception>
#include <string>

#include "log/log_file.h"

namespace {

size_t GetFormatted(int nLength)
{
    return nLength < 0 ? 0 : static_cast<size_t>(nLength);
}

// The text with its control characters shown ("\\x0D"), but for tabs and a line end of its own at the end: what a
// handset calls itself forges no line.
std::string ShowControls(std::string_view strText)
{
    std::string strShown;
    for (size_t u = 0; u < strText.size(); ++u) {
        const auto byChar = static_cast<unsigned char>(strText[u]);
        const bool bOwnEnd = byChar == '\n' && u + 1 == strText.size();
        char szShown[8];
        if ((byChar >= 0x20 && byChar != 0x7F) || byChar == '\t' || bOwnEnd)
            strShown += strText[u];
        else
            strShown.append(szShown, GetFormatted(std::snprintf(szShown, sizeof szShown, "\\x%02X", byChar)));
    }
    return strShown;
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
            CLogFile::WriteMessage(ShowControls({szText.data(), uLength}), m_dwCategory, dwLevel);
        } else {
            std::string strText(uLength, '\0');
            std::vsnprintf(strText.data(), uLength + 1, pszFormat, Again);
            CLogFile::WriteMessage(ShowControls(strText), m_dwCategory, dwLevel);
        }
    } catch (const std::exception&) {
        // As above.
    }
    va_end(Again);
    va_end(Arguments);
}
