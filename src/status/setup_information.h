// The service object that reads the handset's identity and configures it: device information, activation, radio power,
// phone lock, lock code and parameters. Each method is one exchange, works on its arguments only and may run on any
// host thread. Lock codes are four bytes; what they are and whether they are terminated is the caller's concern.
#pragma once

#include <windows.h>

#include "phnnrv.h"

class CSetupInformation
{
public:
    CSetupInformation() = default;
    virtual ~CSetupInformation() = default;
    CSetupInformation(const CSetupInformation&) = delete;
    CSetupInformation& operator=(const CSetupInformation&) = delete;

    // Fills the host record, which the caller has cleared: unwritten bytes stand for 0 and for missing terminators.
    bool GetDeviceInfo(HANDLE hDevice, PHN_DEVICE_INFO* pDeviceInfo, PHN_ERROR* pError);

    // Asks the handset to dial the provisioning service. PHN_ERROR_NOT_AUTOMATIC, and nothing sent, if bAutomatic is 0.
    bool Activate(HANDLE hDevice, PHN_ACTIVATION_DATA* pActivationData, PHN_ERROR* pError);

    // Both values are sent as their low byte.
    bool SetRadio(HANDLE hDevice, uint32_t uRadioState, PHN_ERROR* pError);
    bool SetLock(HANDLE hDevice, uint32_t uLock, const char* pExistingLockCode, PHN_ERROR* pError);

    bool ChangeLockCode(HANDLE hDevice, const char* pExistingLockCode, const char* pNewLockCode, PHN_ERROR* pError);

    bool GetParameters(HANDLE hDevice, PHN_PARAMETERS* pParameters, PHN_ERROR* pError);
    bool SetParameters(HANDLE hDevice, const PHN_PARAMETERS* pParameters, PHN_ERROR* pError);
};
