// Contacts, and the display names that they refer to.
#include "api/export_frame.h"
#include "phonebook/phonebook.h"

namespace {

// The three records of display names share one layout. The id, their second field, is kept.
PHN_ERROR CheckName(CExportFrame& Frame, PHN_PICTURE_ID* pName, const char* pszArgument, const char* pszRecord)
{
    if (!pName)
        return Frame.Null(pszArgument);
    if (const PHN_ERROR weError = Frame.CheckSize(pszArgument, pName, pszRecord))
        return weError;
    ClearFrom(pName, 8);
    return PHN_ERROR_NONE;
}

} // namespace

PHN_ERROR PHN_GetFieldSizes(PHN_FIELD_SIZES* pFieldSizes) noexcept
{
    return Export("PHN_GetFieldSizes", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (!pFieldSizes)
            return Frame.Null("pFieldSizes");
        if (const PHN_ERROR weError = Frame.CheckSize("pFieldSizes", pFieldSizes, "PHN_FIELD_SIZES"))
            return weError;
        ClearFrom(pFieldSizes, 4);
        return Frame.Call(kPhonebook, "GetFieldSizes", &CPhonebook::GetFieldSizes, pFieldSizes);
    });
}

PHN_ERROR PHN_GetContact(uint32_t uIndex, PHN_CONTACT_RECORD* pRecord) noexcept
{
    return Export("PHN_GetContact", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (!pRecord)
            return Frame.Null("pRecord");
        if (!pRecord->pContactData || !pRecord->uSizeofData)
            return Frame.Fail(PHN_ERROR_INVALID_PARAMETER,
                              "pRecord->pContactData is NULL or pRecord->uSizeofData is 0.");
        if (const PHN_ERROR weError = Frame.CheckSize("pRecord", pRecord, "PHN_CONTACT_RECORD"))
            return weError;
        std::memset(pRecord->pContactData, 0, pRecord->uSizeofData);
        return Frame.Call(kPhonebook, "GetContact", &CPhonebook::GetContact, uIndex, pRecord);
    });
}

// The data pointer is the service's concern.
PHN_ERROR PHN_SetContact(uint32_t uIndex, PHN_CONTACT_RECORD* pRecord) noexcept
{
    return Export("PHN_SetContact", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (!pRecord)
            return Frame.Null("pRecord");
        if (const PHN_ERROR weError = Frame.CheckSize("pRecord", pRecord, "PHN_CONTACT_RECORD"))
            return weError;
        return Frame.Call(kPhonebook, "SetContact", &CPhonebook::SetContact, uIndex, pRecord);
    });
}

PHN_ERROR PHN_DeleteContact(uint32_t uIndex) noexcept
{
    return Export("PHN_DeleteContact", [=](CExportFrame& Frame) {
        return Frame.Call(kPhonebook, "DeleteContact", &CPhonebook::DeleteContact, uIndex);
    });
}

PHN_ERROR PHN_DeleteAllContacts() noexcept
{
    return Export("PHN_DeleteAllContacts", [](CExportFrame& Frame) {
        return Frame.Call(kPhonebook, "DeleteAllContacts", &CPhonebook::DeleteAllContacts);
    });
}

PHN_ERROR PHN_GetPictureID(uint32_t uIndex, PHN_PICTURE_ID* pPictureID) noexcept
{
    return Export("PHN_GetPictureID", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (const PHN_ERROR weError = CheckName(Frame, pPictureID, "pPictureID", "PHN_PICTURE_ID"))
            return weError;
        return Frame.Call(kPhonebook, "GetPictureID", &CPhonebook::GetPictureID, uIndex, pPictureID);
    });
}

PHN_ERROR PHN_GetRingerID(uint32_t uIndex, PHN_RINGER_ID* pRingTone) noexcept
{
    return Export("PHN_GetRingerID", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (const PHN_ERROR weError = CheckName(Frame, pRingTone, "pRingTone", "PHN_RINGER_ID"))
            return weError;
        return Frame.Call(kPhonebook, "GetRingerID", &CPhonebook::GetRingerID, uIndex, pRingTone);
    });
}

PHN_ERROR PHN_GetGroup(uint32_t uIndex, PHN_GROUP* pGroup) noexcept
{
    return Export("PHN_GetGroup", [=](CExportFrame& Frame) -> PHN_ERROR {
        if (const PHN_ERROR weError = CheckName(Frame, pGroup, "pGroup", "PHN_GROUP"))
            return weError;
        return Frame.Call(kPhonebook, "GetGroup", &CPhonebook::GetGroup, uIndex, pGroup);
    });
}
