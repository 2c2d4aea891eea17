// How this library starts threads: detached, and with the signals of the host blocked, so that Ctrl-C and the like
// reach a thread of the host. Used for CreateThread and for the service thread.
#pragma once

#include <memory>

#include "threads/thread_record.h"

namespace platform {

// Throws ERROR_NOT_ENOUGH_MEMORY if the system has no room for another thread.
void StartDetachedThread(void* (*entry)(void*), void* argument);

// Makes the record the calling thread's own; the first thing that a thread from CreateThread does.
void AttachThread(std::shared_ptr<ThreadRecord> record);

} // namespace platform
