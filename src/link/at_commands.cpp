#include "link/at_commands.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

#include "link/command.h"
#include "link/exec_command.h"
#include "log/log.h"

namespace {

constexpr CLogSource Log{LOG_READWRITE};

// Sends one command on the current port; the reply is zeroed beyond what came.
bool Send(HANDLE hDevice, const char* pCommand, DWORD dwCommandLen, char* pReply, DWORD* pdwReplyLen, DWORD* pdwErrSts)
{
    return ExecCmd(hDevice, pCommand, dwCommandLen, pReply, kMaxReply, pdwReplyLen, pdwErrSts, kServiceTimeout,
                   nullptr);
}

// Does the text up to its first zero byte hold the word, in any mix of cases?
bool HoldsError(std::string_view strReply)
{
    constexpr std::string_view kError = "ERROR";
    strReply = strReply.substr(0, strReply.find('\0'));
    return std::search(strReply.begin(), strReply.end(), kError.begin(), kError.end(),
                       [](char cReply, char cError) { return (cReply & ~0x20) == cError; }) != strReply.end();
}

// What stands behind the first colon and the character after it; all of it without a colon.
std::string_view GetAnswer(std::string_view strReply)
{
    const size_t uColon = strReply.find(':');
    if (uColon == std::string_view::npos)
        return strReply;
    return strReply.substr(std::min(uColon + 2, strReply.size()));
}

} // namespace

bool GetATCmdStr(HANDLE hDevice, const char* pCommand, DWORD dwCommandLen, char* pAnswer, DWORD dwAnswerSize,
                 DWORD* pdwAnswerLen, DWORD* pdwErrSts)
{
    const auto pReply = std::make_unique<char[]>(kMaxReply);
    if (!Send(hDevice, pCommand, dwCommandLen, pReply.get(), pdwAnswerLen, pdwErrSts)) {
        Log.Error("GetATCmdStr::ERROR executing AT command");
        return false;
    }
    const DWORD dwReplyLen = *pdwAnswerLen;
    if (dwReplyLen + 1 > dwAnswerSize) {
        Log.Error("GetATCmdStr::Returned data is longer than supplied buffer; Buffer Length = %d, Data Length = %d",
                  dwAnswerSize, dwReplyLen);
        return false;
    }
    const std::string_view strReply(pReply.get(), dwReplyLen);
    if (HoldsError(strReply)) {
        Log.Error("GetATCmdStr::ERROR found in returned string");
        return false;
    }
    const std::string_view strAnswer = GetAnswer(strReply);
    strAnswer.copy(pAnswer, strAnswer.size());
    *pdwAnswerLen = static_cast<DWORD>(strAnswer.size());
    return true;
}

bool SetPhoneMode(HANDLE hDevice, int nMode)
{
    char szCommand[260] = {};
    std::snprintf(szCommand, sizeof szCommand, "%s%d\r", "AT+MODE=", nMode);
    Log.Comment("SetPhoneMode::Initializing the mode");
    const auto pReply = std::make_unique<char[]>(kMaxReply);
    DWORD dwReplyLen = 0;
    DWORD dwErrSts = 0;
    if (!Send(hDevice, szCommand, static_cast<DWORD>(std::strlen(szCommand)), pReply.get(), &dwReplyLen, &dwErrSts)) {
        Log.Error("SetPhoneMode::ERROR setting AT mode");
        return false;
    }
    if (HoldsError(std::string_view(pReply.get(), dwReplyLen))) {
        Log.Error("SetPhoneMode::ERROR found in returned string");
        return false;
    }
    return true;
}
