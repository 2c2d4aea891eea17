/* A host in C: calls go through with C's own rules. */
#include <stdio.h>

#include "phnnrv.h"

static int failures = 0;

static void expect(const char* what, unsigned long actual, unsigned long expected)
{
    if (actual != expected) {
        fprintf(stderr, "%s: %lu, expected %lu\n", what, actual, expected);
        ++failures;
    }
}

static void PHN_CALL ignore(uint32_t type)
{
    (void)type;
}

int main(void)
{
    PHN_BATTERY_INFO battery;
    battery.uSize = sizeof battery - 1;
    expect("a small record", PHN_GetBatteryInfo(&battery), PHN_ERROR_BUFFER_TOO_SMALL);
    battery.uSize = sizeof battery;
    expect("no handset", PHN_GetBatteryInfo(&battery), PHN_ERROR_NO_DEVICE);
    expect("a count", PHN_GetMessageCount(PHN_MESSAGE_BOX_LAST), 0);
    expect("a callback", PHN_SetCallback(PHN_CALLBACK_ALL, ignore, 0), PHN_ERROR_NO_DEVICE);
    expect("not implemented", PHN_Upgrade(), PHN_ERROR_NOT_SUPPORTED);
    expect("shutdown", PHN_Shutdown(), PHN_ERROR_NO_DEVICE);
    return failures == 0 ? 0 : 1;
}
