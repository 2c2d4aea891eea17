#include "phonebook/speed_dial_phonebook.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "common/byte_reader.h"
#include "log/log.h"
#include "phonebook/value_limits.h"
#include "phonebook/vcard_reader.h"
#include "phonebook/vcard_writer.h"

namespace {

constexpr CLogSource Log{LOG_CPHONEBOOK};

// A vCard line that becomes an entry.
struct SCandidate
{
    size_t uPosition;
    uint32_t dwType;
    std::u16string strValue;
};

// The first line of each key, in the order of the lines. False, logged, if a value is too long.
bool CollectCandidates(const CVCardText& Text, std::vector<SCandidate>* pCandidates)
{
    pCandidates->reserve(kEntryTypeCount);
    for (uint32_t dwType = 0; dwType < kEntryTypeCount; ++dwType) {
        const EVCardKey eKey = kEntryTypes[dwType].eKey;
        std::string_view strValue;
        const std::optional<size_t> uPosition = Text.GetVCardProperty(eKey, &strValue);
        if (!uPosition)
            continue;
        if (!FitsLimit(eKey, strValue))
            return false;
        const std::u16string strWide = ToWide(strValue);
        pCandidates->push_back({*uPosition, dwType, dwType < kNumberTypeCount ? FilterNumber(strWide) : strWide});
    }
    std::ranges::sort(*pCandidates, {}, &SCandidate::uPosition);
    return true;
}

// A candidate without a value leaves its entry zero. False, logged, if the value is too long for an entry.
bool FillEntry(const SCandidate& Candidate, int nDefaultType, PB_NUMBER_ENTRY* pEntry)
{
    if (Candidate.strValue.empty())
        return true;
    if (!pEntry->wszValue.SetWide(Candidate.strValue)) {
        Log.Error("VCardToNorvik - Value of %s is longer than %d UTF-16 units.",
                  kVCardKeys[kEntryTypes[Candidate.dwType].eKey].data(), kValueUnits);
        return false;
    }
    pEntry->dwType = Candidate.dwType;
    pEntry->dwDefault = static_cast<int>(Candidate.dwType) == nDefaultType;
    return true;
}

void SetSpeedDials(std::span<PB_NUMBER_ENTRY> Entries, const std::array<uint32_t, kSpeedDialCount>& SpeedDials)
{
    for (PB_NUMBER_ENTRY& Entry : Entries) {
        const int nPosition = TypeToDefaultNo(Entry.dwType);
        Entry.dwSpeedDial = nPosition > 0 ? SpeedDials[static_cast<size_t>(nPosition) - 1] : 0;
    }
}

// The next whole contact of a reply: its fixed part and all of its entries.
bool ReadContact(CByteReader* pReader, PB_CONTACT* pContact)
{
    PB_RECORD Record;
    if (!pReader->Read(&Record) || !pReader->Holds(Record.dwNumOfEntries, sizeof(PB_NUMBER_ENTRY)))
        return false;
    const size_t uEntries = Record.dwNumOfEntries;
    pContact->pEntries = new PB_NUMBER_ENTRY[uEntries];
    pContact->rcRecord = Record;
    return pReader->ReadBytes(pContact->pEntries, uEntries * sizeof(PB_NUMBER_ENTRY));
}

} // namespace

bool CSpeedDialPhonebook::VCardToNorvik(PB_CONTACT* pRecord, const PHN_CONTACT_RECORD* pContactRecord)
{
    if (!CPhonebook::VCardToNorvik(pRecord, pContactRecord)) {
        Log.Error("VCardToNorvik - CPhonebook::VCardToNorvik returned false.");
        return false;
    }
    const CVCardText Text({pContactRecord->pContactData, pContactRecord->uSizeofData});
    std::string_view strList;
    if (!Text.GetVCardProperty(eKeySpeedDialList, &strList) || strList.empty())
        return true;
    if (!FitsLimit(eKeySpeedDialList, strList))
        return false;
    std::array<uint32_t, kSpeedDialCount> SpeedDials{};
    size_t uCount = 0;
    if (!ReadSpeedDialList(strList, &SpeedDials, &uCount)) {
        Log.Error("VCardToNorvik - Digit is not number.");
        return false;
    }
    if (uCount != kSpeedDialCount) {
        Log.Error("VCardToNorvik - NBR_OF_DELIMITERS(%d, 0x%X) is not equal to nNbrDelimiters(%d, 0x%X).",
                  kSpeedDialCount, kSpeedDialCount, uCount, uCount);
        return false;
    }
    SetSpeedDials({pRecord->pEntries, pRecord->rcRecord.dwNumOfEntries}, SpeedDials);
    return true;
}

bool CSpeedDialPhonebook::ComposeNrvContact(const char* pText, DWORD dwLength, int nDefaultType, PB_CONTACT* pRecord)
{
    if (!pText || dwLength == 0 || !pRecord)
        return false;
    std::vector<SCandidate> Candidates;
    if (!CollectCandidates(CVCardText({pText, dwLength}), &Candidates) || Candidates.empty())
        return false;
    pRecord->pEntries = new PB_NUMBER_ENTRY[Candidates.size()]();
    pRecord->rcRecord.dwNumOfEntries = static_cast<uint32_t>(Candidates.size());
    for (size_t uEntry = 0; uEntry < Candidates.size(); ++uEntry)
        if (!FillEntry(Candidates[uEntry], nDefaultType, &pRecord->pEntries[uEntry]))
            return false;
    return true;
}

DWORD CSpeedDialPhonebook::ParseRecords(const uint8_t* pData, DWORD dwLength, PB_CONTACT* pRecords, DWORD dwCount)
{
    CByteReader Reader({pData, dwLength});
    DWORD dwParsed = 0;
    while (dwParsed < dwCount && ReadContact(&Reader, &pRecords[dwParsed]))
        ++dwParsed;
    return dwParsed;
}

bool CSpeedDialPhonebook::FillVCardData(PB_VCARD_DATA* pData, const PB_CONTACT* pRecord)
{
    const std::span<const PB_NUMBER_ENTRY> Entries(pRecord->pEntries, pRecord->rcRecord.dwNumOfEntries);
    pData->strEntryLines = MakeEntryLines(Entries);
    const int nDefaultNo = FindDefaultNo(Entries);
    if (nDefaultNo > 0)
        pData->strDefaultNo = std::to_string(nDefaultNo);
    if (!Entries.empty())
        pData->strSpeedDialList = MakeSpeedDialList(Entries);
    return true;
}

bool CSpeedDialPhonebook::VCardFormatData(PHN_CONTACT_RECORD* pContactRecord, PB_VCARD_DATA* pData)
{
    const std::string strText = FormatVCard(*pData);
    FreeVCardData(pData);
    if (strText.size() > kMaxVCardText || strText.size() >= pContactRecord->uSizeofData)
        return false;
    std::memcpy(pContactRecord->pContactData, strText.c_str(), strText.size() + 1);
    return true;
}

void CSpeedDialPhonebook::FreeEntries(PB_CONTACT* pRecords, DWORD dwCount)
{
    for (DWORD dwRecord = 0; dwRecord < dwCount; ++dwRecord)
        delete[] pRecords[dwRecord].pEntries;
}

PB_RET_INFO* CSpeedDialPhonebook::AllocRetInfo(DWORD* pdwSize)
{
    *pdwSize = sizeof(PB_RET_INFO);
    return new (std::nothrow) PB_RET_INFO();
}

void CSpeedDialPhonebook::FreeRetInfo(PB_RET_INFO* pRetInfo)
{
    delete pRetInfo;
}

PB_CONTACT* CSpeedDialPhonebook::AllocRecords(DWORD dwCount, DWORD* pdwElementSize)
{
    *pdwElementSize = sizeof(PB_CONTACT);
    return new PB_CONTACT[dwCount]();
}

PB_PARAM* CSpeedDialPhonebook::AllocParam(DWORD* pdwSize, DWORD* pdwEntrySize)
{
    *pdwSize = sizeof(PB_PARAM);
    *pdwEntrySize = sizeof(PB_NUMBER_ENTRY);
    return new (std::nothrow) PB_PARAM();
}

void CSpeedDialPhonebook::FreeParam(PB_PARAM* pParam)
{
    delete pParam;
}

void CSpeedDialPhonebook::FreeVCardData(PB_VCARD_DATA* pData)
{
    *pData = {};
}
