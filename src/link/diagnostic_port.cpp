#include "link/diagnostic_port.h"

#include <utility>

#include "link/command.h"
#include "link/overlapped.h"
#include "log/log.h"

namespace {

constexpr CLogSource Log{LOG_CPORT};

constexpr DWORD kBufferSize = 50001; // of received, and of decoded bytes
constexpr DWORD kWriteTimeout = 15000;
constexpr int kMaxReads = 3;

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
    if (!ComposeData(pData, dwLength, abyFrame, sizeof abyFrame, &dwStuffed)) {
        Log.Error("DP::Write - Failed composing data");
        return false;
    }
    COverlappedOperation Operation;
    if (!Operation) {
        Log.Error("DP::Write - Unable to create the event");
        return false;
    }
    if (Owns(hPort) && WriteFile(hPort, abyFrame, dwStuffed, pdwWritten, Operation.GetRecord()))
        return true;
    if (GetLastError() != ERROR_IO_PENDING) {
        *pdwError = COverlappedOperation::CleanUp(hPort);
        Log.Error("DP::Write - WriteFile failed. Last error is 0x%X", *pdwError);
        return false;
    }
    if (!Operation.Await(m_hClosing, kWriteTimeout)) {
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
    DWORD dwTotal = 0;
    return ReadFrame(hPort, &dwTotal, pdwError, dwTimeout) &&
           DecomposeData(m_pAccumulator.get(), dwTotal, pBuffer, dwSize, pdwRead);
}

// Fills the accumulator with one decoded reply frame. What lies behind *pdwTotal there is stale.
bool DP::ReadFrame(HANDLE hPort, DWORD* pdwTotal, DWORD* pdwError, DWORD dwTimeout)
{
    COverlappedOperation Operation;
    if (!Operation) {
        Log.Error("DP::Read  - Unable to create the event");
        return false;
    }
    BeginDecode();
    for (int nRead = 0; nRead < kMaxReads; ++nRead) {
        DWORD dwGot = 0;
        if (!ReadChunk(hPort, Operation, &dwGot, pdwError, dwTimeout))
            return false;
        if (*pdwTotal + dwGot >= kBufferSize) {
            Log.Error("DP::Read - Length of data is greater than buffer. Buffer is %d and data length is %d",
                      kBufferSize, *pdwTotal + dwGot);
            return false;
        }
        DWORD dwDecoded = 0;
        if (!Decode(m_pChunk.get(), dwGot, m_pAccumulator.get() + *pdwTotal, kBufferSize - *pdwTotal, &dwDecoded)) {
            Log.Error("DP::Read - Decode returned an error");
            return false;
        }
        *pdwTotal += dwDecoded;
        const int nComplete = CheckSize(m_pAccumulator.get(), *pdwTotal);
        if (nComplete < 0) {
            Log.Error("DP::Read - CheckSize returned an error");
            return false;
        }
        if (nComplete > 0)
            return true;
    }
    Log.Error("DP::Read - Exceeded the maximum loop counter");
    return false;
}

bool DP::ReadChunk(HANDLE hPort, COverlappedOperation& Operation, DWORD* pdwGot, DWORD* pdwError, DWORD dwTimeout)
{
    const bool bDone = Owns(hPort) && ReadFile(hPort, m_pChunk.get(), kBufferSize, pdwGot, Operation.GetRecord());
    if (bDone)
        return true;
    if (GetLastError() != ERROR_IO_PENDING) {
        *pdwError = COverlappedOperation::CleanUp(hPort);
        Log.Error("DP::Read - ReadFile failed. Last error is 0x%X", *pdwError);
        return false;
    }
    if (!Operation.Await(m_hClosing, dwTimeout)) {
        *pdwError = Operation.Abandon(hPort);
        Log.Error("DP::Read - WaitForSingleObject failed. Last error is 0x%X", *pdwError);
        return false;
    }
    if (!GetOverlappedResult(hPort, Operation.GetRecord(), pdwGot, FALSE)) {
        *pdwError = Operation.Abandon(hPort);
        Log.Error("DP::Read - GetOverlappedResult failed. Last error is 0x%X", *pdwError);
        return false;
    }
    return true;
}
