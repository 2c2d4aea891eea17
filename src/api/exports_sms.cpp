// Short messages.
#include "api/export_frame.h"
#include "sms/sms.h"

namespace {

bool IsMessageBox(int32_t eType)
{
    return eType >= PHN_MESSAGE_BOX_FIRST && eType <= PHN_MESSAGE_BOX_LAST;
}

// Reading a message: the data before the size; then the caller's whole buffer is cleared.
PHN_ERROR PrepareRead(CExportFrame& Frame, const PHN_SMS_MESSAGE* pMessage)
{
    if (!pMessage->pIS637Data || !pMessage->uSizeofData)
        return Frame.Fail(PHN_ERROR_INVALID_PARAMETER, "pMessage->pIS637Data is NULL or pMessage->uSizeofData is 0.");
    if (const PHN_ERROR weError = Frame.CheckSize("pMessage", pMessage, "PHN_SMS_MESSAGE"))
        return weError;
    std::memset(pMessage->pIS637Data, 0, pMessage->uSizeofData);
    return PHN_ERROR_NONE;
}

// Sending and saving leave the data to the service.
PHN_ERROR CheckWrite(CExportFrame& Frame, const PHN_SMS_MESSAGE* pMessage)
{
    if (!pMessage)
        return Frame.Null("pMessage");
    if (const PHN_ERROR weError = Frame.CheckSize("pMessage", pMessage, "PHN_SMS_MESSAGE"))
        return weError;
    return PHN_ERROR_NONE;
}

} // namespace

uint32_t PHN_GetMessageCount(int32_t eType) noexcept
{
    return ExportCount("PHN_GetMessageCount", [=](CExportFrame& Frame, uint32_t* puCount) -> PHN_ERROR {
        if (!IsMessageBox(eType))
            return Frame.OutOfRange("eType is out of range. eType", eType);
        return Frame.Count(kSMS, "GetMessageCount", &CSMS::GetMessageCount, eType, puCount);
    });
}

PHN_ERROR PHN_SendMessage(PHN_SMS_MESSAGE* pMessage) noexcept
{
    return Export("PHN_SendMessage", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (const PHN_ERROR weError = CheckWrite(Frame, pMessage))
            return weError;
        return Frame.Call(kSMS, "SendMessage", &CSMS::SendMessage, pMessage);
    });
}

PHN_ERROR PHN_GetFirstMessage(int32_t eType, PHN_SMS_MESSAGE* pMessage) noexcept
{
    return Export("PHN_GetFirstMessage", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (!pMessage || !IsMessageBox(eType))
            return Frame.OutOfRange("pMessage is NULL or eType is out of range. eType", eType);
        if (const PHN_ERROR weError = PrepareRead(Frame, pMessage))
            return weError;
        return Frame.Call(kSMS, "GetFirstMessage", &CSMS::GetFirstMessage, eType, pMessage);
    });
}

PHN_ERROR PHN_GetNextMessage(PHN_SMS_MESSAGE* pMessage) noexcept
{
    return Export("PHN_GetNextMessage", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (!pMessage)
            return Frame.Null("pMessage");
        if (const PHN_ERROR weError = PrepareRead(Frame, pMessage))
            return weError;
        return Frame.Call(kSMS, "GetNextMessage", &CSMS::GetNextMessage, pMessage);
    });
}

PHN_ERROR PHN_SaveMessage(PHN_SMS_MESSAGE* pMessage) noexcept
{
    return Export("PHN_SaveMessage", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (const PHN_ERROR weError = CheckWrite(Frame, pMessage))
            return weError;
        return Frame.Call(kSMS, "SaveMessage", &CSMS::SaveMessage, pMessage);
    });
}

PHN_ERROR PHN_DeleteMessage(uint32_t uIndex) noexcept
{
    return Export("PHN_DeleteMessage",
                  [=](CExportFrame& Frame) { return Frame.Call(kSMS, "DeleteMessage", &CSMS::DeleteMessage, uIndex); });
}

PHN_ERROR PHN_DeleteAllMessages(int32_t eType) noexcept
{
    return Export("PHN_DeleteAllMessages", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (!IsMessageBox(eType))
            return Frame.OutOfRange("eType is out of range. eType", eType);
        return Frame.Call(kSMS, "DeleteAllMessages", &CSMS::DeleteAllMessages, eType);
    });
}

PHN_ERROR PHN_SetMessageStatus(uint32_t uIndex, uint32_t uRead) noexcept
{
    return Export("PHN_SetMessageStatus", [=](CExportFrame& Frame) {
        return Frame.Call(kSMS, "SetMessageStatus", &CSMS::SetMessageStatus, uIndex, uRead);
    });
}
