// Runs work on a second thread while this one dispatches window messages, as the thread that loaded the library must:
// arrival, removal and callbacks are then handled at once, however long a call takes. Used by Session.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <windows.h>

namespace phnctl {

// Returns true when the work has ended; what it throws is thrown here. False when `limit` was over first, or a second
// has passed since the event `stop` was set: the work then goes on, so everything it uses must live until the process
// ends.
bool RunDispatching(std::function<void()> work, std::optional<std::chrono::milliseconds> limit = std::nullopt,
                    HANDLE stop = nullptr);

} // namespace phnctl
