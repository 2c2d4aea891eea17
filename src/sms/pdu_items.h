// The identifiers of a TIA/EIA-637 transport-layer PDU that this library reads or writes. A PDU is the message type,
// then items of identifier, length and data; the data of the Bearer Data is a sequence of such items itself. Bits are
// packed from the most significant one on, across byte boundaries.
#pragma once

#include <cstddef>
#include <cstdint>

inline constexpr uint8_t kPointToPoint = 0x00; // message type

// Parameters (3.4.3).
inline constexpr uint8_t kTeleserviceIdentifier = 0x00;
inline constexpr uint8_t kOriginatingAddress = 0x02;
inline constexpr uint8_t kDestinationAddress = 0x04;
inline constexpr uint8_t kBearerData = 0x08;

// Subparameters of the Bearer Data (4.5).
inline constexpr uint8_t kMessageIdentifier = 0x00;
inline constexpr uint8_t kUserData = 0x01;
inline constexpr uint8_t kMessageCenterTimeStamp = 0x03;
inline constexpr uint8_t kPriorityIndicator = 0x08;
inline constexpr uint8_t kReplyOption = 0x0A;
inline constexpr uint8_t kCallbackNumber = 0x0E;

inline constexpr size_t kMaxItemData = 255; // what the length byte of an item can say
inline constexpr size_t kMaxCharacters = 255;
inline constexpr unsigned kCountBits = 8; // NUM_FIELDS, before the characters or digits of a field
