// How each call of the stand-in can fail: the errors that Windows documents or gives for it. Events and mutexes do not
// fail for a program that has them; the library bears it all the same. Not here are calls that close or end something,
// which would leave it open here and nowhere else, and the host's own (LoadLibraryA, GetProcAddress, FreeLibrary).
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
