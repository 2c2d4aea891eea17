// The conversion of the handset's identity record for the host. Used by the setup service, and beside it by tests.
#pragma once

#include "phnnrv.h"
#include "status/setup_records.h"

// Fills the host record, which the caller has cleared, and sets its size. What the handset stores is not trusted:
// counts and texts end at the smaller of the two fields.
void ConvertDeviceInfo(const DEVICE_INFO& DeviceInfo, PHN_DEVICE_INFO* pDeviceInfo);
