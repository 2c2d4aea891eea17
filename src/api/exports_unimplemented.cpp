// Thirteen names of one function. The caller removes the arguments, so one body serves every argument list.
#include "phnnrv.h"

PHN_ERROR PHN_CheckForUpgrade() noexcept
{
    return PHN_ERROR_NOT_SUPPORTED;
}

#define PHN_UNIMPLEMENTED __attribute__((alias("PHN_CheckForUpgrade")))

PHN_UNIMPLEMENTED PHN_ERROR PHN_GetLocationInfo() noexcept;
PHN_UNIMPLEMENTED PHN_ERROR PHN_GetMassStorageMode() noexcept;
PHN_UNIMPLEMENTED PHN_ERROR PHN_GetNDISMode() noexcept;
PHN_UNIMPLEMENTED PHN_ERROR PHN_PlayRingerID() noexcept;
PHN_UNIMPLEMENTED PHN_ERROR PHN_SetCallbackExtended() noexcept;
PHN_UNIMPLEMENTED PHN_ERROR PHN_SetFieldTest() noexcept;
PHN_UNIMPLEMENTED PHN_ERROR PHN_SetLocationMode() noexcept;
PHN_UNIMPLEMENTED PHN_ERROR PHN_SetMassStorageMode() noexcept;
PHN_UNIMPLEMENTED PHN_ERROR PHN_SetNDISMode() noexcept;
PHN_UNIMPLEMENTED PHN_ERROR PHN_SetPower() noexcept;
PHN_UNIMPLEMENTED PHN_ERROR PHN_SetPowerState() noexcept;
PHN_UNIMPLEMENTED PHN_ERROR PHN_Upgrade() noexcept;
