// The phonebook service: reads, writes and deletes the handset's contacts, one exchange each, and keeps the map from
// the host's indexes to the handset's record ids. CPhonebook holds the operations; what depends on the layout of the
// handset's records is virtual, in a fixed order of slots, and stands in CSpeedDialPhonebook (speed_dial_phonebook.h).
// All methods may run on any host threads at once.
#pragma once

#include <cstdint>
#include <span>

#include <windows.h>

#include "phnnrv.h"
#include "phonebook/contact_records.h"
#include "phonebook/index_map.h"

class CPhonebook : protected CIndexMap
{
public:
    CPhonebook() = default;
    virtual ~CPhonebook() = default;
    CPhonebook(const CPhonebook&) = delete;
    CPhonebook& operator=(const CPhonebook&) = delete;

    // The operations. On false, *pError says why; the host's record may be partly filled.
    bool GetFieldSizes(HANDLE hDevice, PHN_FIELD_SIZES* pFieldSizes, PHN_ERROR* pError);
    bool GetContact(HANDLE hDevice, DWORD dwIndex, PHN_CONTACT_RECORD* pRecord, PHN_ERROR* pError);
    bool SetContact(HANDLE hDevice, DWORD dwIndex, PHN_CONTACT_RECORD* pRecord, PHN_ERROR* pError);
    bool DeleteContact(HANDLE hDevice, DWORD dwIndex, PHN_ERROR* pError);
    bool DeleteAllContacts(HANDLE hDevice, PHN_ERROR* pError);

    // Display names, by the handset's own ids. uSize and dwID are set whatever the outcome.
    bool GetPictureID(HANDLE hDevice, DWORD dwIndex, PHN_PICTURE_ID* pPictureID, PHN_ERROR* pError);
    bool GetRingerID(HANDLE hDevice, DWORD dwIndex, PHN_RINGER_ID* pRingTone, PHN_ERROR* pError);
    bool GetGroup(HANDLE hDevice, DWORD dwIndex, PHN_GROUP* pGroup, PHN_ERROR* pError);

    // The name behind one of the three commands, without a terminator; a name that does not fit is cut.
    bool GetName(HANDLE hDevice, WORD wCommand, DWORD dwID, char* pszName, DWORD cbName, PHN_ERROR* pError);

    // Writes the first record as vCard text into the caller's buffer. False, logged, if the text does not fit.
    bool NorvikToVCard(PHN_CONTACT_RECORD* pContactRecord, const PB_CONTACT* pRecords);

    // Fills a record, zeroed but for its id, from vCard text. False, logged, if the text is rejected; the record is
    // partly filled then. Its entries are the caller's, for FreeEntries.
    virtual bool VCardToNorvik(PB_CONTACT* pRecord, const PHN_CONTACT_RECORD* pContactRecord);

    // Builds the record's entries from the lines of a vCard. nDefaultType is the entry type of the default number, -1
    // for none. False if there is nothing to build from, or a value does not fit its entry.
    virtual bool ComposeNrvContact(const char* pText, DWORD dwLength, int nDefaultType, PB_CONTACT* pRecord) = 0;

    // Unpacks at most dwCount contacts into zeroed records and returns how many were whole. The first that is not ends
    // it and stays zero.
    virtual DWORD ParseRecords(const uint8_t* pData, DWORD dwLength, PB_CONTACT* pRecords, DWORD dwCount) = 0;
    virtual void FreeEntries(PB_CONTACT* pRecords, DWORD dwCount) = 0;

    // Zeroed memory for a read. AllocRetInfo returns null when memory is short, AllocRecords throws; the records are an
    // array for delete[].
    virtual PB_RET_INFO* AllocRetInfo(DWORD* pdwSize) = 0;
    virtual void FreeRetInfo(PB_RET_INFO* pRetInfo) = 0;
    virtual PB_CONTACT* AllocRecords(DWORD dwCount, DWORD* pdwElementSize) = 0;

    // Zeroed memory for a write; null when memory is short.
    virtual PB_PARAM* AllocParam(DWORD* pdwSize, DWORD* pdwEntrySize) = 0;
    virtual void FreeParam(PB_PARAM* pParam) = 0;

    // The two steps of NorvikToVCard. VCardFormatData frees the data, whatever the outcome.
    virtual bool FillVCardData(PB_VCARD_DATA* pData, const PB_CONTACT* pRecord) = 0;
    virtual bool VCardFormatData(PHN_CONTACT_RECORD* pContactRecord, PB_VCARD_DATA* pData) = 0;
    virtual void FreeVCardData(PB_VCARD_DATA* pData) = 0;

private:
    bool UnpackContact(PHN_CONTACT_RECORD* pRecord, std::span<const uint8_t> Data, PB_RET_INFO* pRetInfo,
                       PHN_ERROR* pError);
    bool GetDisplayName(HANDLE hDevice, WORD wCommand, DWORD dwID, PHN_PICTURE_ID* pName, PHN_ERROR* pError);
};
