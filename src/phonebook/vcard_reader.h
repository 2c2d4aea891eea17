// Reads the library's vCard dialect: a tolerant property reader, and the pure steps that turn property values into
// fields. Nothing here logs or knows the handset's records; texts are views into the host's text, which is hostile. The
// work is linear in the text, whatever its bytes.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "phonebook/vcard_keys.h"

inline constexpr size_t kMaxPropertyValue = 259; // characters

// A host's text, of which the first line of every key has been found. The text ends at its first zero byte.
class CVCardText
{
public:
    explicit CVCardText(std::string_view strText);

    // Where the first line that begins with the key does, in any case; none if there is none. On a last line without a
    // line end the key matches at any position that is not blank.
    std::optional<size_t> FindProperty(EVCardKey eKey) const;

    // The same for a property with a value: what stands between the first colon behind the key's begin and the next
    // line end. None if either is missing. *pstrValue may be longer than the limit, which is the caller's to check.
    std::optional<size_t> GetVCardProperty(EVCardKey eKey, std::string_view* pstrValue) const;

private:
    std::string_view m_strText;
    std::array<size_t, eKeyCount> m_auPositions;
};

struct SFullName
{
    std::string_view strFirst;
    std::string_view strRest;
};

// At the first space that has something before and behind it. Leading spaces stay with the first part.
SFullName SplitFullName(std::string_view strValue);

// The dialable characters of a number. They are taken from UTF-16: in a double-byte code page the second byte of a
// character may look like one of them.
std::u16string FilterNumber(std::u16string_view strValue);

// The values of a comma-separated list. The first five are stored; *puCount says how many there are. False if one of
// them is anything but decimal digits.
inline constexpr size_t kSpeedDialCount = kNumberTypeCount;
bool ReadSpeedDialList(std::string_view strValue, std::array<uint32_t, kSpeedDialCount>* pSpeedDials, size_t* puCount);
