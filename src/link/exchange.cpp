#include "link/exchange.h"

#include <vector>

#include "link/exec_command.h"

namespace {

constexpr size_t kResultOffset = sizeof(DEV_RX_HEADER);

} // namespace

bool CExchange::Send(HANDLE hDevice, std::span<const uint8_t> Parameters, PHN_ERROR* pError)
{
    const RequestHeader Header = MakeRequest(m_dwCommand);
    std::vector<uint8_t> Request(sizeof Header + Parameters.size());
    std::memcpy(Request.data(), &Header, sizeof Header);
    if (!Parameters.empty())
        std::memcpy(Request.data() + sizeof Header, Parameters.data(), Parameters.size());

    DWORD dwErrSts = 0;
    if (!ExecCmd(hDevice, Request.data(), static_cast<DWORD>(Request.size()), m_Reply.m_abyBuffer,
                 sizeof m_Reply.m_abyBuffer, &m_Reply.m_dwLength, &dwErrSts, m_Spec.dwTimeout, nullptr)) {
        m_Log.Error("%s - ExecCmd failed with dwErrSts = %d(0x%X).", m_Spec.pszOperation, dwErrSts, dwErrSts);
        *pError = PHN_ERROR_FAILED;
        return false;
    }
    if (m_Reply.m_dwLength < m_Spec.dwMinimum) {
        m_Log.Error("%s - dwRetBufferLen(%d, 0x%X) is less than %s%d, 0x%X).", m_Spec.pszOperation, m_Reply.m_dwLength,
                    m_Reply.m_dwLength, m_Spec.pszReply, m_Spec.dwMinimum, m_Spec.dwMinimum);
        *pError = PHN_ERROR_FAILED;
        return false;
    }
    return true;
}

bool CExchange::Check(PHN_ERROR* pError) const
{
    return CheckStatus(pError) && (!m_Spec.pszResult || CheckResult(pError));
}

bool CExchange::CheckStatus(PHN_ERROR* pError) const
{
    const uint16_t wStatus = m_Reply.Load<DEV_RX_HEADER>().wStatus;
    if (wStatus == 0)
        return true;
    m_Log.Error("%s - %s = %d(0x%X).", m_Spec.pszOperation, m_Spec.pszStatus, wStatus, wStatus);
    *pError = MapReplyStatus(wStatus);
    return false;
}

bool CExchange::CheckResult(PHN_ERROR* pError) const
{
    const auto dwResult = m_Reply.Load<uint32_t, kResultOffset>();
    if (dwResult == 0)
        return true;
    m_Log.Error("%s - %s = %d(0x%X).", m_Spec.pszOperation, m_Spec.pszResult, dwResult, dwResult);
    *pError = m_Spec.pfnMapResult(dwResult);
    return false;
}
