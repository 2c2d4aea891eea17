// The property keys of the library's vCard dialect, and what ties the telephone and e-mail keys to the handset's entry
// types. The reader and the writer share these literals, so that what one writes the other finds. Keys that begin with
// the same letter stand together: the reader counts on it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

enum EVCardKey
{
    eKeyBegin,
    eKeyEMail,
    eKeyEnd,
    eKeyFullName,
    eKeyCell,
    eKeyFax,
    eKeyHome,
    eKeyWork,
    eKeyVersion,
    eKeyDefaultNo,
    eKeyEMail2,
    eKeyGroupID,
    eKeyMobile2,
    eKeyPictureID,
    eKeyRingerID,
    eKeySpeedDialList,
    eKeyCount
};

inline constexpr std::string_view kVCardKeys[eKeyCount] = {
    "BEGIN",
    "EMAIL",
    "END",
    "FN",
    "TEL;TYPE=CELL",
    "TEL;TYPE=FAX",
    "TEL;TYPE=HOME",
    "TEL;TYPE=WORK",
    "VERSION",
    "X-PHN-DEFAULT-NO",
    "X-PHN-EMAIL-2",
    "X-PHN-GROUP-ID",
    "X-PHN-MOBILE-2",
    "X-PHN-PICTURE-ID",
    "X-PHN-RINGER-ID",
    "X-PHN-SPEEDDIAL-LIST",
};

struct SEntryType
{
    EVCardKey eKey;
    int nDefaultNo; // the number's position in X-PHN-DEFAULT-NO and X-PHN-SPEEDDIAL-LIST; -1: it has none
};

// In the order of the handset's entry types.
inline constexpr SEntryType kEntryTypes[] = {
    {eKeyCell, 1}, {eKeyMobile2, 4}, {eKeyHome, 2}, {eKeyWork, 3}, {eKeyFax, 5}, {eKeyEMail, -1}, {eKeyEMail2, -1},
};
inline constexpr size_t kEntryTypeCount = sizeof kEntryTypes / sizeof kEntryTypes[0];
inline constexpr size_t kNumberTypeCount = 5; // the first ones are telephone numbers

// The position of an entry type, 1 to 5; -1 for e-mail and unknown types.
constexpr int TypeToDefaultNo(uint32_t dwType)
{
    return dwType < kEntryTypeCount ? kEntryTypes[dwType].nDefaultNo : -1;
}

// The entry type at a position; -1 if there is none.
constexpr int DefaultNoToType(int nDefaultNo)
{
    for (size_t uType = 0; uType < kNumberTypeCount; ++uType)
        if (kEntryTypes[uType].nDefaultNo == nDefaultNo)
            return static_cast<int>(uType);
    return -1;
}
