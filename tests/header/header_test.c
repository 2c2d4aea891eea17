/* A host in C: the records have the sizes that hosts are built against, and calls go through with C's own rules. */
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

static void checkRecords(void)
{
    const unsigned long growth = sizeof(void*) - 4;
    expect("PHN_CONNECTION_INFO", sizeof(PHN_CONNECTION_INFO), 32);
    expect("PHN_NETWORK_INFO", sizeof(PHN_NETWORK_INFO), 80);
    expect("PHN_BATTERY_INFO", sizeof(PHN_BATTERY_INFO), 12);
    expect("PHN_DEVICE_INFO", sizeof(PHN_DEVICE_INFO), 548);
    expect("PHN_ACTIVATION_DATA", sizeof(PHN_ACTIVATION_DATA), 120);
    expect("PHN_PARAMETERS", sizeof(PHN_PARAMETERS), 14);
    expect("PHN_FIELD_SIZES", sizeof(PHN_FIELD_SIZES), 34);
    expect("PHN_CONTACT_RECORD", sizeof(PHN_CONTACT_RECORD), 12 + growth);
    expect("PHN_PICTURE_ID", sizeof(PHN_PICTURE_ID), 72);
    expect("PHN_RINGER_ID", sizeof(PHN_RINGER_ID), 72);
    expect("PHN_GROUP", sizeof(PHN_GROUP), 72);
    expect("PHN_EVENT_RECORD", sizeof(PHN_EVENT_RECORD), 12 + growth);
    expect("PHN_SMS_MESSAGE", sizeof(PHN_SMS_MESSAGE), 18 + growth);
    expect("PHN_CALL_ENTRY", sizeof(PHN_CALL_ENTRY), 84);
}

static void checkCalls(void)
{
    PHN_BATTERY_INFO battery;
    PHN_CONTACT_RECORD contact;
    char text[64];
    battery.uSize = sizeof battery - 1;
    expect("a small record", PHN_GetBatteryInfo(&battery), PHN_ERROR_BUFFER_TOO_SMALL);
    battery.uSize = sizeof battery;
    expect("no handset", PHN_GetBatteryInfo(&battery), PHN_ERROR_NO_DEVICE);
    contact.uSize = sizeof contact;
    contact.pContactData = text;
    contact.uSizeofData = sizeof text;
    expect("a contact", PHN_GetContact(0, &contact), PHN_ERROR_NO_DEVICE);
    expect("a count", PHN_GetMessageCount(PHN_MESSAGE_BOX_LAST), 0);
    expect("a callback", PHN_SetCallback(PHN_CALLBACK_ALL, ignore, 0), PHN_ERROR_NO_DEVICE);
    expect("no callback", PHN_SetCallback(PHN_CALLBACK_ALL, NULL, 0), PHN_ERROR_INVALID_PARAMETER);
    expect("a lock code", PHN_SetLock(1, "12345"), PHN_ERROR_INVALID_LOCK_CODE);
    expect("not implemented", PHN_Upgrade(), PHN_ERROR_NOT_SUPPORTED);
    expect("shutdown", PHN_Shutdown(), PHN_ERROR_NO_DEVICE);
}

int main(void)
{
    checkRecords();
    checkCalls();
    return failures == 0 ? 0 : 1;
}
