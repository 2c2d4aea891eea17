// Writes the library's vCard dialect: pure steps from the handset's entries and a contact's texts to lines. The key
// literals, their order and the bare CR LF line ends are what hosts parse; nothing is folded or escaped.
#pragma once

#include <span>
#include <string>

#include "phonebook/contact_records.h"

inline constexpr size_t kMaxVCardText = 4095; // characters

// One line for each entry of a known type, in the entries' order.
std::string MakeEntryLines(std::span<const PB_NUMBER_ENTRY> Entries);

// The position of the last entry that is marked default; -1 if none is, or its type has no position.
int FindDefaultNo(std::span<const PB_NUMBER_ENTRY> Entries);

// The speed dials of the five number types; of two entries of one type the first one counts.
std::string MakeSpeedDialList(std::span<const PB_NUMBER_ENTRY> Entries);

// The whole text, without a terminator; it may be longer than the limit, which is the caller's to check.
std::string FormatVCard(const PB_VCARD_DATA& Data);
