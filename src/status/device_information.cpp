#include "status/device_information.h"

#include <algorithm>
#include <cstdio>

namespace {

// The 4-bit DTMF code of a digit: 10 stands for 0, the others for themselves.
constexpr uint8_t kDtmfZero = 10;

template <size_t N>
void ConvertDigits(const DEVICE_INFO& DeviceInfo, char (&szNumber)[N])
{
    const size_t uDigits = DeviceInfo.cDigits > 0 ? static_cast<size_t>(DeviceInfo.cDigits) : 0;
    for (size_t i = 0; i < std::min({uDigits, sizeof DeviceInfo.abyDigits, N}); ++i) {
        const uint8_t byDigit = DeviceInfo.abyDigits[i];
        szNumber[i] = static_cast<char>(byDigit == kDtmfZero ? '0' : '0' + byDigit);
    }
}

} // namespace

void ConvertDeviceInfo(const DEVICE_INFO& DeviceInfo, PHN_DEVICE_INFO* pDeviceInfo)
{
    ConvertDigits(DeviceInfo, pDeviceInfo->szNumber);
    std::snprintf(pDeviceInfo->szESN, sizeof pDeviceInfo->szESN, "%03u%08u",
                  static_cast<unsigned>(DeviceInfo.dwESN >> 24), static_cast<unsigned>(DeviceInfo.dwESN & 0xFFFFFF));
    pDeviceInfo->uInfo19 = DeviceInfo.byInfo19;
    DeviceInfo.wszInfo20.CopyText(pDeviceInfo->szInfo20);
    DeviceInfo.wszModel.CopyText(pDeviceInfo->szModel);
    DeviceInfo.wszInfo148.CopyText(pDeviceInfo->szInfo148);
    std::snprintf(pDeviceInfo->szInfo212, sizeof pDeviceInfo->szInfo212, "%X",
                  static_cast<unsigned>(DeviceInfo.dwInfo212));
    DeviceInfo.wszInfo216.CopyText(pDeviceInfo->szInfo216);
    pDeviceInfo->uInfo238 = DeviceInfo.dwInfo238;
    pDeviceInfo->uInfo242 = DeviceInfo.dwInfo242;
    pDeviceInfo->uInfo246 = DeviceInfo.dwInfo246;
    pDeviceInfo->uInfo250 = DeviceInfo.byInfo250;
    pDeviceInfo->uInfo251 = DeviceInfo.byInfo251;
    DeviceInfo.wszInfo253.CopyText(pDeviceInfo->szInfo253);
    pDeviceInfo->uSize = sizeof *pDeviceInfo;
}
