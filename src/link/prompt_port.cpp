#include "link/prompt_port.h"

#include <algorithm>
#include <optional>

#include "log/log.h"
#include "log/setting.h"

namespace {

constexpr CLogSource Log{LOG_CPORT};

// Bytes that have been received and not read; nothing of a port that does not tell.
std::optional<DWORD> AskForWaiting(HANDLE hPort)
{
    DWORD dwErrors = 0;
    COMSTAT Status{};
    if (!ClearCommError(hPort, &dwErrors, &Status))
        return std::nullopt;
    return Status.cbInQue;
}

DWORD CountWaiting(HANDLE hPort)
{
    return AskForWaiting(hPort).value_or(0);
}

DWORD TimeLeft(ULONGLONG ullStart, DWORD dwTimeout)
{
    const ULONGLONG ullSpent = GetTickCount64() - ullStart;
    return ullSpent < dwTimeout ? static_cast<DWORD>(dwTimeout - ullSpent) : 0;
}

} // namespace

bool CPromptPort::IsWanted()
{
    return ReadSetting("Prompt Reads") != 0;
}

void CPromptPort::DropLeftovers(HANDLE hPort) const
{
    if (!Owns(hPort))
        return;
    const std::optional<DWORD> Waiting = AskForWaiting(hPort);
    if (Waiting == 0u)
        return;
    if (PurgeComm(hPort, PURGE_RXCLEAR) && Waiting)
        Log.Comment("DP::Write - Dropped %d bytes that were received before the request", *Waiting);
}

// The first piece is left to the port, which ends it by silence. All of them share the time-out, as bytes that keep
// trickling in would be no silence.
bool CPromptPort::Gather(SReply& Reply)
{
    const ULONGLONG ullStart = GetTickCount64();
    bool bFirst = true;
    while (const DWORD dwMissing = CountMissing(GetDecoded(), Reply.dwDecoded)) {
        const DWORD dwWaiting = bFirst ? dwMissing : CountWaiting(Reply.hPort);
        const DWORD dwLeft = bFirst ? Reply.dwTimeout : TimeLeft(ullStart, Reply.dwTimeout);
        bool bSilent = false;
        if (!TakePiece(Reply, dwMissing, dwWaiting, dwLeft, &bSilent))
            return false;
        if (bSilent)
            return true;
        bFirst = false;
    }
    return IsForLastRequest(GetDecoded(), Reply.dwDecoded) || TakeRest(Reply, ullStart);
}

// A late reply is going to be refused. What comes close behind it may be the one that was asked for and goes with it,
// as in DP, to its last byte: left there, it would be taken for the reply to the next request, and so on. Both share
// the time-out that began with the first piece.
bool CPromptPort::TakeRest(SReply& Reply, ULONGLONG ullStart)
{
    for (bool bSilent = false; !bSilent;) {
        const DWORD dwLeft = TimeLeft(ullStart, Reply.dwTimeout);
        if (!TakePiece(Reply, kBufferSize, CountWaiting(Reply.hPort), dwLeft, &bSilent))
            return false;
    }
    return true;
}

// Bytes that are there are taken, at most so many; where there are none, one is waited for, as the port would wait for
// it without end.
bool CPromptPort::TakePiece(SReply& Reply, DWORD dwMost, DWORD dwWaiting, DWORD dwTimeout, bool* pbSilent)
{
    const DWORD dwSize = std::min({std::max<DWORD>(dwWaiting, 1), dwMost, kBufferSize - Reply.dwCounted});
    DWORD dwGot = 0;
    if (!ReadChunk(Reply, dwSize, dwTimeout, dwWaiting == 0, &dwGot) || !Append(Reply, dwGot))
        return false;
    *pbSilent = dwGot < dwSize;
    return true;
}
