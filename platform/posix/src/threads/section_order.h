// Which critical section or mutex object is taken under which, for a test that holds the locks to their order. The
// stand-in's own locks are not among them.
#pragma once

#include <windows.h>

// ThreadSanitizer would take the notes' own mutex for an order of what the threads do.
#if !defined(__has_feature)
#define __has_feature(feature) 0
#endif
#define PHN_NOTES_LOCKS (PHN_TEST_HOOKS && !__SANITIZE_THREAD__ && !__has_feature(thread_sanitizer))

namespace platform {

#if PHN_NOTES_LOCKS
void NoteTaken(const void* lock) noexcept;
void NoteLeft(const void* lock) noexcept;
#else
inline void NoteTaken(const void*) noexcept {}
inline void NoteLeft(const void*) noexcept {}
#endif

} // namespace platform
