// The handset's phonebook records, and the forms they take in memory. Used by the phonebook service and its vCard
// conversion alone. The packed records are the handset's layout; the pointers of the other ones never go on the wire.
#pragma once

#include <string>

#include <windows.h>

#include "common/packed.h"
#include "common/wide_field.h"
#include "link/command.h"

inline constexpr size_t kNameUnits = 36;  // of a first, last or display name
inline constexpr size_t kValueUnits = 52; // of an entry's number or address

// The fixed part of a contact. Its entries follow it.
struct PHN_PACKED PB_RECORD
{
    uint32_t dwRecordID; // the handset's; in a write request, the one asked for
    uint32_t dwGroupID;
    uint32_t dwPictureIDSet; // as written
    uint32_t dwPictureIDGet; // as read
    uint32_t dwRingerID;
    WideField<40> wszText; // neither filled nor read here
    WideField<kNameUnits> wszFirstName;
    WideField<kNameUnits> wszLastName;
    uint8_t abyReserved[216];
    uint32_t dwNumOfEntries;
};
static_assert(sizeof(PB_RECORD) == 464);
PHN_OFFSET(PB_RECORD, dwRecordID, 0);
PHN_OFFSET(PB_RECORD, dwGroupID, 4);
PHN_OFFSET(PB_RECORD, dwPictureIDSet, 8);
PHN_OFFSET(PB_RECORD, dwPictureIDGet, 12);
PHN_OFFSET(PB_RECORD, dwRingerID, 16);
PHN_OFFSET(PB_RECORD, wszText, 20);
PHN_OFFSET(PB_RECORD, wszFirstName, 100);
PHN_OFFSET(PB_RECORD, wszLastName, 172);
PHN_OFFSET(PB_RECORD, abyReserved, 244);
PHN_OFFSET(PB_RECORD, dwNumOfEntries, 460);

// A telephone number or an e-mail address.
struct PHN_PACKED PB_NUMBER_ENTRY
{
    uint32_t dwDefault; // 1: the contact's default number
    uint32_t dwType;    // an index of kEntryTypes
    WideField<kValueUnits> wszValue;
    uint32_t dwSpeedDial;
};
static_assert(sizeof(PB_NUMBER_ENTRY) == 116);
PHN_OFFSET(PB_NUMBER_ENTRY, dwDefault, 0);
PHN_OFFSET(PB_NUMBER_ENTRY, dwType, 4);
PHN_OFFSET(PB_NUMBER_ENTRY, wszValue, 8);
PHN_OFFSET(PB_NUMBER_ENTRY, dwSpeedDial, 112);

struct PHN_PACKED PB_RET_FIELDSIZE_RES
{
    DEV_RX_HEADER rcRxHeader;
    uint32_t adwFieldSizes[11]; // of the first seven, the low 16 bits count
};
static_assert(sizeof(PB_RET_FIELDSIZE_RES) == 52);
PHN_OFFSET(PB_RET_FIELDSIZE_RES, rcRxHeader, 0);
PHN_OFFSET(PB_RET_FIELDSIZE_RES, adwFieldSizes, 8);

// The reply to a read. As many contacts as it counts follow it, if the handset keeps its word.
struct PHN_PACKED PB_RET_INFO_CNT_RES
{
    DEV_RX_HEADER rcRxHeader;
    uint32_t dwResult;
    uint32_t dwInfo12;
    uint32_t dwNumOfRecs;
};
static_assert(sizeof(PB_RET_INFO_CNT_RES) == 20);
PHN_OFFSET(PB_RET_INFO_CNT_RES, rcRxHeader, 0);
PHN_OFFSET(PB_RET_INFO_CNT_RES, dwResult, 8);
PHN_OFFSET(PB_RET_INFO_CNT_RES, dwInfo12, 12);
PHN_OFFSET(PB_RET_INFO_CNT_RES, dwNumOfRecs, 16);

using PB_RET_RES = DEV_RX_NUMBER; // the record id under which a written contact was stored

struct PHN_PACKED PB_RET_NAME_RES
{
    DEV_RX_HEADER rcRxHeader;
    uint32_t dwResult;
    WideField<kNameUnits> wszName;
};
static_assert(sizeof(PB_RET_NAME_RES) == 84);
PHN_OFFSET(PB_RET_NAME_RES, rcRxHeader, 0);
PHN_OFFSET(PB_RET_NAME_RES, dwResult, 8);
PHN_OFFSET(PB_RET_NAME_RES, wszName, 12);

// A contact in memory: the entries, dwNumOfEntries of them, are an array of their own.
struct PB_CONTACT
{
    PB_RECORD rcRecord;
    PB_NUMBER_ENTRY* pEntries;
};

// What a read brought: the reply's numbers, and the contacts unpacked from it.
struct PB_RET_INFO
{
    uint32_t dwResult;
    uint32_t dwNumOfRecs;
    PB_CONTACT* pRecords;
};

// What a write sends behind the request header.
struct PB_PARAM
{
    PB_CONTACT rcContact;
};

// A contact on its way to vCard text, in the ANSI code page.
struct PB_VCARD_DATA
{
    std::string strFirstName;
    std::string strLastName;
    std::string strEntryLines;    // whole lines
    std::string strDefaultNo;     // empty: no default number
    std::string strSpeedDialList; // empty: no entries
    uint32_t dwGroupID = 0;
    uint32_t dwPictureID = 0;
    uint32_t dwRingerID = 0;
};
