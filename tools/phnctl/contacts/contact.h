// What a contact of the handset is made of, under the property names that the library reads and writes: one name, at
// most one value for each of five numbers and two addresses, three ids, the default number and the speed dials. Used by
// everything that reads or writes contacts; fitter.h turns what a file wants into such fields.
#pragma once

#include "phnctl/plan/entry.h"

#include <string>
#include <string_view>
#include <vector>

namespace phnctl {

namespace contact_property {
inline constexpr const char* kName = "FN";
inline constexpr const char* kCell = "TEL;TYPE=CELL";
inline constexpr const char* kMobile2 = "X-PHN-MOBILE-2";
inline constexpr const char* kHome = "TEL;TYPE=HOME";
inline constexpr const char* kWork = "TEL;TYPE=WORK";
inline constexpr const char* kFax = "TEL;TYPE=FAX";
inline constexpr const char* kEmail = "EMAIL";
inline constexpr const char* kEmail2 = "X-PHN-EMAIL-2";
inline constexpr const char* kGroup = "X-PHN-GROUP-ID";
inline constexpr const char* kPicture = "X-PHN-PICTURE-ID";
inline constexpr const char* kRinger = "X-PHN-RINGER-ID";
inline constexpr const char* kDefault = "X-PHN-DEFAULT-NO";
inline constexpr const char* kSpeedDials = "X-PHN-SPEEDDIAL-LIST";
// In files alone: what code page the texts may have lost characters to.
inline constexpr const char* kLostText = "X-PHN-LOST-TEXT";
// In files alone, of TEL and EMAIL: 2 is the second mobile number or address, which other programs take as one more.
inline constexpr const char* kPlaceParameter = "X-PHN-PLACE";
// A number without a type: any place will do.
inline constexpr const char* kAnyNumber = "TEL";
} // namespace contact_property

// The places of numbers in the order of X-PHN-DEFAULT-NO and X-PHN-SPEEDDIAL-LIST.
inline constexpr const char* kNumberProperties[] = {contact_property::kCell, contact_property::kHome,
                                                    contact_property::kWork, contact_property::kMobile2,
                                                    contact_property::kFax};

bool IsId(std::string_view property); // of a group, picture or ringer
bool IsAddress(std::string_view property);
bool IsNumberOrAddress(std::string_view property);

// Its numbers and addresses.
std::vector<EntryField> ValuesOf(const Entry& contact);

// The position of a place of numbers in these lists, from 1; 0 for any other property.
std::size_t NumberPosition(std::string_view property);

// A contact of these values, a name, numbers and addresses, with the settings of `wanted`; what that leaves open is
// taken from `replaced`, or is none. The default number and the speed dials go with the numbers that they belong to.
Entry WithSettings(Entry values, const Entry& wanted, const Entry* replaced);

// The same with the values of `wanted`.
Entry CompleteContact(const Entry& wanted, const Entry* replaced);

// True when the library may have replaced characters that have no place in the code page. A '?' may be a real one, too.
bool MayHaveLostText(const Entry& read);

// From the library's vCard text, and back to such text in the code page. The library writes values as they are, also
// with line ends in them: such a value stays whole, except where what follows a line end looks like another number or
// address of the contact, which nothing tells from one.
Entry FromLibraryText(std::string_view text);
std::string ToLibraryText(const Entry& entry);

} // namespace phnctl
