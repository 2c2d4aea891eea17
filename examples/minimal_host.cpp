// The smallest host in C++ that follows a handset: callbacks tell it what changed, and it fetches the new values. It
// runs until it is interrupted. Callbacks come while the thread that loaded the library dispatches window messages.
// README.md has the lines that compile it.
#include <windows.h>

#include <cstdio>

#include "phnnrv.h"

namespace {

void PrintBattery()
{
    PHN_BATTERY_INFO battery{};
    battery.uSize = sizeof battery;
    if (PHN_GetBatteryInfo(&battery) == PHN_ERROR_NONE)
        std::printf("battery %u %u\n", static_cast<unsigned>(battery.uBattery1),
                    static_cast<unsigned>(battery.uBattery2));
}

// The library may be called from here. What must not happen here is waiting for another thread.
void PHN_CALL Changed(uint32_t type)
{
    if (type == PHN_CALLBACK_REMOVED)
        std::puts("handset removed");
    else if (type == PHN_CALLBACK_BATTERY_INFO)
        PrintBattery();
    else
        std::printf("changed: callback type %u\n", static_cast<unsigned>(type));
}

} // namespace

int main()
{
    std::setvbuf(stdout, nullptr, _IONBF, 0); // lines appear at once, in a pipe too
    if (const PHN_ERROR error = PHN_Startup(); error != PHN_ERROR_NONE) {
        std::fprintf(stderr, "PHN_Startup: error %u\n", static_cast<unsigned>(error));
        return 1;
    }
    PrintBattery();
    if (const PHN_ERROR error = PHN_SetCallback(PHN_CALLBACK_ALL, Changed, 0); error != PHN_ERROR_NONE) {
        std::fprintf(stderr, "PHN_SetCallback: error %u\n", static_cast<unsigned>(error));
        PHN_Shutdown();
        return 1;
    }

    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return PHN_Shutdown() == PHN_ERROR_NONE ? 0 : 1;
}
