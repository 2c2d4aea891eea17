// The identifiers of a PDU's items and their names. Used by the PDU reader and writer.
#pragma once

#include <cstdint>
#include <string>

namespace phnctl {

namespace parameter {
inline constexpr std::uint8_t kTeleservice = 0x00;
inline constexpr std::uint8_t kOriginatingAddress = 0x02;
inline constexpr std::uint8_t kDestinationAddress = 0x04;
inline constexpr std::uint8_t kBearerData = 0x08;
} // namespace parameter

namespace subparameter {
inline constexpr std::uint8_t kMessageIdentifier = 0x00;
inline constexpr std::uint8_t kUserData = 0x01;
inline constexpr std::uint8_t kTimeStamp = 0x03;
inline constexpr std::uint8_t kPriority = 0x08;
inline constexpr std::uint8_t kReplyOption = 0x0A;
inline constexpr std::uint8_t kCallbackNumber = 0x0E;
} // namespace subparameter

inline constexpr unsigned kCellularMessaging = 0x1002; // the teleservice of all messages here

inline constexpr unsigned kDeliver = 1; // MESSAGE_TYPE
inline constexpr unsigned kSubmit = 2;

inline constexpr unsigned kSevenBitAscii = 2; // MSG_ENCODING

// The standard's name; "Unknown item" for an identifier without one.
std::string ItemName(unsigned level, std::uint8_t id);

} // namespace phnctl
