// The application object: everything process-wide is made when the library is loaded and destroyed when it is unloaded,
// on the thread that does so. It is not used when the process ends with the library loaded.
#pragma once

#include <windows.h>

class CCalderApp
{
public:
    // The locks and events, the log, then the instance with its device object. Throws nothing; false leaves the library
    // without an instance, its exports refuse every call of a host that has them all the same, and ExitInstance is
    // still due.
    bool InitInstance() noexcept;
    void ExitInstance() noexcept;
};
