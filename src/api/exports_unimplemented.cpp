// Thirteen names of one function. The caller removes the arguments, so one body serves every argument list.
#include "phnnrv.h"

PHN_ERROR PHN_CheckForUpgrade()
{
    return PHN_ERROR_NOT_SUPPORTED;
}

#define PHN_UNIMPLEMENTED __attribute__((alias("PHN_CheckForUpgrade"), nothrow))

PHN_UNIMPLEMENTED PHN_ERROR PHN_GetLocationInfo();
PHN_UNIMPLEMENTED PHN_ERROR PHN_GetMassStorageMode();
PHN_UNIMPLEMENTED PHN_ERROR PHN_GetNDISMode();
PHN_UNIMPLEMENTED PHN_ERROR PHN_PlayRingerID();
PHN_UNIMPLEMENTED PHN_ERROR PHN_SetCallbackExtended();
PHN_UNIMPLEMENTED PHN_ERROR PHN_SetFieldTest();
PHN_UNIMPLEMENTED PHN_ERROR PHN_SetLocationMode();
PHN_UNIMPLEMENTED PHN_ERROR PHN_SetMassStorageMode();
PHN_UNIMPLEMENTED PHN_ERROR PHN_SetNDISMode();
PHN_UNIMPLEMENTED PHN_ERROR PHN_SetPower();
PHN_UNIMPLEMENTED PHN_ERROR PHN_SetPowerState();
PHN_UNIMPLEMENTED PHN_ERROR PHN_Upgrade();
