// Registration of host callbacks.
#include "api/export_frame.h"
#include "status/callback.h"

PHN_ERROR PHN_SetCallback(int32_t eCallbackType, PHN_CALLBACK_FUNCTION pCallbackFunction, uint32_t bRemove) noexcept
{
    return Export("PHN_SetCallback", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (!pCallbackFunction || eCallbackType < PHN_CALLBACK_ALL || eCallbackType > PHN_CALLBACK_LAST)
            return Frame.OutOfRange("pCallbackFunction is NULL or eCallbackType is out of range. eCallbackType",
                                    eCallbackType);
        return Frame.Call(kCallback, "SetCallback", [&](CCallback& Service, HANDLE hDevice, PHN_ERROR* pError) {
            return Service.SetCallback(Frame.GetDeviceWindow(), hDevice, eCallbackType, pCallbackFunction, bRemove,
                                       pError);
        });
    });
}
