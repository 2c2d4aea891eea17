#include "status/connection_status.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string_view>

#include "link/exchange.h"
#include "status/connection_records.h"

namespace {

constexpr CLogSource Log{LOG_CONNECTIONSTATUS};

constexpr ExchangeSpec kGetBatteryInfo{"GetBatteryInfo", kCommandBatteryInfo, {10, "DEV_RX_HEADER + BAT_INFO("}};
constexpr ExchangeSpec kGetNetworkInfo{"GetNetworkInfo", kCommandNetworkInfo, {76, "DEV_RX_HEADER + NETWORK_INFO("}};
constexpr ExchangeSpec kGetConnectionInfo{
    "GetConnectionInfo", kCommandConnectionInfo, {27, "DEV_RX_HEADER + CONN_INFO("}};

// The most negative value has no magnitude in 32 bits and stays as it is.
int32_t Magnitude(int32_t nValue)
{
    return nValue < 0 && nValue != std::numeric_limits<int32_t>::min() ? -nValue : nValue;
}

} // namespace

bool CConnectionStatus::GetBatteryInfo(HANDLE hDevice, PHN_BATTERY_INFO* pBatteryInfo, PHN_ERROR* pError)
{
    Log.Comment("GetBatteryInfo being executed.");
    CExchange Exchange(Log, kGetBatteryInfo);
    if (!Exchange.Run(hDevice, {}, pError))
        return false;
    const auto Battery = Exchange.GetReply().Load<BAT_INFO, sizeof(DEV_RX_HEADER)>();
    pBatteryInfo->uBattery1 = Battery.byBattery1;
    pBatteryInfo->uBattery2 = Battery.byBattery2;
    pBatteryInfo->uSize = sizeof *pBatteryInfo;
    return true;
}

bool CConnectionStatus::GetNetworkInfo(HANDLE hDevice, PHN_NETWORK_INFO* pNetworkInfo, PHN_ERROR* pError)
{
    Log.Comment("GetNetworkInfo being executed.");
    CExchange Exchange(Log, kGetNetworkInfo);
    if (!Exchange.Run(hDevice, {}, pError))
        return false;
    const auto Network = Exchange.GetReply().Load<NETWORK_INFO, sizeof(DEV_RX_HEADER)>();
    pNetworkInfo->uNetwork0 = Network.dwNetwork0;
    pNetworkInfo->uNetwork4 = Network.byNetwork4;
    pNetworkInfo->uNetwork5 = Network.byNetwork5;
    pNetworkInfo->wNetwork6 = Network.wNetwork6;
    pNetworkInfo->wNetwork8 = Network.wNetwork8;
    pNetworkInfo->wNetwork10 = Network.wNetwork10;
    pNetworkInfo->wNetwork12 = Network.wNetwork12;
    pNetworkInfo->wNetwork14 = Network.wNetwork14;
    pNetworkInfo->wNetwork16 = Network.wNetwork16;
    pNetworkInfo->wNetwork18 = Network.wNetwork18;
    pNetworkInfo->uNetwork20 = Network.wNetwork20;
    pNetworkInfo->nNetwork22 = Magnitude(Network.nNetwork22);
    static_assert(sizeof pNetworkInfo->szNetwork26 == sizeof Network.szNetwork26);
    const std::string_view strText(Network.szNetwork26, sizeof Network.szNetwork26 - 1); // room for a terminator
    const size_t uLength = std::min(strText.find('\0'), strText.size());
    std::memcpy(pNetworkInfo->szNetwork26, strText.data(), uLength);
    pNetworkInfo->szNetwork26[uLength] = '\0';
    pNetworkInfo->nNetwork60 = Magnitude(Network.nNetwork60);
    pNetworkInfo->uNetwork64 = Network.dwNetwork64;
    pNetworkInfo->uSize = sizeof *pNetworkInfo;
    return true;
}

bool CConnectionStatus::GetConnectionInfo(HANDLE hDevice, PHN_CONNECTION_INFO* pConnectionInfo, PHN_ERROR* pError)
{
    Log.Comment("GetConnectionInfo being executed.");
    CExchange Exchange(Log, kGetConnectionInfo);
    if (!Exchange.Run(hDevice, {}, pError))
        return false;
    const auto Connection = Exchange.GetReply().Load<CONN_INFO, sizeof(DEV_RX_HEADER)>();
    pConnectionInfo->uConnection0 = Connection.dwConnection0;
    pConnectionInfo->uConnection4 = Connection.dwConnection4;
    pConnectionInfo->uConnection8 = Connection.dwConnection8;
    pConnectionInfo->uConnection12 = Connection.dwConnection12;
    pConnectionInfo->uConnection16 = Connection.byConnection16;
    pConnectionInfo->uNetworkError = MapCallEndReason(Connection.byEndReason);
    pConnectionInfo->uConnection18 = Connection.byConnection18;
    pConnectionInfo->uSize = sizeof *pConnectionInfo;
    return true;
}
