// The common half of the vCard conversion, in both directions.
#include <string_view>

#include "common/ascii_case.h"
#include "log/log.h"
#include "phonebook/phonebook.h"
#include "phonebook/value_limits.h"
#include "phonebook/vcard_reader.h"

namespace {

constexpr CLogSource Log{LOG_CPHONEBOOK};

bool Reject(const char* pszReason)
{
    Log.Error("VCardToNorvik - %s", pszReason);
    return false;
}

bool ReadIDs(const CVCardText& Text, PB_RECORD* pRecord)
{
    uint32_t dwGroupID = 0;
    uint32_t dwRingerID = 0;
    uint32_t dwPictureID = 0;
    if (!ReadNumber(Text, eKeyGroupID, &dwGroupID) || !ReadNumber(Text, eKeyRingerID, &dwRingerID) ||
        !ReadNumber(Text, eKeyPictureID, &dwPictureID))
        return false;
    pRecord->dwGroupID = dwGroupID;
    pRecord->dwRingerID = dwRingerID;
    pRecord->dwPictureIDSet = dwPictureID;
    return true;
}

} // namespace

bool CPhonebook::NorvikToVCard(PHN_CONTACT_RECORD* pContactRecord, const PB_CONTACT* pRecords)
{
    const PB_RECORD& Record = pRecords->rcRecord;
    PB_VCARD_DATA Data;
    Data.strFirstName = Record.wszFirstName.GetText();
    Data.strLastName = Record.wszLastName.GetText();
    Data.dwGroupID = Record.dwGroupID;
    Data.dwPictureID = Record.dwPictureIDGet;
    Data.dwRingerID = Record.dwRingerID;
    FillVCardData(&Data, pRecords);
    if (VCardFormatData(pContactRecord, &Data))
        return true;
    Log.Error("NorvikToVCard - VCardFormatData returned false.");
    return false;
}

bool CPhonebook::VCardToNorvik(PB_CONTACT* pRecord, const PHN_CONTACT_RECORD* pContactRecord)
{
    if (!pContactRecord->pContactData)
        return Reject("pRecord->pContactData is NULL.");
    const CVCardText Text({pContactRecord->pContactData, pContactRecord->uSizeofData});
    std::string_view strValue;
    if (!Text.GetVCardProperty(eKeyBegin, &strValue))
        return Reject("VCARD_BEGIN not found.");
    if (!FitsLimit(eKeyBegin, strValue))
        return false;
    if (FindIgnoringCase(strValue, "VCARD") == std::string_view::npos)
        return Reject("VCARD_VCARD not found.");
    if (!Text.FindProperty(eKeyVersion))
        return Reject("VCARD_VERSION not found.");
    if (!Text.FindProperty(eKeyEnd))
        return Reject("VCARD_END not found.");
    if (!Text.GetVCardProperty(eKeyFullName, &strValue))
        return Reject("VCARD_FN not found.");
    if (!FitsLimit(eKeyFullName, strValue))
        return false;
    const SFullName Name = SplitFullName(strValue);
    pRecord->rcRecord.wszFirstName.SetText(Name.strFirst);
    pRecord->rcRecord.wszLastName.SetText(Name.strRest);
    uint32_t dwDefaultNo = 0;
    if (!ReadNumber(Text, eKeyDefaultNo, &dwDefaultNo))
        return false;
    if (!ComposeNrvContact(pContactRecord->pContactData, pContactRecord->uSizeofData,
                           DefaultNoToType(static_cast<int>(dwDefaultNo)), pRecord))
        return Reject("ComposeNrvContact returned false.");
    return ReadIDs(Text, &pRecord->rcRecord);
}
