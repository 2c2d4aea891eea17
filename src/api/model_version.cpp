// Which class of handset answers: by the model string of its device information.
#include <cstring>

#include "api/plugin_instance.h"
#include "common/ascii_case.h"
#include "link/device.h"
#include "log/log.h"
#include "phnnrv.h"
#include "status/setup_information.h"

namespace {

constexpr CLogSource Log{LOG_PHNNRV};

constexpr char kVer1[] = "GetVersion - Phone model is eVer1.";
constexpr char kVer2[] = "GetVersion - Phone model is eVer2.";
constexpr char kVer3[] = "GetVersion - Phone model is eVer3.";
constexpr char kVer4[] = "GetVersion - Phone model is eVer4.";

struct ModelRow
{
    const char* pszModel;
    EModelVersion eVersion;
    const char* pszText;
};

// Searched from the first row.
constexpr ModelRow kModels[]{
    {"R3p", eVer1, kVer1}, {"T5w", eVer1, kVer1}, {"Wq", eVer2, kVer2},   {"H2k", eVer4, kVer4},
    {"N8r", eVer3, kVer3}, {"B4s", eVer3, kVer3}, {"G2hq", eVer3, kVer3},
};

} // namespace

EModelVersion CPluginInstance::GetVersion()
{
    Log.Comment("GetVersion being executed.");
    const auto pSetup = m_pSetupObject.Get();
    const auto pDevice = m_pDeviceObject.Get();
    if (!pSetup || !pDevice) {
        Log.Error("GetVersion - m_pSetupObject or m_pDeviceObject is NULL.");
        Log.Comment(kVer1);
        return eVer1;
    }
    PHN_DEVICE_INFO DeviceInfo{};
    PHN_ERROR weError = 0;
    if (!pSetup->GetDeviceInfo(pDevice->GetMDMHandle(), &DeviceInfo, &weError)) {
        Log.Error("GetVersion - m_pSetupObject->GetDeviceInfo returned false.");
        Log.Comment(kVer1);
        return eVer1;
    }
    const std::string strModel(DeviceInfo.szModel, strnlen(DeviceInfo.szModel, sizeof DeviceInfo.szModel));
    Log.Comment("GetVersion - Model version is %s", strModel.c_str());
    for (const ModelRow& Row : kModels) {
        if (EqualsIgnoringCase(strModel, Row.pszModel)) {
            Log.Comment("%s", Row.pszText);
            return Row.eVersion;
        }
    }
    return eVerNone;
}
