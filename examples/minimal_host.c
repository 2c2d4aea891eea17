/* The smallest useful host in C: start the service, print the handset's identity, end the service. It is linked with
 * the library, so the library is loaded, and its window owned, by the thread that runs main. README.md has the
 * lines that compile it. */
#include <stdio.h>

#include "phnnrv.h"

static int fail(const char* what, PHN_ERROR error)
{
    fprintf(stderr, "%s: error %u\n", what, (unsigned)error);
    return 1;
}

int main(void)
{
    PHN_DEVICE_INFO device = {0};
    PHN_ERROR error = PHN_Startup(); /* waits up to 15 s for a handset */
    if (error != PHN_ERROR_NONE)
        return fail("PHN_Startup", error);

    device.uSize = sizeof device;
    error = PHN_GetDeviceInfo(&device);
    PHN_Shutdown();
    if (error != PHN_ERROR_NONE)
        return fail("PHN_GetDeviceInfo", error);

    printf("model  %.64s\nnumber %.22s\nserial %.12s\n", device.szModel, device.szNumber, device.szESN);
    return 0;
}
