// Where messages go and which index they get. Used by the message commands and for messages that arrive.
#pragma once

#include "simulator/phone/phone.h"

#include <cstdint>

namespace simulator {

constexpr std::uint32_t kInbox = 0;
constexpr std::uint32_t kSentBox = 1;
constexpr std::uint32_t kDraftBox = 2;

// Message status, as command 22 sets it.
constexpr std::uint32_t kRead = 1;
constexpr std::uint32_t kUnread = 2;

constexpr std::uint32_t kNoRoom = 0xFFFFFFFF;

// Stores the message behind all others, or in the lowest free index once 65535 is taken; kNoRoom when the store is
// full.
std::uint32_t AddMessage(Phone& phone, const Message& message);

} // namespace simulator
