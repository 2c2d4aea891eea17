// Frames of the diagnostic port, byte by byte, as both sides must build and take them (docs/protocol.md).
// Used by the tests of the library's codec and of the simulated handset, and as seeds for fuzzing: what one side sends
// here is what the other expects. The bytes were written down independently of either codec; do not generate them from
// one.
#pragma once

#include <cstdint>
#include <span>

namespace wire {

struct GoldenFrame
{
    const char* name;
    std::uint32_t sequence;
    std::span<const std::uint8_t> payload; // the request record, or the payload of the reply
    std::span<const std::uint8_t> frame;   // what travels
};

// Requests.

// The first request of every port. Nothing in it needs stuffing.
inline constexpr std::uint8_t kStartupRecord[] = {
    0x01, 0x00, 0x00, 0x00, // command 1: startup
    0x01, 0x00,             // always 1
};
inline constexpr std::uint8_t kStartupRequest[] = {
    0x4B,                   // command code
    0x00,                   // always 0
    0x13, 0x00,             // always 19
    0x01, 0x00, 0x00, 0x00, // sequence identifier
    0x01, 0x00, 0x00, 0x00, // command 1: startup
    0x01, 0x00,             // always 1
    0xBA, 0x25,             // check value
    0x7E,                   // flag
};

// Both special bytes in the record, each sent as two.
inline constexpr std::uint8_t kWriteParametersRecord[] = {
    0x0D, 0x00, 0x00, 0x00, // command 13: write parameters
    0x01, 0x00,             // always 1
    0x7E,                   // first parameter: a flag byte
    0x7D,                   // second parameter: an escape byte
    0x2C, 0x01,             // third parameter
};
inline constexpr std::uint8_t kWriteParametersRequest[] = {
    0x4B,                   // command code
    0x00,                   // always 0
    0x13, 0x00,             // always 19
    0x02, 0x00, 0x00, 0x00, // sequence identifier
    0x0D, 0x00, 0x00, 0x00, // command 13: write parameters
    0x01, 0x00,             // always 1
    0x7D, 0x5E,             // first parameter: a flag byte
    0x7D, 0x5D,             // second parameter: an escape byte
    0x2C, 0x01,             // third parameter
    0x5B, 0x31,             // check value
    0x7E,                   // flag
};

// A lock code travels as its four characters, without a terminator.
inline constexpr std::uint8_t kSetLockRecord[] = {
    0x09, 0x00, 0x00, 0x00, // command 9: phone lock
    0x01, 0x00,             // always 1
    0x01,                   // lock
    0x30, 0x30, 0x30, 0x30, // lock code
};
inline constexpr std::uint8_t kSetLockRequest[] = {
    0x4B,                   // command code
    0x00,                   // always 0
    0x13, 0x00,             // always 19
    0x03, 0x00, 0x00, 0x00, // sequence identifier
    0x09, 0x00, 0x00, 0x00, // command 9: phone lock
    0x01, 0x00,             // always 1
    0x01,                   // lock
    0x30, 0x30, 0x30, 0x30, // lock code
    0x98, 0x56,             // check value
    0x7E,                   // flag
};

// Special bytes in the sequence identifier.
inline constexpr std::uint8_t kBatteryInformationRecord[] = {
    0x05, 0x00, 0x00, 0x00, // command 5: battery information
    0x01, 0x00,             // always 1
};
inline constexpr std::uint8_t kBatteryInformationRequest[] = {
    0x4B,                               // command code
    0x00,                               // always 0
    0x13, 0x00,                         // always 19
    0x7D, 0x5E, 0x7D, 0x5D, 0x00, 0x00, // sequence identifier (stuffed)
    0x05, 0x00, 0x00, 0x00,             // command 5: battery information
    0x01, 0x00,                         // always 1
    0x4A, 0x54,                         // check value
    0x7E,                               // flag
};

// A flag byte in the check value is stuffed as well.
inline constexpr std::uint8_t kPhoneVarianceRecord[] = {
    0x31, 0x00, 0x00, 0x00, // command 49: phone variance
    0x01, 0x00,             // always 1
};
inline constexpr std::uint8_t kPhoneVarianceRequest[] = {
    0x4B,                   // command code
    0x00,                   // always 0
    0x13, 0x00,             // always 19
    0x04, 0x00, 0x00, 0x00, // sequence identifier
    0x31, 0x00, 0x00, 0x00, // command 49: phone variance
    0x01, 0x00,             // always 1
    0xD1, 0x7D, 0x5E,       // check value (stuffed)
    0x7E,                   // flag
};

inline constexpr GoldenFrame kRequests[] = {
    {"startup", 0x1, kStartupRecord, kStartupRequest},
    {"writeParameters", 0x2, kWriteParametersRecord, kWriteParametersRequest},
    {"setLock", 0x3, kSetLockRecord, kSetLockRequest},
    {"batteryInformation", 0x7D7E, kBatteryInformationRecord, kBatteryInformationRequest},
    {"phoneVariance", 0x4, kPhoneVarianceRecord, kPhoneVarianceRequest},
};

// Replies.

// A reply that is a header alone.
inline constexpr std::uint8_t kStartupPayload[] = {
    0x01, 0x00, 0x00, 0x00, // header: this handset repeats the command
    0x01, 0x00,             // header: and the 1
    0x00, 0x00,             // header: status
};
inline constexpr std::uint8_t kStartupReply[] = {
    0x4B,                   // command code
    0x00, 0x00, 0x00, 0x00, // not interpreted
    0x0F, 0x00, 0x00, 0x00, // length: payload and 7
    0x01, 0x00, 0x00, 0x00, // sequence identifier
    0x01, 0x00, 0x00, 0x00, // header: this handset repeats the command
    0x01, 0x00,             // header: and the 1
    0x00, 0x00,             // header: status
    0xDD, 0xC7,             // check value
    0x7E,                   // flag
};

inline constexpr std::uint8_t kWriteParametersPayload[] = {
    0x0D, 0x00, 0x00, 0x00, // header: this handset repeats the command
    0x01, 0x00,             // header: and the 1
    0x00, 0x00,             // header: status
};
inline constexpr std::uint8_t kWriteParametersReply[] = {
    0x4B,                   // command code
    0x00, 0x00, 0x00, 0x00, // not interpreted
    0x0F, 0x00, 0x00, 0x00, // length: payload and 7
    0x02, 0x00, 0x00, 0x00, // sequence identifier
    0x0D, 0x00, 0x00, 0x00, // header: this handset repeats the command
    0x01, 0x00,             // header: and the 1
    0x00, 0x00,             // header: status
    0x51, 0x7B,             // check value
    0x7E,                   // flag
};

// Status 10: the lock code was wrong.
inline constexpr std::uint8_t kSetLockPayload[] = {
    0x09, 0x00, 0x00, 0x00, // header: this handset repeats the command
    0x01, 0x00,             // header: and the 1
    0x0A, 0x00,             // header: status
};
inline constexpr std::uint8_t kSetLockReply[] = {
    0x4B,                   // command code
    0x00, 0x00, 0x00, 0x00, // not interpreted
    0x0F, 0x00, 0x00, 0x00, // length: payload and 7
    0x03, 0x00, 0x00, 0x00, // sequence identifier
    0x09, 0x00, 0x00, 0x00, // header: this handset repeats the command
    0x01, 0x00,             // header: and the 1
    0x0A, 0x00,             // header: status
    0xAA, 0x15,             // check value
    0x7E,                   // flag
};

// Special bytes in the sequence identifier and in the record.
inline constexpr std::uint8_t kBatteryInformationPayload[] = {
    0x05, 0x00, 0x00, 0x00, // header: this handset repeats the command
    0x01, 0x00,             // header: and the 1
    0x00, 0x00,             // header: status
    0x7E,                   // first battery value: a flag byte
    0x50,                   // second battery value
};
inline constexpr std::uint8_t kBatteryInformationReply[] = {
    0x4B,                               // command code
    0x00, 0x00, 0x00, 0x00,             // not interpreted
    0x11, 0x00, 0x00, 0x00,             // length: payload and 7
    0x7D, 0x5E, 0x7D, 0x5D, 0x00, 0x00, // sequence identifier (stuffed)
    0x05, 0x00, 0x00, 0x00,             // header: this handset repeats the command
    0x01, 0x00,                         // header: and the 1
    0x00, 0x00,                         // header: status
    0x7D, 0x5E,                         // first battery value: a flag byte
    0x50,                               // second battery value
    0x79, 0xCC,                         // check value
    0x7E,                               // flag
};

// Network, battery and messages have changed.
inline constexpr std::uint8_t kPhoneVariancePayload[] = {
    0x31, 0x00, 0x00, 0x00, // header: this handset repeats the command
    0x01, 0x00,             // header: and the 1
    0x00, 0x00,             // header: status
    0xC1, 0x00,             // flags
};
inline constexpr std::uint8_t kPhoneVarianceReply[] = {
    0x4B,                   // command code
    0x00, 0x00, 0x00, 0x00, // not interpreted
    0x11, 0x00, 0x00, 0x00, // length: payload and 7
    0x04, 0x00, 0x00, 0x00, // sequence identifier
    0x31, 0x00, 0x00, 0x00, // header: this handset repeats the command
    0x01, 0x00,             // header: and the 1
    0x00, 0x00,             // header: status
    0xC1, 0x00,             // flags
    0xC1, 0x79,             // check value
    0x7E,                   // flag
};

// Result 0 and no record: the slot is empty.
inline constexpr std::uint8_t kReadContactPayload[] = {
    0x23, 0x00, 0x00, 0x00, // header: this handset repeats the command
    0x01, 0x00,             // header: and the 1
    0x00, 0x00,             // header: status
    0x00, 0x00, 0x00, 0x00, // result
    0x00, 0x00, 0x00, 0x00, // not interpreted
    0x00, 0x00, 0x00, 0x00, // number of records
};
inline constexpr std::uint8_t kReadContactReply[] = {
    0x4B,                   // command code
    0x00, 0x00, 0x00, 0x00, // not interpreted
    0x1B, 0x00, 0x00, 0x00, // length: payload and 7
    0x06, 0x00, 0x00, 0x00, // sequence identifier
    0x23, 0x00, 0x00, 0x00, // header: this handset repeats the command
    0x01, 0x00,             // header: and the 1
    0x00, 0x00,             // header: status
    0x00, 0x00, 0x00, 0x00, // result
    0x00, 0x00, 0x00, 0x00, // not interpreted
    0x00, 0x00, 0x00, 0x00, // number of records
    0xED, 0x55,             // check value
    0x7E,                   // flag
};

// Result 5: the list has no (further) entry.
inline constexpr std::uint8_t kFirstCallPayload[] = {
    0x1A, 0x00, 0x00, 0x00, // header: this handset repeats the command
    0x01, 0x00,             // header: and the 1
    0x00, 0x00,             // header: status
    0x05, 0x00, 0x00, 0x00, // result
    0x00, 0x00, 0x00, 0x00, // number of entries
};
inline constexpr std::uint8_t kFirstCallReply[] = {
    0x4B,                   // command code
    0x00, 0x00, 0x00, 0x00, // not interpreted
    0x17, 0x00, 0x00, 0x00, // length: payload and 7
    0x07, 0x00, 0x00, 0x00, // sequence identifier
    0x1A, 0x00, 0x00, 0x00, // header: this handset repeats the command
    0x01, 0x00,             // header: and the 1
    0x00, 0x00,             // header: status
    0x05, 0x00, 0x00, 0x00, // result
    0x00, 0x00, 0x00, 0x00, // number of entries
    0x0B, 0x33,             // check value
    0x7E,                   // flag
};

inline constexpr std::uint8_t kRingerNamePayload[] = {
    0x28,
    0x00,
    0x00,
    0x00, // header: this handset repeats the command
    0x01,
    0x00, // header: and the 1
    0x00,
    0x00, // header: status
    0x00,
    0x00,
    0x00,
    0x00, // result
    // "Bell", 36 UTF-16 units
    0x42,
    0x00,
    0x65,
    0x00,
    0x6C,
    0x00,
    0x6C,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
    0x00,
};
inline constexpr std::uint8_t kRingerNameReply[] = {
    0x4B,                   // command code
    0x00, 0x00, 0x00, 0x00, // not interpreted
    0x5B, 0x00, 0x00, 0x00, // length: payload and 7
    0x08, 0x00, 0x00, 0x00, // sequence identifier
    0x28, 0x00, 0x00, 0x00, // header: this handset repeats the command
    0x01, 0x00,             // header: and the 1
    0x00, 0x00,             // header: status
    0x00, 0x00, 0x00, 0x00, // result
    // "Bell", 36 UTF-16 units
    0x42, 0x00, 0x65, 0x00, 0x6C, 0x00, 0x6C, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xE1, 0x3E, // check value
    0x7E,                                                                                                 // flag
};

inline constexpr GoldenFrame kReplies[] = {
    {"startup", 0x1, kStartupPayload, kStartupReply},
    {"writeParameters", 0x2, kWriteParametersPayload, kWriteParametersReply},
    {"setLock", 0x3, kSetLockPayload, kSetLockReply},
    {"batteryInformation", 0x7D7E, kBatteryInformationPayload, kBatteryInformationReply},
    {"phoneVariance", 0x4, kPhoneVariancePayload, kPhoneVarianceReply},
    {"readContact", 0x6, kReadContactPayload, kReadContactReply},
    {"firstCall", 0x7, kFirstCallPayload, kFirstCallReply},
    {"ringerName", 0x8, kRingerNamePayload, kRingerNameReply},
};

} // namespace wire
