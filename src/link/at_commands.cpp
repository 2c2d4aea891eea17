#include "link/at_commands.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

#include "common/ascii_case.h"
#include "link/command.h"
#include "link/exec_command.h"
#include "log/log.h"

namespace {

constexpr CLogSource Log{LOG_READWRITE};

constexpr DWORD kCommandSize = 260;

// Is "ERROR" in the answer, in any mix of cases, up to its first zero?
bool HasError(std::string_view strAnswer)
{
    return FindIgnoringCase(strAnswer.substr(0, strAnswer.find('\0')), "ERROR") != std::string_view::npos;
}

// What follows the first colon and the character after it; empty if nothing does.
std::string_view GetValue(std::string_view strAnswer)
{
    const size_t uColon = strAnswer.find(':');
    if (uColon == std::string_view::npos)
        return strAnswer;
    return strAnswer.substr(std::min(uColon + 2, strAnswer.size()));
}

// One exchange on the current port, with the buffer that its answer is in.
class CAnswer
{
public:
    bool Ask(HANDLE hDevice, std::string_view strCommand, DWORD* pdwErrSts)
    {
        return ExecCmd(hDevice, strCommand.data(), static_cast<DWORD>(strCommand.size()), m_pBuffer.get(), kMaxReply,
                       &m_dwLength, pdwErrSts, kServiceTimeout, nullptr);
    }
    std::string_view GetText() const { return {m_pBuffer.get(), m_dwLength}; }

private:
    std::unique_ptr<char[]> m_pBuffer = std::make_unique<char[]>(kMaxReply);
    DWORD m_dwLength = 0;
};

} // namespace

bool GetATCmdStr(HANDLE hDevice, const char* pCommand, DWORD dwCommandLen, char* pAnswer, DWORD dwAnswerSize,
                 DWORD* pdwAnswerLen, DWORD* pdwErrSts)
{
    CAnswer Answer;
    const bool bAnswered = Answer.Ask(hDevice, {pCommand, dwCommandLen}, pdwErrSts);
    const std::string_view strAnswer = Answer.GetText();
    *pdwAnswerLen = static_cast<DWORD>(strAnswer.size());
    if (!bAnswered) {
        Log.Error("GetATCmdStr::ERROR executing AT command");
        return false;
    }
    if (strAnswer.size() + 1 > dwAnswerSize) {
        Log.Error("GetATCmdStr::Returned data is longer than supplied buffer; Buffer Length = %d, Data Length = %d",
                  dwAnswerSize, strAnswer.size());
        return false;
    }
    if (HasError(strAnswer)) {
        Log.Error("GetATCmdStr::ERROR found in returned string");
        return false;
    }
    const std::string_view strValue = GetValue(strAnswer);
    std::ranges::copy(strValue, pAnswer);
    *pdwAnswerLen = static_cast<DWORD>(strValue.size());
    return true;
}

bool SetPhoneMode(HANDLE hDevice, int nMode)
{
    char szCommand[kCommandSize] = {};
    const int nLength = std::snprintf(szCommand, sizeof szCommand, "%s%d\r", "AT+MODE=", nMode);
    Log.Comment("SetPhoneMode::Initializing the mode");
    CAnswer Answer;
    DWORD dwErrSts = 0;
    if (!Answer.Ask(hDevice, {szCommand, static_cast<size_t>(nLength)}, &dwErrSts)) {
        Log.Error("SetPhoneMode::ERROR setting AT mode");
        return false;
    }
    if (HasError(Answer.GetText())) {
        Log.Error("SetPhoneMode::ERROR found in returned string");
        return false;
    }
    return true;
}
