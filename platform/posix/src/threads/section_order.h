// Which critical section is entered under which, for a test that holds the locks to their order.
#pragma once

#include <windows.h>

// ThreadSanitizer would take the notes' own mutex for an order of what the threads do.
#if !defined(__has_feature)
#define __has_feature(feature) 0
#endif
#define PHN_NOTES_SECTIONS (PHN_TEST_HOOKS && !__SANITIZE_THREAD__ && !__has_feature(thread_sanitizer))

namespace platform {

#if PHN_NOTES_SECTIONS
void NoteEntered(const CRITICAL_SECTION* section) noexcept;
void NoteLeft(const CRITICAL_SECTION* section) noexcept;
#else
inline void NoteEntered(const CRITICAL_SECTION*) noexcept {}
inline void NoteLeft(const CRITICAL_SECTION*) noexcept {}
#endif

} // namespace platform
