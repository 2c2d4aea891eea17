// The tool's own reader and writer of message PDUs (TIA/EIA-637 transport layer), since the library exports none. Used
// by the messages commands; needs no handset. The reader takes PDUs of both directions and takes anything: what it
// cannot read it shows as bytes and names as a problem.
#pragma once

#include "phnctl/text/iso_time.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace phnctl {

using PduBytes = std::vector<std::uint8_t>;

using PduTime = LocalTime;

// "2009-07-01 16:05:00"
std::string ShowTime(const PduTime& time);

// "normal", "interactive", "urgent" or "emergency".
std::string ShowPriority(unsigned priority);

// What a message says. A value that the PDU does not hold is not there.
struct PduContent
{
    std::optional<unsigned> teleservice{};
    std::optional<std::string> from{}; // UTF-8, like all texts here
    std::optional<std::string> to{};
    std::optional<PduTime> time{};
    std::optional<unsigned> priority{};
    std::optional<bool> report{}; // a delivery acknowledgement is wanted
    std::optional<std::string> callback{};
    std::optional<std::string> text{};

    bool operator==(const PduContent&) const = default;
};

// A parameter or, at level 1, a subparameter of the Bearer Data.
struct PduItem
{
    std::size_t offset = 0; // of its identifier
    unsigned level = 0;
    std::uint8_t id = 0;
    std::string name;
    std::string meaning;
    PduBytes data;
};

struct Pdu
{
    std::optional<unsigned> type; // none: no bytes at all
    PduContent content;
    std::vector<PduItem> items;
    std::vector<std::string> problems; // sentences without a full stop
};

Pdu ReadPdu(std::span<const std::uint8_t> bytes);

// What goes to the library to be sent or saved: to, text, and whatever else is set but `from`, `time` and
// `teleservice`. Throws Failure(kUsage) that says what cannot be carried.
PduBytes WriteOutgoing(const PduContent& content);

// What the library makes of a stored message, to the byte: from, text, and whatever else is set.
PduBytes WriteDelivered(const PduContent& content);

std::string ToHex(std::span<const std::uint8_t> bytes);
// Blanks between the bytes are passed over. Throws Failure(kUsage).
PduBytes FromHex(const std::string& text);

} // namespace phnctl
