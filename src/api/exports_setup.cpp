// Device information, activation, radio power, phone lock and parameters.
#include "api/export_frame.h"
#include "status/setup_information.h"

namespace {

bool IsFourCharacters(const char* pszCode)
{
    return pszCode[0] && pszCode[1] && pszCode[2] && pszCode[3] && !pszCode[4];
}

} // namespace

PHN_ERROR PHN_GetDeviceInfo(PHN_DEVICE_INFO* pDeviceInfo) noexcept
{
    return Export("PHN_GetDeviceInfo", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (!pDeviceInfo)
            return Frame.Null("pDeviceInfo");
        if (const PHN_ERROR weError = Frame.CheckSize("pDeviceInfo", pDeviceInfo, "PHN_DEVICE_INFO"))
            return weError;
        ClearFrom(pDeviceInfo, 4);
        return Frame.Call(kSetup, "GetDeviceInfo", &CSetupInformation::GetDeviceInfo, pDeviceInfo);
    });
}

PHN_ERROR PHN_Activate(PHN_ACTIVATION_DATA* pActivationData) noexcept
{
    return Export("PHN_Activate", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (!pActivationData)
            return Frame.Null("pActivationData");
        if (const PHN_ERROR weError = Frame.CheckSize("pActivationData", pActivationData, "PHN_ACTIVATION_DATA"))
            return weError;
        if (!pActivationData->bAutomatic)
            return Frame.Fail(PHN_ERROR_NOT_AUTOMATIC, "pActivationData->bAutomatic is false.");
        if (const PHN_ERROR weError = Frame.Call(kSetup, "Activate", &CSetupInformation::Activate, pActivationData))
            return weError;
        return PHN_ERROR_ACTIVATION_STARTED;
    });
}

PHN_ERROR PHN_SetRadioPower(uint32_t uRadioState) noexcept
{
    return Export("PHN_SetRadioPower", [=](CExportFrame& Frame) {
        return Frame.Call(kSetup, "SetRadio", &CSetupInformation::SetRadio, uRadioState);
    });
}

PHN_ERROR PHN_SetLock(uint32_t uLock, const char* pExistingLockCode) noexcept
{
    return Export("PHN_SetLock", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (!pExistingLockCode)
            return Frame.Null("pExistingLockCode");
        if (!IsFourCharacters(pExistingLockCode))
            return Frame.Fail(PHN_ERROR_INVALID_LOCK_CODE, "Length of pExistingLockCode is not equal to 4.");
        return Frame.Call(kSetup, "SetLock", &CSetupInformation::SetLock, uLock, pExistingLockCode);
    });
}

PHN_ERROR PHN_ChangeLockCode(const char* pExistingLockCode, const char* pNewLockCode) noexcept
{
    return Export("PHN_ChangeLockCode", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (!pExistingLockCode || !pNewLockCode)
            return Frame.Null("pExistingLockCode or pNewLockCode");
        if (!IsFourCharacters(pExistingLockCode))
            return Frame.Fail(PHN_ERROR_INVALID_LOCK_CODE, "Length of pExistingLockCode is not equal to 4.");
        if (!IsFourCharacters(pNewLockCode))
            return Frame.Fail(PHN_ERROR_INVALID_LOCK_CODE, "Length of pNewLockCode is not equal to 4.");
        return Frame.Call(kSetup, "ChangeLockCode", &CSetupInformation::ChangeLockCode, pExistingLockCode,
                          pNewLockCode);
    });
}

PHN_ERROR PHN_GetParameters(PHN_PARAMETERS* pParameters) noexcept
{
    return Export("PHN_GetParameters", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (!pParameters)
            return Frame.Null("pParameters");
        if (const PHN_ERROR weError = Frame.CheckSize("pParameters", pParameters, "PHN_PARAMETERS"))
            return weError;
        ClearFrom(pParameters, 4);
        return Frame.Call(kSetup, "GetParameters", &CSetupInformation::GetParameters, pParameters);
    });
}

PHN_ERROR PHN_SetParameters(PHN_PARAMETERS* pParameters) noexcept
{
    return Export("PHN_SetParameters", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (!pParameters)
            return Frame.Null("pParameters");
        if (const PHN_ERROR weError = Frame.CheckSize("pParameters", pParameters, "PHN_PARAMETERS"))
            return weError;
        return Frame.Call(kSetup, "SetParameters", &CSetupInformation::SetParameters, pParameters);
    });
}
