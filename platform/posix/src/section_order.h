// Which critical section is entered under which, for a test that holds the locks to their order.
#pragma once

#include <windows.h>

namespace platform {

#if PHN_TEST_HOOKS
void NoteEntered(const CRITICAL_SECTION* section) noexcept;
void NoteLeft(const CRITICAL_SECTION* section) noexcept;
#else
inline void NoteEntered(const CRITICAL_SECTION*) noexcept {}
inline void NoteLeft(const CRITICAL_SECTION*) noexcept {}
#endif

} // namespace platform
