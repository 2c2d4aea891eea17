// The Win32 calls that the library, the tools and the tests use, grouped as on Windows. On Linux these headers and
// libphnplatform.so take the place of the system's. What nobody calls is not here.
#pragma once

#include <errhandlingapi.h>
#include <fileapi.h>
#include <guiddef.h>
#include <handleapi.h>
#include <ioapiset.h>
#include <libloaderapi.h>
#include <minwinbase.h>
#include <minwindef.h>
#include <processthreadsapi.h>
#include <synchapi.h>
#include <sysinfoapi.h>
#include <timezoneapi.h>
#include <winbase.h>
#include <winerror.h>
#include <winnls.h>
#include <winnt.h>
#include <winreg.h>
#include <winuser.h>
