#include "link/exchange.h"

#include "link/exec_command.h"

bool CExchange::Send(HANDLE hDevice, std::span<const uint8_t> Parameters, PHN_ERROR* pError)
{
    uint8_t abyRequest[kMaxRequest];
    const RequestHeader Header = MakeRequest(m_dwCommand);
    std::memcpy(abyRequest, &Header, sizeof Header);
    // A request that is too long is refused by its length, and none of it is looked at.
    std::ranges::copy(Parameters.first(std::min(Parameters.size(), sizeof abyRequest - sizeof Header)),
                      abyRequest + sizeof Header);
    const auto dwRequestLen = static_cast<DWORD>(sizeof Header + Parameters.size());
    DWORD dwErrSts = 0;
    DWORD dwRetBufferLen = 0;
    if (!ExecCmd(hDevice, abyRequest, dwRequestLen, m_Reply.m_abyBuffer.data(), kReplyBufferSize, &dwRetBufferLen,
                 &dwErrSts, m_Spec.dwTimeout, nullptr)) {
        m_Log.Error("%s - ExecCmd failed with dwErrSts = %d(0x%X).", m_Spec.pszOperation, dwErrSts, dwErrSts);
        *pError = PHN_ERROR_FAILED;
        return false;
    }
    if (dwRetBufferLen < m_Spec.Reply.dwMinimum) {
        m_Log.Error("%s - dwRetBufferLen(%d, 0x%X) is less than %s%d, 0x%X).", m_Spec.pszOperation, dwRetBufferLen,
                    dwRetBufferLen, m_Spec.Reply.pszReply, m_Spec.Reply.dwMinimum, m_Spec.Reply.dwMinimum);
        *pError = PHN_ERROR_FAILED;
        return false;
    }
    m_Reply.m_dwLength = dwRetBufferLen;
    return true;
}

bool CExchange::Check(PHN_ERROR* pError) const
{
    return CheckStatus(pError) && CheckResult(pError);
}

bool CExchange::CheckStatus(PHN_ERROR* pError) const
{
    const DWORD dwStatus = m_Reply.Load<DEV_RX_HEADER>().wStatus;
    if (dwStatus == 0)
        return true;
    m_Log.Error("%s - %s = %d(0x%X).", m_Spec.pszOperation, m_Spec.Reply.pszStatus, dwStatus, dwStatus);
    *pError = MapReplyStatus(dwStatus);
    return false;
}

// A result is the first field of the record.
bool CExchange::CheckResult(PHN_ERROR* pError) const
{
    if (!m_Spec.pszResult)
        return true;
    const DWORD dwResult = m_Reply.Load<uint32_t, sizeof(DEV_RX_HEADER)>();
    if (dwResult == 0)
        return true;
    m_Log.Error("%s - %s = %d(0x%X).", m_Spec.pszOperation, m_Spec.pszResult, dwResult, dwResult);
    *pError = m_Spec.pfnMapResult(dwResult);
    return false;
}
