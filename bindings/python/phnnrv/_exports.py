"""The argument lists of the library's functions. All of them return an unsigned 32-bit value.

.ci/python_header holds them against phnnrv.h.
"""

from ctypes import CFUNCTYPE, POINTER, c_char_p, c_int32, c_uint32
from typing import Any

from . import _records

CallbackFunction = CFUNCTYPE(None, c_uint32)

PROTOTYPES: dict[str, tuple[Any, ...]] = {
    "PHN_Startup": (),
    "PHN_Shutdown": (),
    "PHN_GetConnectionInfo": (POINTER(_records.PHN_CONNECTION_INFO),),
    "PHN_GetNetworkInfo": (POINTER(_records.PHN_NETWORK_INFO),),
    "PHN_GetBatteryInfo": (POINTER(_records.PHN_BATTERY_INFO),),
    "PHN_GetNetworkErrorString": (c_int32, c_char_p, c_int32),
    "PHN_GetDeviceInfo": (POINTER(_records.PHN_DEVICE_INFO),),
    "PHN_Activate": (POINTER(_records.PHN_ACTIVATION_DATA),),
    "PHN_SetRadioPower": (c_uint32,),
    "PHN_SetLock": (c_uint32, c_char_p),
    "PHN_ChangeLockCode": (c_char_p, c_char_p),
    "PHN_GetParameters": (POINTER(_records.PHN_PARAMETERS),),
    "PHN_SetParameters": (POINTER(_records.PHN_PARAMETERS),),
    "PHN_GetFieldSizes": (POINTER(_records.PHN_FIELD_SIZES),),
    "PHN_GetContact": (c_uint32, POINTER(_records.PHN_CONTACT_RECORD)),
    "PHN_SetContact": (c_uint32, POINTER(_records.PHN_CONTACT_RECORD)),
    "PHN_DeleteContact": (c_uint32,),
    "PHN_DeleteAllContacts": (),
    "PHN_GetPictureID": (c_uint32, POINTER(_records.PHN_PICTURE_ID)),
    "PHN_GetRingerID": (c_uint32, POINTER(_records.PHN_RINGER_ID)),
    "PHN_GetGroup": (c_uint32, POINTER(_records.PHN_GROUP)),
    "PHN_GetEvent": (c_uint32, POINTER(_records.PHN_EVENT_RECORD)),
    "PHN_SetEvent": (c_uint32, POINTER(_records.PHN_EVENT_RECORD)),
    "PHN_DeleteEvent": (c_uint32,),
    "PHN_DeleteAllEvents": (),
    "PHN_GetMessageCount": (c_int32,),
    "PHN_SendMessage": (POINTER(_records.PHN_SMS_MESSAGE),),
    "PHN_SaveMessage": (POINTER(_records.PHN_SMS_MESSAGE),),
    "PHN_GetFirstMessage": (c_int32, POINTER(_records.PHN_SMS_MESSAGE)),
    "PHN_GetNextMessage": (POINTER(_records.PHN_SMS_MESSAGE),),
    "PHN_DeleteMessage": (c_uint32,),
    "PHN_DeleteAllMessages": (c_int32,),
    "PHN_SetMessageStatus": (c_uint32, c_uint32),
    "PHN_GetCallEntryCount": (c_int32,),
    "PHN_GetFirstCallEntry": (c_int32, POINTER(_records.PHN_CALL_ENTRY)),
    "PHN_GetNextCallEntry": (POINTER(_records.PHN_CALL_ENTRY),),
    "PHN_ClearCallEntries": (c_int32,),
    "PHN_SetCallback": (c_int32, CallbackFunction, c_uint32),
    # Without implementation in the library: PHN_ERROR_NOT_SUPPORTED.
    "PHN_CheckForUpgrade": (),
    "PHN_GetLocationInfo": (),
    "PHN_GetMassStorageMode": (),
    "PHN_GetNDISMode": (),
    "PHN_PlayRingerID": (),
    "PHN_SetCallbackExtended": (),
    "PHN_SetFieldTest": (),
    "PHN_SetLocationMode": (),
    "PHN_SetMassStorageMode": (),
    "PHN_SetNDISMode": (),
    "PHN_SetPower": (),
    "PHN_SetPowerState": (),
    "PHN_Upgrade": (),
}
