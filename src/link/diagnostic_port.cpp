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

// The end of an operation that failed: its port is left clean.
template <typename Format>
bool Fail(HANDLE hPort, COverlappedOperation& Operation, DWORD dwError, DWORD* pdwError, Format pszLine)
{
    *pdwError = dwError;
    Operation.Abandon(hPort);
    Log.Error(pszLine, dwError);
    return false;
}

} // namespace

DP::DP(std::string strPath)
    : CPort(std::move(strPath)), m_pChunk(std::make_unique_for_overwrite<uint8_t[]>(kBufferSize)),
      m_pAccumulator(std::make_unique_for_overwrite<uint8_t[]>(kBufferSize))
{
}
