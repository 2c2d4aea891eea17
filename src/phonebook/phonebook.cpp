#include "phonebook/phonebook.h"

#include <algorithm>
#include <memory>

#include "common/byte_writer.h"
#include "link/exchange.h"
#include "link/failure.h"
#include "phonebook/vcard_reader.h"
#include "phonebook/vcard_writer.h"

namespace {

constexpr CLogSource Log{LOG_CPHONEBOOK};

constexpr ReplySpec kContacts{sizeof(PB_RET_INFO_CNT_RES), "PB_RET_INFO_CNT_RES("};
constexpr ReplySpec kChanged{sizeof(PB_RET_RES), "PB_RET_RES(", "rcPBRetRes.wStatus"};
constexpr ReplySpec kName{sizeof(PB_RET_NAME_RES), "PB_RET_NAME_RES("};

constexpr ExchangeSpec kGetFieldSizes{"GetFieldSizes", kCommandFieldSizes, {50, "PB_RET_FIELDSIZE_RES("}};
constexpr ExchangeSpec kGetContact{"GetContact", kCommandGetContact, kContacts, "prcPBRetInfo->dwResult"};
constexpr ExchangeSpec kSetContact{"SetContact", kCommandSetContact, kChanged, "rcPBRetRes->dwResult"};
constexpr ExchangeSpec kDeleteContact{"DeleteContact", kCommandDeleteContact, kChanged, "rcPBRetRes.dwResult"};
constexpr ExchangeSpec kDeleteAllContacts{"DeleteAllContacts", kCommandDeleteAllContacts, kChanged,
                                          "rcPBRetRes.dwResult", kDeleteAllTimeout};
constexpr ExchangeSpec kGetName{"GetName", kCommandVaries, kName, "rcPBRetName->dwResult"};

constexpr DWORD kDeletePause = 40; // milliseconds that the handset is left alone before a deletion

struct CRetInfoDeleter
{
    CPhonebook* m_pPhonebook;
    void operator()(PB_RET_INFO* pRetInfo) const { m_pPhonebook->FreeRetInfo(pRetInfo); }
};

struct CRecordsDeleter
{
    CPhonebook* m_pPhonebook;
    DWORD m_dwCount;
    void operator()(PB_CONTACT* pRecords) const
    {
        m_pPhonebook->FreeEntries(pRecords, m_dwCount);
        delete[] pRecords;
    }
};

struct CParamDeleter
{
    CPhonebook* m_pPhonebook;
    void operator()(PB_PARAM* pParam) const
    {
        m_pPhonebook->FreeEntries(&pParam->rcContact, 1);
        m_pPhonebook->FreeParam(pParam);
    }
};

} // namespace

bool CPhonebook::GetFieldSizes(HANDLE hDevice, PHN_FIELD_SIZES* pFieldSizes, PHN_ERROR* pError)
{
    Log.Comment("GetFieldSizes being executed.");
    CExchange Exchange(Log, kGetFieldSizes);
    if (!Exchange.Run(hDevice, {}, pError))
        return false;
    const auto Sizes = Exchange.GetReply().Load<PB_RET_FIELDSIZE_RES>();
    pFieldSizes->wFieldSize1 = static_cast<uint16_t>(Sizes.adwFieldSizes[0]);
    pFieldSizes->wFieldSize2 = static_cast<uint16_t>(Sizes.adwFieldSizes[1]);
    pFieldSizes->wFieldSize3 = static_cast<uint16_t>(Sizes.adwFieldSizes[2]);
    pFieldSizes->wFieldSize4 = static_cast<uint16_t>(Sizes.adwFieldSizes[3]);
    pFieldSizes->wFieldSize5 = static_cast<uint16_t>(Sizes.adwFieldSizes[4]);
    pFieldSizes->wFieldSize6 = static_cast<uint16_t>(Sizes.adwFieldSizes[5]);
    pFieldSizes->wFieldSize7 = static_cast<uint16_t>(Sizes.adwFieldSizes[6]);
    pFieldSizes->dwFieldSize8 = Sizes.adwFieldSizes[7];
    pFieldSizes->dwFieldSize9 = Sizes.adwFieldSizes[8];
    pFieldSizes->dwFieldSize10 = Sizes.adwFieldSizes[9];
    pFieldSizes->dwFieldSize11 = Sizes.adwFieldSizes[10];
    pFieldSizes->uSize = sizeof *pFieldSizes;
    return true;
}

bool CPhonebook::GetContact(HANDLE hDevice, DWORD dwIndex, PHN_CONTACT_RECORD* pRecord, PHN_ERROR* pError)
{
    Log.Comment("GetContact being executed.");
    DWORD dwRecordID = 0;
    const bool bMapped = IndexToRecordID(dwIndex, &dwRecordID);
    CExchange Exchange(Log, kGetContact);
    if (!Exchange.Send(hDevice, AsBytes(dwRecordID), pError))
        return false;
    DWORD dwSize = 0;
    const std::unique_ptr<PB_RET_INFO, CRetInfoDeleter> pRetInfo(AllocRetInfo(&dwSize), {this});
    if (!pRetInfo)
        return Fail(Log, pError, PHN_ERROR_FAILED, "GetContact - prcPBRetInfo is NULL.");
    if (!Exchange.Check(pError))
        return false;
    const auto Info = Exchange.GetReply().Load<PB_RET_INFO_CNT_RES>();
    pRetInfo->dwResult = Info.dwResult;
    pRetInfo->dwNumOfRecs = Info.dwNumOfRecs;
    if (!UnpackContact(pRecord, Exchange.GetReply().GetData(sizeof Info), pRetInfo.get(), pError))
        return false;
    if (!bMapped)
        AddIndexMapping(dwIndex, dwRecordID);
    pRecord->uSize = sizeof *pRecord;
    return true;
}

// The first of the reply's records becomes the host's text.
bool CPhonebook::UnpackContact(PHN_CONTACT_RECORD* pRecord, std::span<const uint8_t> Data, PB_RET_INFO* pRetInfo,
                               PHN_ERROR* pError)
{
    if (pRetInfo->dwNumOfRecs == 0)
        return Fail(Log, pError, PHN_ERROR_NOT_FOUND, "GetContact - prcPBRetInfo->dwNumOfRecs = %d(0x%X).",
                    pRetInfo->dwNumOfRecs, pRetInfo->dwNumOfRecs);
    const DWORD dwLength = static_cast<DWORD>(Data.size());
    // The handset's count is no reason to hold more records than its reply has room for.
    const DWORD dwCount = std::min<DWORD>(pRetInfo->dwNumOfRecs, dwLength / DWORD{sizeof(PB_RECORD)});
    DWORD dwElementSize = 0;
    const std::unique_ptr<PB_CONTACT[], CRecordsDeleter> pRecords(AllocRecords(dwCount, &dwElementSize),
                                                                  {this, dwCount});
    pRetInfo->pRecords = pRecords.get();
    if (ParseRecords(Data.data(), dwLength, pRetInfo->pRecords, dwCount) == 0)
        return Fail(Log, pError, PHN_ERROR_FAILED, "GetContact - The first of %d(0x%X) records is not whole.",
                    pRetInfo->dwNumOfRecs, pRetInfo->dwNumOfRecs);
    if (!NorvikToVCard(pRecord, pRetInfo->pRecords))
        return Fail(Log, pError, PHN_ERROR_FAILED, "GetContact - NorvikToVCard returned false.");
    return true;
}

bool CPhonebook::SetContact(HANDLE hDevice, DWORD dwIndex, PHN_CONTACT_RECORD* pRecord, PHN_ERROR* pError)
{
    Log.Comment("SetContact being executed.");
    DWORD dwRecordID = 0;
    const bool bMapped = IndexToRecordID(dwIndex, &dwRecordID);
    DWORD dwSize = 0;
    DWORD dwEntrySize = 0;
    const std::unique_ptr<PB_PARAM, CParamDeleter> pParam(AllocParam(&dwSize, &dwEntrySize), {this});
    if (!pParam)
        return Fail(Log, pError, PHN_ERROR_FAILED, "SetContact - prcPBParam is NULL.");
    PB_CONTACT& Contact = pParam->rcContact;
    Contact.rcRecord.dwRecordID = dwRecordID;
    if (!VCardToNorvik(&Contact, pRecord))
        return Fail(Log, pError, PHN_ERROR_INVALID_PARAMETER, "SetContact - VCardToNorvik returned false.");
    CByteWriter Request;
    Request.Put(Contact.rcRecord).PutBytes(Contact.pEntries, size_t{Contact.rcRecord.dwNumOfEntries} * dwEntrySize);
    CExchange Exchange(Log, kSetContact);
    if (!Exchange.Run(hDevice, Request.GetBytes(), pError))
        return false;
    if (bMapped)
        RemoveIndexMapping(dwIndex);
    AddIndexMapping(dwIndex, Exchange.GetReply().Load<PB_RET_RES>().dwNumber);
    pRecord->uSize = sizeof *pRecord;
    return true;
}

bool CPhonebook::DeleteContact(HANDLE hDevice, DWORD dwIndex, PHN_ERROR* pError)
{
    Log.Comment("DeleteContact being executed.");
    DWORD dwRecordID = 0;
    const bool bMapped = IndexToRecordID(dwIndex, &dwRecordID);
    Sleep(kDeletePause);
    CExchange Exchange(Log, kDeleteContact);
    const bool bDeleted = Exchange.Run(hDevice, AsBytes(dwRecordID), pError);
    // No status maps to this code, only the result of a handset that has no such record.
    if (bMapped && (bDeleted || *pError == PHN_ERROR_INVALID_PARAMETER))
        RemoveIndexMapping(dwIndex);
    return bDeleted;
}

bool CPhonebook::DeleteAllContacts(HANDLE hDevice, PHN_ERROR* pError)
{
    Log.Comment("DeleteAllContacts being executed.");
    CExchange Exchange(Log, kDeleteAllContacts);
    if (!Exchange.Run(hDevice, {}, pError))
        return false;
    RemoveAllMappings();
    return true;
}

bool CPhonebook::GetPictureID(HANDLE hDevice, DWORD dwIndex, PHN_PICTURE_ID* pPictureID, PHN_ERROR* pError)
{
    Log.Comment("GetPictureID being executed.");
    return GetDisplayName(hDevice, kCommandPictureID, dwIndex, pPictureID, pError);
}

bool CPhonebook::GetRingerID(HANDLE hDevice, DWORD dwIndex, PHN_RINGER_ID* pRingTone, PHN_ERROR* pError)
{
    Log.Comment("GetRingerID being executed.");
    return GetDisplayName(hDevice, kCommandRingerID, dwIndex, pRingTone, pError);
}

bool CPhonebook::GetGroup(HANDLE hDevice, DWORD dwIndex, PHN_GROUP* pGroup, PHN_ERROR* pError)
{
    Log.Comment("GetGroup being executed.");
    return GetDisplayName(hDevice, kCommandGroup, dwIndex, pGroup, pError);
}

// The host's three records of names are one layout.
bool CPhonebook::GetDisplayName(HANDLE hDevice, WORD wCommand, DWORD dwID, PHN_PICTURE_ID* pName, PHN_ERROR* pError)
{
    const bool bNamed = GetName(hDevice, wCommand, dwID, pName->szName, sizeof pName->szName, pError);
    pName->uSize = sizeof *pName;
    pName->dwID = dwID;
    return bNamed;
}

bool CPhonebook::GetName(HANDLE hDevice, WORD wCommand, DWORD dwID, char* pszName, DWORD cbName, PHN_ERROR* pError)
{
    CByteWriter Parameters;
    Parameters.Put<uint32_t>(dwID);
    if (wCommand == kCommandPictureID)
        Parameters.Put<uint32_t>(0);
    CExchange Exchange(Log, kGetName, wCommand);
    if (!Exchange.Run(hDevice, Parameters.GetBytes(), pError))
        return false;
    Exchange.GetReply().Load<PB_RET_NAME_RES>().wszName.CopyText(pszName, cbName);
    return true;
}
