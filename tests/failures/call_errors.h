// How each call of the stand-in can fail on a handle that is one: the errors that Windows documents or gives for it.
// Calls that a correct program cannot make fail (closing what is open, ending what has begun, signalling an event) are
// not here; nor are the host's own (LoadLibraryA, GetProcAddress, FreeLibrary).
#pragma once

#include <span>
#include <vector>

#include <windows.h>

struct CallErrors
{
    const char* call;
    std::vector<DWORD> errors;
};

std::span<const CallErrors> AllCallErrors();
