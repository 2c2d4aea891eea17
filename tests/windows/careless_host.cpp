// A host that loads the library, lets its watch thread start, waits for the named event and returns without unloading.
#include "windows/driver.h"

int main(int count, char** arguments)
{
    if (count != 3 || !LoadLibraryA(arguments[1]))
        return 1;
    driver::DispatchStartTimer();
    const HANDLE event = OpenEventA(SYNCHRONIZE, FALSE, arguments[2]);
    return WaitForSingleObject(event, INFINITE) == WAIT_OBJECT_0 ? 0 : 1;
}
