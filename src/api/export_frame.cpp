#include "api/export_frame.h"

#include <atomic>

#include "link/device.h"
#include "log/log.h"

namespace {

constexpr CLogSource Log{LOG_CCALDERAPP};

constinit std::atomic<bool> s_bRefusesAll{false};

} // namespace

CExportFrame::CExportFrame(const char* pszExport) : m_pszExport(pszExport)
{
    Log.Comment("%s is being executed.", pszExport);
}

void CExportFrame::RefuseAll() noexcept
{
    s_bRefusesAll = true;
}

PHN_ERROR CExportFrame::CheckLoad() const
{
    if (s_bRefusesAll)
        return Fail(PHN_ERROR_FAILED, "The library could not be loaded.");
    return PHN_ERROR_NONE;
}

PHN_ERROR CExportFrame::Null(const char* pszArgument) const
{
    Log.Error("%s - %s is NULL.", m_pszExport, pszArgument);
    return PHN_ERROR_INVALID_PARAMETER;
}

PHN_ERROR CExportFrame::TooSmall(const char* pszArgument, uint32_t uSize, const char* pszRecord, size_t nMinimum) const
{
    Log.Error("%s - %s->uSize (%d, 0x%X) is less than %s (%d, 0x%X).", m_pszExport, pszArgument, uSize, uSize,
              pszRecord, nMinimum, nMinimum);
    return PHN_ERROR_BUFFER_TOO_SMALL;
}

PHN_ERROR CExportFrame::OutOfRange(const char* pszText, int32_t eType) const
{
    Log.Error("%s - %s = %d(0x%X).", m_pszExport, pszText, eType, eType);
    return PHN_ERROR_INVALID_PARAMETER;
}

PHN_ERROR CExportFrame::Fail(PHN_ERROR weError, const char* pszText) const
{
    Log.Error("%s - %s", m_pszExport, pszText);
    return weError;
}

PHN_ERROR CExportFrame::Device()
{
    if (m_hDevice)
        return PHN_ERROR_NONE;
    m_pInstance = GetInstance();
    if (!m_pInstance)
        return Fail(PHN_ERROR_NO_DEVICE, "pInstance is NULL.");
    m_pDevice = m_pInstance->m_pDeviceObject.Get();
    if (!m_pDevice)
        return Fail(PHN_ERROR_NO_DEVICE, "pInstance->m_pDeviceObject is NULL.");
    m_hDevice = m_pDevice->GetMDMHandle();
    if (!m_hDevice)
        return Fail(PHN_ERROR_NO_DEVICE, "hDevice is NULL.");
    return PHN_ERROR_NONE;
}

HWND CExportFrame::GetDeviceWindow() const
{
    return m_pDevice ? m_pDevice->GetWindow() : nullptr;
}

PHN_ERROR CExportFrame::ServiceMissing(const char* pszMember) const
{
    Log.Error("%s - pInstance->%s is NULL.", m_pszExport, pszMember);
    return PHN_ERROR_NO_SERVICE_OBJECT;
}

PHN_ERROR CExportFrame::MethodFailed(const char* pszMember, const SMethodName& Name, PHN_ERROR weError) const
{
    Log.Error("%s - pInstance->%s->%s%s%d(0x%X).", m_pszExport, pszMember, Name.m_pszMethod, Name.m_pszTail, weError,
              weError);
    return weError;
}

PHN_ERROR CExportFrame::CountFailed(const char* pszMember, const char* pszMethod) const
{
    Log.Error("%s - pInstance->%s->%s returned false.", m_pszExport, pszMember, pszMethod);
    return PHN_ERROR_FAILED;
}

PHN_ERROR ReportException(const char* pszExport, const char* pszReason) noexcept
{
    Log.Error("%s - ended by an exception: %s.", pszExport, pszReason);
    return PHN_ERROR_FAILED;
}
