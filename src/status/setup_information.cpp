#include "status/setup_information.h"

#include "common/byte_writer.h"
#include "link/exchange.h"
#include "status/device_information.h"
#include "status/setup_records.h"

namespace {

constexpr CLogSource Log{LOG_SETUPINFORMATION};

constexpr ReplySpec kHeader{sizeof(DEV_RX_HEADER), "DEV_RX_HEADER ("};
constexpr ReplySpec kParameters{12, "DEV_RX_HEADER + PHONE_PARAMETERS("};

constexpr ExchangeSpec kGetDeviceInfo{"GetDeviceInfo", kCommandDeviceInfo, kHeader};
constexpr ExchangeSpec kActivate{"Activate", kCommandActivate};
constexpr ExchangeSpec kSetRadio{"SetRadio", kCommandRadioPower};
constexpr ExchangeSpec kSetLock{"SetLock", kCommandLock, kHeader};
constexpr ExchangeSpec kChangeLockCode{"ChangeLockCode", kCommandChangeLockCode, kHeader};
constexpr ExchangeSpec kGetParameters{"GetParameters", kCommandGetParameters, kParameters};
constexpr ExchangeSpec kSetParameters{"SetParameters", kCommandSetParameters, kHeader};

// The number that the handset dials to be provisioned.
constexpr char16_t kProvisioningNumber[] = u"*48015";

constexpr size_t kLockCode = 4;

} // namespace

bool CSetupInformation::GetDeviceInfo(HANDLE hDevice, PHN_DEVICE_INFO* pDeviceInfo, PHN_ERROR* pError)
{
    Log.Comment("GetDeviceInfo being executed.");
    CExchange Exchange(Log, kGetDeviceInfo);
    if (!Exchange.Run(hDevice, {}, pError))
        return false;
    ConvertDeviceInfo(Exchange.GetReply().Load<DEVICE_INFO, sizeof(DEV_RX_HEADER)>(), pDeviceInfo);
    return true;
}

bool CSetupInformation::Activate(HANDLE hDevice, PHN_ACTIVATION_DATA* pActivationData, PHN_ERROR* pError)
{
    Log.Comment("Activate being executed.");
    if (!pActivationData->bAutomatic) {
        Log.Error("Activate - pActivationData->bAutomatic is false.");
        *pError = PHN_ERROR_NOT_AUTOMATIC;
        return false;
    }
    ACTIVATION_REQUEST Request{};
    Request.bAutomatic = pActivationData->bAutomatic;
    Request.wszDialString.SetWide(kProvisioningNumber);
    CExchange Exchange(Log, kActivate);
    if (!Exchange.Run(hDevice, AsBytes(Request), pError))
        return false;
    pActivationData->uSize = sizeof *pActivationData;
    return true;
}

bool CSetupInformation::SetRadio(HANDLE hDevice, uint32_t uRadioState, PHN_ERROR* pError)
{
    Log.Comment("SetRadio being executed.");
    return CExchange(Log, kSetRadio).Run(hDevice, AsBytes(static_cast<uint8_t>(uRadioState)), pError);
}

bool CSetupInformation::SetLock(HANDLE hDevice, uint32_t uLock, const char* pExistingLockCode, PHN_ERROR* pError)
{
    Log.Comment("SetLock being executed.");
    CByteWriter Request;
    Request.Put(static_cast<uint8_t>(uLock)).PutBytes(pExistingLockCode, kLockCode);
    return CExchange(Log, kSetLock).Run(hDevice, Request.GetBytes(), pError);
}

bool CSetupInformation::ChangeLockCode(HANDLE hDevice, const char* pExistingLockCode, const char* pNewLockCode,
                                       PHN_ERROR* pError)
{
    Log.Comment("ChangeLockCode being executed.");
    CByteWriter Request;
    Request.PutBytes(pExistingLockCode, kLockCode).PutBytes(pNewLockCode, kLockCode);
    return CExchange(Log, kChangeLockCode).Run(hDevice, Request.GetBytes(), pError);
}

bool CSetupInformation::GetParameters(HANDLE hDevice, PHN_PARAMETERS* pParameters, PHN_ERROR* pError)
{
    Log.Comment("GetParameters being executed.");
    CExchange Exchange(Log, kGetParameters);
    if (!Exchange.Run(hDevice, {}, pError))
        return false;
    const auto Parameters = Exchange.GetReply().Load<PHONE_PARAMETERS, sizeof(DEV_RX_HEADER)>();
    pParameters->uParameter1 = Parameters.byParameter1;
    pParameters->uParameter2 = Parameters.byParameter2;
    pParameters->wParameter3 = Parameters.wParameter3;
    pParameters->uSize = sizeof *pParameters;
    return true;
}

bool CSetupInformation::SetParameters(HANDLE hDevice, const PHN_PARAMETERS* pParameters, PHN_ERROR* pError)
{
    Log.Comment("SetParameters being executed.");
    PHONE_PARAMETERS Parameters{};
    Parameters.byParameter1 = static_cast<uint8_t>(pParameters->uParameter1);
    Parameters.byParameter2 = static_cast<uint8_t>(pParameters->uParameter2);
    Parameters.wParameter3 = pParameters->wParameter3;
    return CExchange(Log, kSetParameters).Run(hDevice, AsBytes(Parameters), pError);
}
