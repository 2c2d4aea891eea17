// The phonebook of the handsets whose entries carry a speed-dial value: the one class of phonebook that is created.
#pragma once

#include "phonebook/phonebook.h"

class CSpeedDialPhonebook : public CPhonebook
{
public:
    bool VCardToNorvik(PB_CONTACT* pRecord, const PHN_CONTACT_RECORD* pContactRecord) override;
    bool ComposeNrvContact(const char* pText, DWORD dwLength, int nDefaultType, PB_CONTACT* pRecord) override;
    DWORD ParseRecords(const uint8_t* pData, DWORD dwLength, PB_CONTACT* pRecords, DWORD dwCount) override;
    void FreeEntries(PB_CONTACT* pRecords, DWORD dwCount) override;
    PB_RET_INFO* AllocRetInfo(DWORD* pdwSize) override;
    void FreeRetInfo(PB_RET_INFO* pRetInfo) override;
    PB_CONTACT* AllocRecords(DWORD dwCount, DWORD* pdwElementSize) override;
    PB_PARAM* AllocParam(DWORD* pdwSize, DWORD* pdwEntrySize) override;
    void FreeParam(PB_PARAM* pParam) override;
    bool FillVCardData(PB_VCARD_DATA* pData, const PB_CONTACT* pRecord) override;
    bool VCardFormatData(PHN_CONTACT_RECORD* pContactRecord, PB_VCARD_DATA* pData) override;
    void FreeVCardData(PB_VCARD_DATA* pData) override;
};
