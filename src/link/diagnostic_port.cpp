#include "link/diagnostic_port.h"

#include <chrono>
#include <utility>

#include "link/command.h"
#include "log/log.h"

namespace {

constexpr CLogSource Log{LOG_CPORT};

constexpr DWORD kWriteTimeout = 15000;
constexpr DWORD kSilence = 10;
constexpr int kMaxReads = 3;

// Stuffing at most doubles a frame. The rest of the buffer, most of it, is left alone.
constexpr DWORD RoomFor(DWORD dwRequest)
{
    constexpr DWORD kAroundRequest = 16;
    return dwRequest < kMaxRequest / 2 - kAroundRequest ? 2 * (dwRequest + kAroundRequest) : kMaxRequest;
}

// Windows may end a wait early, at the next tick of a clock that is coarser than a silence; one that begins with a tick
// lasts.
EWait AwaitSilence(const COverlappedOperation& Operation, HANDLE hClosing)
{
    using std::chrono::steady_clock;
    const steady_clock::time_point Start = steady_clock::now();
    const EWait eWait = Operation.Await(hClosing, kSilence);
    const bool bEarly = steady_clock::now() - Start < std::chrono::milliseconds(kSilence);
    return eWait == EWait::eTimeOut && bEarly ? Operation.Await(hClosing, kSilence) : eWait;
}

} // namespace

DP::DP(std::string strPath)
    : CPort(std::move(strPath)),
      m_pChunk(std::make_unique_for_overwrite<uint8_t[]>(kBufferSize)),
      m_pAccumulator(std::make_unique_for_overwrite<uint8_t[]>(kBufferSize))
{
}

bool DP::Write(HANDLE hPort, const void* pData, DWORD dwLength, DWORD* pdwWritten, DWORD* pdwError)
{
    *pdwError = 0;
    *pdwWritten = 0;
    uint8_t abyFrame[kMaxRequest];
    DWORD dwStuffed = 0;
    if (!ComposeData(pData, dwLength, abyFrame, RoomFor(dwLength), &dwStuffed)) {
        Log.Error("DP::Write - Failed composing data");
        return false;
    }
    COverlappedOperation Operation;
    if (!Operation) {
        Log.Error("DP::Write - Unable to create the event");
        return false;
    }
    DropLeftovers(hPort);
    if (Owns(hPort) && WriteFile(hPort, abyFrame, dwStuffed, pdwWritten, Operation.GetRecord()))
        return true;
    if (GetLastError() != ERROR_IO_PENDING) {
        *pdwError = COverlappedOperation::CleanUp(hPort);
        Log.Error("DP::Write - WriteFile failed. Last error is 0x%X", *pdwError);
        return false;
    }
    if (Operation.Await(m_hClosing, kWriteTimeout) != EWait::eCompleted) {
        *pdwError = Operation.Abandon(hPort);
        Log.Error("DP::Write - WaitForSingleObject failed. Last error is 0x%X", *pdwError);
        return false;
    }
    if (!GetOverlappedResult(hPort, Operation.GetRecord(), pdwWritten, FALSE)) {
        *pdwError = Operation.Abandon(hPort);
        Log.Error("DP::Write - GetOverlappedResult failed. Last error is 0x%X", *pdwError);
        return false;
    }
    return true;
}

bool DP::Read(HANDLE hPort, void* pBuffer, DWORD dwSize, DWORD* pdwRead, DWORD* pdwError, DWORD dwTimeout)
{
    *pdwError = 0;
    *pdwRead = 0;
    DWORD dwDecoded = 0;
    return ReadFrame(hPort, dwTimeout, pdwError, &dwDecoded) &&
           DecomposeData(m_pAccumulator.get(), dwDecoded, pBuffer, dwSize, pdwRead);
}

bool DP::ReadFrame(HANDLE hPort, DWORD dwTimeout, DWORD* pdwError, DWORD* pdwDecoded)
{
    SReply Reply{hPort, dwTimeout, pdwError};
    if (!Reply.Operation) {
        Log.Error("DP::Read  - Unable to create the event");
        return false;
    }
    BeginDecode();
    for (int nRead = 0; nRead < kMaxReads; ++nRead) {
        Reply.dwCounted = Reply.dwDecoded;
        if (!Gather(Reply))
            return false;
        const int nComplete = CheckSize(m_pAccumulator.get(), Reply.dwDecoded);
        if (nComplete < 0) {
            Log.Error("DP::Read - CheckSize returned an error");
            return false;
        }
        if (nComplete > 0) {
            *pdwDecoded = Reply.dwDecoded;
            return true;
        }
    }
    Log.Error("DP::Read - Exceeded the maximum loop counter");
    return false;
}

bool DP::Gather(SReply& Reply)
{
    DWORD dwGot = 0;
    return ReadChunk(Reply, kBufferSize, Reply.dwTimeout, false, &dwGot) && Append(Reply, dwGot);
}

bool DP::ReadChunk(SReply& Reply, DWORD dwSize, DWORD dwTimeout, bool bSilenceEnds, DWORD* pdwGot)
{
    const HANDLE hPort = Reply.hPort;
    if (Owns(hPort) && ReadFile(hPort, m_pChunk.get(), dwSize, pdwGot, Reply.Operation.GetRecord()))
        return true;
    if (GetLastError() != ERROR_IO_PENDING) {
        *Reply.pdwError = COverlappedOperation::CleanUp(hPort);
        Log.Error("DP::Read - ReadFile failed. Last error is 0x%X", *Reply.pdwError);
        return false;
    }
    const bool bSilenceFirst = bSilenceEnds && dwTimeout > kSilence;
    const EWait eWait =
        bSilenceFirst ? AwaitSilence(Reply.Operation, m_hClosing) : Reply.Operation.Await(m_hClosing, dwTimeout);
    if (eWait == EWait::eTimeOut && bSilenceFirst) {
        *pdwGot = Reply.Operation.Withdraw(hPort);
        return true;
    }
    if (eWait != EWait::eCompleted) {
        *Reply.pdwError = Reply.Operation.Abandon(hPort);
        Log.Error("DP::Read - WaitForSingleObject failed. Last error is 0x%X", *Reply.pdwError);
        return false;
    }
    if (!GetOverlappedResult(hPort, Reply.Operation.GetRecord(), pdwGot, FALSE)) {
        *Reply.pdwError = Reply.Operation.Abandon(hPort);
        Log.Error("DP::Read - GetOverlappedResult failed. Last error is 0x%X", *Reply.pdwError);
        return false;
    }
    return true;
}

bool DP::Append(SReply& Reply, DWORD dwGot)
{
    Reply.dwCounted += dwGot;
    if (Reply.dwCounted >= kBufferSize) {
        Log.Error("DP::Read - Length of data is greater than buffer. Buffer is %d and data length is %d", kBufferSize,
                  Reply.dwCounted);
        return false;
    }
    DWORD dwDecoded = 0;
    if (!Decode(m_pChunk.get(), dwGot, m_pAccumulator.get() + Reply.dwDecoded, kBufferSize - Reply.dwDecoded,
                &dwDecoded)) {
        Log.Error("DP::Read - Decode returned an error");
        return false;
    }
    Reply.dwDecoded += dwDecoded;
    return true;
}
