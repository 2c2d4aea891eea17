// The service object that reads the handset's live status: battery, network and data connection. Each method is one
// exchange, works on its arguments only and may run on any host thread. On failure the host record stays as it was.
#pragma once

#include <windows.h>

#include "phnnrv.h"

class CConnectionStatus
{
public:
    CConnectionStatus() = default;
    virtual ~CConnectionStatus() = default;
    CConnectionStatus(const CConnectionStatus&) = delete;
    CConnectionStatus& operator=(const CConnectionStatus&) = delete;

    bool GetBatteryInfo(HANDLE hDevice, PHN_BATTERY_INFO* pBatteryInfo, PHN_ERROR* pError);
    bool GetNetworkInfo(HANDLE hDevice, PHN_NETWORK_INFO* pNetworkInfo, PHN_ERROR* pError);
    bool GetConnectionInfo(HANDLE hDevice, PHN_CONNECTION_INFO* pConnectionInfo, PHN_ERROR* pError);
};
