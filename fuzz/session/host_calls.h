// Everything that a host, or its system, may do in a session: a row for each export and for each message of the system.
// A row takes its arguments from the session's input.
#pragma once

#include <span>
#include <string_view>

#include "fuzz/session/session.h"

namespace fuzz {

struct HostCall
{
    std::string_view name;
    void (*run)(Session& session);
};

std::span<const HostCall> HostCalls();

// The session whose input says what the host's callback function does.
void SetCallbackSession(Session* session);

} // namespace fuzz
