// Connection, network and battery information, and the texts of network errors.
#include <cstring>

#include "api/export_frame.h"
#include "log/log.h"
#include "status/connection_status.h"
#include "status/network_errors.h"

namespace {

constexpr CLogSource Log{LOG_CCALDERAPP};

} // namespace

PHN_ERROR PHN_GetConnectionInfo(PHN_CONNECTION_INFO* pConnectionInfo) noexcept
{
    return Export("PHN_GetConnectionInfo", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (!pConnectionInfo)
            return Frame.Null("pConnectionInfo");
        if (const PHN_ERROR weError = Frame.CheckSize("pConnectionInfo", pConnectionInfo, "PHN_CONNECTION_INFO"))
            return weError;
        ClearFrom(pConnectionInfo, 4);
        return Frame.Call(kConnectionStatus, "GetConnectionInfo", &CConnectionStatus::GetConnectionInfo,
                          pConnectionInfo);
    });
}

PHN_ERROR PHN_GetNetworkInfo(PHN_NETWORK_INFO* pNetworkInfo) noexcept
{
    return Export("PHN_GetNetworkInfo", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (!pNetworkInfo)
            return Frame.Null("pNetworkInfo");
        if (const PHN_ERROR weError = Frame.CheckSize("pNetworkInfo", pNetworkInfo, "PHN_NETWORK_INFO"))
            return weError;
        ClearFrom(pNetworkInfo, 4);
        return Frame.Call(kConnectionStatus, "GetNetworkInfo", &CConnectionStatus::GetNetworkInfo, pNetworkInfo);
    });
}

PHN_ERROR PHN_GetBatteryInfo(PHN_BATTERY_INFO* pBatteryInfo) noexcept
{
    return Export("PHN_GetBatteryInfo", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (!pBatteryInfo)
            return Frame.Null("pBatteryInfo");
        if (const PHN_ERROR weError = Frame.CheckSize("pBatteryInfo", pBatteryInfo, "PHN_BATTERY_INFO"))
            return weError;
        ClearFrom(pBatteryInfo, 4);
        return Frame.Call(kConnectionStatus, "GetBatteryInfo", &CConnectionStatus::GetBatteryInfo, pBatteryInfo);
    });
}

// The lookup needs no service; hosts rely on 107 before startup all the same.
PHN_ERROR PHN_GetNetworkErrorString(int32_t eError, char* pBuffer, int32_t nBufferSize) noexcept
{
    return Export("PHN_GetNetworkErrorString", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (!pBuffer || nBufferSize <= 0)
            return Frame.Fail(PHN_ERROR_INVALID_PARAMETER,
                              "pBufferm is NULL or nBufferSize is less than or equal to 0.");
        const size_t nCapacity = static_cast<size_t>(nBufferSize);
        std::memset(pBuffer, 0, nCapacity);
        if (const PHN_ERROR weError = Frame.Service(kSetup))
            return weError;
        const std::string_view strText = FindNetworkErrorText(eError);
        if (strText.empty())
            return PHN_ERROR_INVALID_PARAMETER;
        if (nCapacity <= strText.size()) {
            Log.Error("PHN_GetNetworkErrorString - nBufferSize (%d, 0x%X) is less than the length of the target string "
                      "[%s].",
                      nBufferSize, nBufferSize, strText.data());
            return PHN_ERROR_BUFFER_TOO_SMALL;
        }
        std::memcpy(pBuffer, strText.data(), strText.size() + 1);
        return PHN_ERROR_NONE;
    });
}
