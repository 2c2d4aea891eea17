/* The public interface of PHNNRV, a handset plug-in library: 51 functions with which a host program uses one CDMA
 * handset attached by USB or by a serial (Bluetooth) port. It compiles as C and as C++ and needs no other header than
 * <stdint.h>. Everything here is a binary contract with hosts that are already built: a change to a record, a code or
 * an argument list breaks them. phnnrv.abi lists what they rely on. Hosts in C++20 may prefer phnnrv.hpp.
 *
 * CONVENTIONS
 *
 * 1. Return values. Every function returns one unsigned 32-bit value. For all but two it is a PHN_ERROR, 0 on success.
 *    PHN_GetMessageCount and PHN_GetCallEntryCount return a count, and 0 on every failure. There is no other error
 *    channel; the library's log file tells the failed step. Nothing is ever thrown to the host. When memory runs out a
 *    call returns PHN_ERROR_FAILED (the counts 0).
 *    Any function that needs the handset may return, beside the codes listed with it:
 *      PHN_ERROR_NO_DEVICE          no handset is connected
 *      PHN_ERROR_NO_SERVICE_OBJECT  PHN_Startup has not succeeded, or the handset was lost since: call it (again)
 *      PHN_ERROR_FAILED             the exchange failed, the reply was too short or its code is unknown
 *      a code of the reply's status or result (see the codes below), when the handset refused.
 *
 * 2. Order of checks. Arguments first; a call that fails there has written nothing. Then the output area is cleared;
 *    then the handset and the service are looked for; then the handset is asked. After a failure of a later step the
 *    output is cleared or partly filled: only the return value says whether it is valid.
 *
 * 3. Who allocates. The caller, always: records and the buffers they point to. The library keeps no pointer of the
 *    caller beyond the call, except a registered callback function, and returns no memory that has to be freed.
 *
 * 4. uSize. Every record begins with uSize, the number of bytes the caller allocated; set it before every call. It must
 *    be at least the size of the record as declared here, or the call returns PHN_ERROR_BUFFER_TOO_SMALL. A larger
 *    value is accepted and the bytes beyond are left alone. On success the library sets it to the record's own size,
 *    so set it anew when a larger record is used again. PHN_SetParameters leaves uSize as it is.
 *
 * 5. Records are little-endian and byte-packed: some 32-bit fields lie at odd offsets. Sizes in the comments are those
 *    of a 32-bit host. On a 64-bit host a pointer takes 8 bytes and records stay packed (PHN_CONTACT_RECORD and
 *    PHN_EVENT_RECORD 16, PHN_SMS_MESSAGE 22 bytes); sizeof is right everywhere.
 *
 * 6. Text is 8-bit text in the system's ANSI code page (on Linux the one that PHNNRV_ANSI_CODE_PAGE names, 1252 if
 *    unset). What the handset stores beyond that code page is replaced by the code page's default character. A text
 *    field may be filled to its last byte without a terminating zero where its comment says so. Fields named after an
 *    offset (uNetwork0, byte 0 of the handset's record) hold values whose meaning only the handset knows: the library
 *    passes them through.
 *
 * 7. Loading. A USB handset that is there is opened when the library is loaded, on the loading thread. That thread owns
 *    a hidden window and must dispatch window messages for as long as the library is loaded (on Linux with PeekMessageA
 *    and DispatchMessageA of libphnplatform.so): arrival and removal of the handset, power events, the polled callbacks
 *    and the beginning of the search for other handsets, 300 ms after the load, are handled there. The search then runs
 *    on threads of the library: while no handset is open, the serial ports, and behind them the first interface that
 *    nothing announces any more (it was there before the one that went, or another program held it), are tried every
 *    15 s. One handset is served at a time; one that arrives replaces an open one only if that no longer answers. One
 *    that returns is opened, and nothing tells the host so: PHN_Startup waits for it.
 *    A thread that ends takes its window with it, and so callbacks, arrival and removal: keep the loading thread until
 *    the library is unloaded, and unload on it. Unloading ends reads that are in progress and waits for the library's
 *    threads; it takes about a second. Let no call be in progress then.
 *
 * 8. Threads. Every function may be called from any thread. Exchanges with the handset take turns, so a call may first
 *    wait for those before it, the library's own polling and probing included. A listing (first/next) has one cursor
 *    for the whole process: run one listing of a kind at a time.
 *
 * 9. Callbacks. Polled callbacks are called on the loading thread, one at a time, while it dispatches messages; the
 *    removal callback is called on the thread that detects the loss, which may be a thread of the library's. Inside a
 *    callback any function of the library may be called. DO NOT WAIT FOR ANOTHER THREAD INSIDE A CALLBACK (no join, no
 *    SendMessage, no lock that is held around a call of this library): the callback runs under a lock of the library,
 *    and the other thread may need it. A removal callback should neither wait nor dispatch messages (a message box does
 *    both): until it returns, every call of another thread stands still. Set a flag or post a message, and return.
 *    PHN_Startup inside it is lost: the service ends when it returns.
 *    A polled callback that dispatches messages is not called again inside itself: those ticks are left out.
 *    No callback is called after PHN_Shutdown has returned.
 *
 * 10. How long a call may take, once it is its turn. Every call is synchronous.
 *      Diagnostic port: an exchange writes for at most 15 s and reads at most three times, waiting at most 15 s for
 *      each; a reply normally takes some 10 ms, far less with the registry's value "Prompt Reads" (docs/hosting.md).
 *      PHN_DeleteAllContacts and PHN_DeleteAllMessages wait at most 301 s for each of the three reads.
 *      PHN_Startup waits up to 15 s for a handset before its two exchanges.
 *      PHN_GetFirstMessage makes two exchanges; for list 1 PHN_GetCallEntryCount and PHN_ClearCallEntries make two, and
 *      PHN_GetFirstCallEntry and PHN_GetNextCallEntry up to two.
 *      PHN_SetCallback and PHN_GetNetworkErrorString make none; PHN_SetCallback waits for a callback that is running.
 *      Modem port (used when the handset offers no diagnostic port): a read ends 7 s after the last byte that came; one
 *      that gets no byte at all is bounded only by 7000 ms for each byte asked for, up to 50001 of them (four days).
 *      Removal of the handset and unloading end it at once.
 *      A removal ends every exchange in progress with PHN_ERROR_FAILED.
 *
 * 11. Mistakes. With the registry's value "Check Host" (on Linux also PHNNRV_CHECK_HOST=1) the library tells in its log
 *    what a host does against conventions 4, 7 and 9. docs/hosting.md lists it, and says more about all of this.
 */
#ifndef PHNNRV_H
#define PHNNRV_H

#include <stdint.h>

/* The version of the library that this header came with; 0.1.0 is 100. The build takes its own from here. */
#define PHNNRV_VERSION_MAJOR 0
#define PHNNRV_VERSION_MINOR 1
#define PHNNRV_VERSION_PATCH 0
#define PHNNRV_VERSION (PHNNRV_VERSION_MAJOR * 10000 + PHNNRV_VERSION_MINOR * 100 + PHNNRV_VERSION_PATCH)

#if defined(_WIN32)
#define PHN_CALL __cdecl
#if defined(PHN_BUILD_LIBRARY)
#define PHN_API __declspec(dllexport)
#else
#define PHN_API __declspec(dllimport)
#endif
#else
#define PHN_CALL
#define PHN_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
#define PHN_NOEXCEPT noexcept
extern "C" {
#else
#define PHN_NOEXCEPT
#endif

/* ---- Error codes ------------------------------------------------------------------------------------------------- */

typedef uint32_t PHN_ERROR;

/* The names PHN_ERROR_STATUS_n and PHN_ERROR_RESULT_n stand for refusals whose meaning only the handset knows: n is the
 * status of its reply header, or the result in its reply record. Where a code has two causes the second is in brackets.
 * A status or result that is not listed here is reported as PHN_ERROR_FAILED. */
enum
{
    PHN_ERROR_NONE = 0,
    PHN_ERROR_INVALID_PARAMETER = 1, /* null pointer, empty buffer, type out of range, text rejected [result 8] */
    PHN_ERROR_STATUS_12 = 2,
    PHN_ERROR_NO_DEVICE = 100,     /* no handset is connected */
    PHN_ERROR_COMMUNICATION = 101, /* the greeting of PHN_Startup failed [result 3] */
    PHN_ERROR_STATUS_7 = 102,
    PHN_ERROR_NOT_SUPPORTED = 103,     /* function, callback type or handset model not supported */
    PHN_ERROR_FAILED = 104,            /* exchange failed, reply too short or not understood, out of memory */
    PHN_ERROR_NO_SERVICE_OBJECT = 107, /* PHN_Startup has not succeeded since the handset was found [status 4] */
    PHN_ERROR_NOT_AUTOMATIC = 200,     /* PHN_Activate with bAutomatic 0 [status 5] */
    PHN_ERROR_STATUS_6 = 201,
    PHN_ERROR_STATUS_8 = 202,
    PHN_ERROR_INVALID_LOCK_CODE = 203, /* a lock code that is not 4 characters long [status 10: a wrong lock code] */
    PHN_ERROR_STATUS_11 = 204,
    PHN_ERROR_ACTIVATION_STARTED = 205, /* success of PHN_Activate [status 9] */
    PHN_ERROR_BUFFER_TOO_SMALL = 300,   /* uSize below the record's size, or a text buffer too small for the text */
    PHN_ERROR_NO_MORE_MESSAGES = 301,   /* the listing is over, not begun, or the box is empty [result 100] */
    PHN_ERROR_MESSAGE_NOT_FOUND = 302,  /* the message operations' form of PHN_ERROR_NOT_FOUND */
    PHN_ERROR_NO_MORE_ENTRIES = 303,    /* the call listing is over, not begun, or the list is empty [result 5] */
    PHN_ERROR_NOT_FOUND = 304,          /* nothing is stored under this index [result 1] */
    PHN_ERROR_RESULT_2 = 305,
    PHN_ERROR_RESULT_4 = 306 /* such as a full store */
};

/* Network errors: why the last call ended (uNetworkError of PHN_CONNECTION_INFO), and the handset's results 101 to 108,
 * which give 1000 to 1006 and 1031. PHN_GetNetworkErrorString has their texts. */
enum
{
    PHN_NETWORK_ERROR_1X_CO_NO_SERVICE = 1000,
    PHN_NETWORK_ERROR_1X_CO_ACCESS_FAILURE = 1001, /* also: an address or call-back number that cannot be decoded */
    PHN_NETWORK_ERROR_1X_CO_CANNOT_ORIGINATE = 1002,
    PHN_NETWORK_ERROR_1X_CO_REDIRECTION = 1003,
    PHN_NETWORK_ERROR_1X_CO_HANDOFF = 1004,
    PHN_NETWORK_ERROR_1X_CO_IN_PROGRESS = 1005,
    PHN_NETWORK_ERROR_1X_CO_PRIORITY_INBOUND = 1006,
    PHN_NETWORK_ERROR_1X_CO_LOCKED = 1007,
    PHN_NETWORK_ERROR_1X_CO_INCOMPATIBLE_SERVICES = 1008,
    PHN_NETWORK_ERROR_1X_CO_CONCURRENT_NOT_SUPPORTED = 1009,
    PHN_NETWORK_ERROR_1X_CO_NO_RESPONSE = 1010,
    PHN_NETWORK_ERROR_1X_CO_REJECT = 1011,
    PHN_NETWORK_ERROR_1X_CO_SO_NOT_SUPPORTED = 1012,
    PHN_NETWORK_ERROR_1X_CO_CHANNEL_OPEN = 1013,
    PHN_NETWORK_ERROR_1X_CO_ALERT_STOP = 1014,
    PHN_NETWORK_ERROR_1X_CO_MAX_ACCESS = 1015,
    PHN_NETWORK_ERROR_1X_CO_ACTIVATION_NOT_AVAILABLE = 1016,
    PHN_NETWORK_ERROR_1X_CO_INTERCEPT = 1017,
    PHN_NETWORK_ERROR_1X_CO_REORDER = 1018,
    PHN_NETWORK_ERROR_1X_CO_OTHER = 1019,
    PHN_NETWORK_ERROR_1X_RELEASE_FADE = 1020,
    PHN_NETWORK_ERROR_1X_RELEASE_NO_REASON = 1021,
    PHN_NETWORK_ERROR_1X_RELEASE_SO_NOT_SUPPORTED = 1022,
    PHN_NETWORK_ERROR_1X_PROTOCOL_FAILURE = 1023,
    PHN_NETWORK_ERROR_1X_REDIRECT_TO_EVDO = 1024,
    PHN_NETWORK_ERROR_1X_FADE = 1025,
    PHN_NETWORK_ERROR_1X_USER_DISCONNECTED = 1026,
    PHN_NETWORK_ERROR_1X_OTASP_ENDED = 1027,
    PHN_NETWORK_ERROR_1X_ENDED_FOR_VOICE = 1028,
    PHN_NETWORK_ERROR_1X_E911_CALL_ENDED = 1029,
    PHN_NETWORK_ERROR_1X_E911_EMERGENCY_CALL = 1030,
    PHN_NETWORK_ERROR_1X_E911_GPS_FIX = 1031,

    PHN_NETWORK_ERROR_WCDMA_NO_SERVICE = 2000,
    PHN_NETWORK_ERROR_WCDMA_PROTOCOL_FAILURE = 2001,
    PHN_NETWORK_ERROR_WCDMA_ORIGINATION_FAILURE = 2002,
    PHN_NETWORK_ERROR_WCDMA_INCOMMING_REJECTED = 2003,
    PHN_NETWORK_ERROR_WCDMA_NETWORK_DISCONNECTED = 2004,
    PHN_NETWORK_ERROR_WCDMA_USER_DISCONNECTED = 2005,

    PHN_NETWORK_ERROR_EVDO_CO_NO_SERVICE = 3000,
    PHN_NETWORK_ERROR_EVDO_CO_ACCESS_FAILURE = 3001,
    PHN_NETWORK_ERROR_EVDO_CO_REDIRECTION = 3002,
    PHN_NETWORK_ERROR_EVDO_CO_NOT_PREFERRED = 3003,
    PHN_NETWORK_ERROR_EVDO_CO_MODE_HANDOFF = 3004,
    PHN_NETWORK_ERROR_EVDO_CO_IN_PROGRESS = 3005,
    PHN_NETWORK_ERROR_EVDO_CO_SETUP_TIMEOUT = 3006,
    PHN_NETWORK_ERROR_EVDO_CO_SESSION_NOT_OPEN = 3007,
    PHN_NETWORK_ERROR_EVDO_RELEASE_NO_REASON = 3008,
    PHN_NETWORK_ERROR_EVDO_PROTOCOL_FAILURE = 3009,
    PHN_NETWORK_ERROR_EVDO_DENY_NO_REASON = 3010,
    PHN_NETWORK_ERROR_EVDO_DENY_NETWORK_BUSY = 3011,
    PHN_NETWORK_ERROR_EVDO_DENY_AUTHENTICATION = 3012,
    PHN_NETWORK_ERROR_EVDO_REDIRECT_TO_1X = 3013,
    PHN_NETWORK_ERROR_EVDO_FADE = 3014,
    PHN_NETWORK_ERROR_EVDO_USER_DISCONNECTED = 3015,
    PHN_NETWORK_ERROR_EVDO_GPS_FIX = 3016
};

/* Further refusals by the handset: its results 109 to 148. They have no text. The two named ones also come from the
 * library itself, when a PDU handed to PHN_SendMessage or PHN_SaveMessage cannot be used. */
enum
{
    PHN_ERROR_RESULT_109 = 1032,
    PHN_ERROR_RESULT_110 = 1033,
    PHN_ERROR_RESULT_111 = 1034,
    PHN_ERROR_RESULT_112 = 1035,
    PHN_ERROR_RESULT_113 = 1036,
    PHN_ERROR_RESULT_114 = 1037,
    PHN_ERROR_RESULT_115 = 1038,
    PHN_ERROR_RESULT_116 = 1039,
    PHN_ERROR_RESULT_117 = 1040,
    PHN_ERROR_RESULT_118 = 1047,
    PHN_ERROR_RESULT_119 = 1048,
    PHN_ERROR_RESULT_120 = 1063,
    PHN_ERROR_RESULT_121 = 1064,
    PHN_ERROR_RESULT_122 = 1065,
    PHN_ERROR_RESULT_123 = 1066,
    PHN_ERROR_RESULT_124 = 1067,
    PHN_ERROR_RESULT_125 = 1095,
    PHN_ERROR_RESULT_126 = 1096,
    PHN_ERROR_RESULT_127 = 1097,
    PHN_ERROR_RESULT_128 = 1098,
    PHN_ERROR_RESULT_129 = 1099,
    PHN_ERROR_RESULT_130 = 1100,
    PHN_ERROR_RESULT_131 = 1101,
    PHN_ERROR_RESULT_132 = 1102,
    PHN_ERROR_PDU_NO_DESTINATION = 1103, /* the PDU has no Destination Address [result 133] */
    PHN_ERROR_RESULT_134 = 1104,
    PHN_ERROR_PDU_NOT_DECODABLE = 1105, /* not point-to-point, or an item of it is not whole or readable [result 135] */
    PHN_ERROR_RESULT_136 = 1106,
    PHN_ERROR_RESULT_137 = 1107,
    PHN_ERROR_RESULT_138 = 1108,
    PHN_ERROR_RESULT_139 = 1255,
    PHN_ERROR_RESULT_140 = 1769,
    PHN_ERROR_RESULT_141 = 1770,
    PHN_ERROR_RESULT_142 = 1771,
    PHN_ERROR_RESULT_143 = 1772,
    PHN_ERROR_RESULT_144 = 1773,
    PHN_ERROR_RESULT_145 = 1774,
    PHN_ERROR_RESULT_146 = 1775,
    PHN_ERROR_RESULT_147 = 1777,
    PHN_ERROR_RESULT_148 = 1778
};

/* ---- Selectors --------------------------------------------------------------------------------------------------- */

/* eType of the message functions selects one of the handset's message boxes, 0 to PHN_MESSAGE_BOX_LAST. What each box
 * holds is the handset's. (On the wire 1 and 2 change places.) */
enum
{
    PHN_MESSAGE_BOX_FIRST = 0,
    PHN_MESSAGE_BOX_LAST = 4
};

/* eType of the call functions selects one of the handset's call lists; type 1 joins two lists of the handset. What each
 * list holds is the handset's. Type 3 is in range but names no list: its count is 0, its first entry
 * PHN_ERROR_NO_MORE_ENTRIES, and clearing it PHN_ERROR_INVALID_PARAMETER. */
enum
{
    PHN_CALL_LIST_FIRST = 0,
    PHN_CALL_LIST_NONE = 3,
    PHN_CALL_LIST_LAST = 3
};

/* Callback types: eCallbackType of PHN_SetCallback, and the argument of the host's function. All but the removal are
 * polled every 2 s. Values 6 to 8 and 11 to 16 are PHN_ERROR_NOT_SUPPORTED. */
enum
{
    PHN_CALLBACK_ALL = 0,             /* in PHN_SetCallback only: every type below */
    PHN_CALLBACK_CONNECTION_INFO = 1, /* fetch with PHN_GetConnectionInfo */
    PHN_CALLBACK_STATE_INFO = 2,      /* the handset's state */
    PHN_CALLBACK_NETWORK_INFO = 3,    /* fetch with PHN_GetNetworkInfo */
    PHN_CALLBACK_BATTERY_INFO = 4,    /* fetch with PHN_GetBatteryInfo */
    PHN_CALLBACK_SMS = 5,             /* ask PHN_GetMessageCount */
    PHN_CALLBACK_ACTIVATION = 9,      /* progress of an activation that PHN_Activate has started */
    PHN_CALLBACK_REMOVED = 10,        /* the handset was lost; every registration ends with it */
    PHN_CALLBACK_LAST = 16
};

/* A host function that is told what changed. See conventions 8 and 9 for its thread and what it must not do. */
typedef void(PHN_CALL* PHN_CALLBACK_FUNCTION)(uint32_t uCallbackType);

/* ---- Records ----------------------------------------------------------------------------------------------------- */

#pragma pack(push, 1)

typedef struct PHN_CONNECTION_INFO /* 32 bytes */
{
    uint32_t uSize;
    uint32_t uConnection0;
    uint32_t uConnection4;
    uint32_t uConnection8;
    uint32_t uConnection12;
    uint32_t uConnection16;
    uint32_t uNetworkError; /* why the last call ended: a PHN_NETWORK_ERROR code, 0 for none */
    uint32_t uConnection18;
} PHN_CONNECTION_INFO;

typedef struct PHN_NETWORK_INFO /* 80 bytes */
{
    uint32_t uSize;
    uint32_t uNetwork0;
    uint32_t uNetwork4;
    uint32_t uNetwork5;
    uint16_t wNetwork6;
    uint16_t wNetwork8;
    uint16_t wNetwork10;
    uint16_t wNetwork12;
    uint16_t wNetwork14;
    uint16_t wNetwork16;
    uint16_t wNetwork18;
    uint32_t uNetwork20;
    int32_t nNetwork22;   /* magnitude of a signed value: -85 arrives as 85 */
    char szNetwork26[34]; /* text, always terminated: a text that fills the field loses its last character */
    int32_t nNetwork60;   /* magnitude, likewise */
    uint32_t uNetwork64;
} PHN_NETWORK_INFO;

typedef struct PHN_BATTERY_INFO /* 12 bytes */
{
    uint32_t uSize;
    uint32_t uBattery1;
    uint32_t uBattery2;
} PHN_BATTERY_INFO;

typedef struct PHN_DEVICE_INFO /* 548 bytes */
{
    uint32_t uSize;
    char szNumber[22]; /* the handset's own number, terminated */
    char szESN[12];    /* electronic serial number: 3 digits manufacturer, 8 digits serial number, terminated */
    uint32_t uInfo19;
    char szInfo20[64];   /* unterminated when it fills the field */
    char szModel[64];    /* model name, likewise */
    char szInfo148[64];  /* likewise */
    char szInfo212[192]; /* a 32-bit value in upper-case hexadecimal, terminated */
    char szInfo216[22];  /* unterminated when it fills the field */
    uint32_t uInfo238;
    uint32_t uInfo242;
    uint32_t uInfo246;
    uint32_t uInfo250;
    uint32_t uInfo251;
    uint8_t abyReserved468[64]; /* 0 */
    char szInfo253[16];         /* unterminated when it fills the field */
} PHN_DEVICE_INFO;

typedef struct PHN_ACTIVATION_DATA /* 120 bytes */
{
    uint32_t uSize;
    uint32_t bAutomatic;       /* nonzero; the handset dials the provisioning service by itself */
    uint8_t abyReserved8[112]; /* neither read nor written */
} PHN_ACTIVATION_DATA;

typedef struct PHN_PARAMETERS /* 14 bytes */
{
    uint32_t uSize;
    uint32_t uParameter1; /* the low byte is written */
    uint32_t uParameter2; /* the low byte is written */
    uint16_t wParameter3;
} PHN_PARAMETERS;

typedef struct PHN_FIELD_SIZES /* 34 bytes: sizes of the handset's phonebook, as it reports them */
{
    uint32_t uSize;
    uint16_t wFieldSize1;
    uint16_t wFieldSize2;
    uint16_t wFieldSize3;
    uint16_t wFieldSize4;
    uint16_t wFieldSize5;
    uint16_t wFieldSize6;
    uint16_t wFieldSize7;
    uint32_t dwFieldSize8;
    uint32_t dwFieldSize9;
    uint32_t dwFieldSize10;
    uint32_t dwFieldSize11;
} PHN_FIELD_SIZES;

/* A contact as vCard text: version 3.0 framing, CR LF line ends, no folding, no escaping. Properties: BEGIN, VERSION,
 * FN, TEL;TYPE=CELL, X-PHN-MOBILE-2, TEL;TYPE=HOME, TEL;TYPE=WORK, TEL;TYPE=FAX, EMAIL, X-PHN-EMAIL-2,
 * X-PHN-GROUP-ID, X-PHN-PICTURE-ID, X-PHN-RINGER-ID, X-PHN-DEFAULT-NO (1 mobile, 2 home, 3 work, 4 second mobile,
 * 5 fax), X-PHN-SPEEDDIAL-LIST (five numbers in that order, joined by commas), END. BEGIN, VERSION, FN, END and a
 * number or an address are required; end every line, the last one included. The text written by the library has REV and
 * UID beside these, and at most 4095 characters. */
typedef struct PHN_CONTACT_RECORD /* 12 bytes (16 on a 64-bit host) */
{
    uint32_t uSize;
    char* pContactData;   /* the caller's text buffer */
    uint32_t uSizeofData; /* reading: the buffer's size in bytes; writing: the text's length in bytes */
} PHN_CONTACT_RECORD;

typedef struct PHN_PICTURE_ID /* 72 bytes */
{
    uint32_t uSize;
    uint32_t dwID;   /* the id that was asked for; set on failure, too, once the handset was asked */
    char szName[64]; /* display name, unterminated when it fills the field */
} PHN_PICTURE_ID;

typedef PHN_PICTURE_ID PHN_RINGER_ID;
typedef PHN_PICTURE_ID PHN_GROUP;

/* A calendar event as iCalendar text: one VEVENT inside a VCALENDAR, CR LF line ends. VERSION, DESCRIPTION, DTSTART and
 * DTEND are required. */
typedef struct PHN_EVENT_RECORD /* 12 bytes (16 on a 64-bit host) */
{
    uint32_t uSize;
    char* pCalendarData;  /* the caller's text buffer */
    uint32_t uSizeofData; /* reading: the buffer's size in bytes; writing: the text's length in bytes */
} PHN_EVENT_RECORD;

/* A short message as a TIA/EIA-637 transport-layer PDU. Outgoing: point-to-point, Destination Address in 4-bit DTMF
 * form, User Data in 7-bit ASCII; Priority Indicator, Reply Option and Call-Back Number are understood. */
typedef struct PHN_SMS_MESSAGE /* 18 bytes (22 on a 64-bit host) */
{
    uint32_t uSize;
    uint8_t* pIS637Data;  /* the caller's PDU buffer */
    uint32_t uSizeofData; /* in: the PDU's length (send, save) or the buffer's size (read); out of a read: the length */
    uint32_t uIndexValid; /* set to 1 when wIndex has been filled */
    uint16_t wIndex;      /* the message's index on the handset */
} PHN_SMS_MESSAGE;

typedef struct PHN_CALL_ENTRY /* 84 bytes */
{
    uint32_t uSize;
    char szEntryText[22]; /* unterminated when it fills the field */
    uint32_t uEntry8;     /* the handset's value times 1000 */
    uint8_t abyReserved30[20];
    uint16_t wEntry18; /* year; this and the next as the handset has them, in whatever time zone */
    uint16_t wEntry17; /* month */
    uint16_t wEntry16; /* day */
    uint16_t wEntry12; /* hour */
    uint16_t wEntry13; /* minute */
    uint16_t wEntry14; /* second */
    uint8_t abyReserved62[22];
} PHN_CALL_ENTRY;

#pragma pack(pop)

/* ---- Service ----------------------------------------------------------------------------------------------------- */

/* Waits up to 15 s for a handset, greets it and makes the other functions work. Call it on the loading thread, which
 * keeps handling arrivals meanwhile, or let that thread dispatch. A serial handset may be found only after the first
 * wait is over: call again. Calling it while started repeats the greeting and keeps everything, unless it fails behind
 * the greeting: then the service has ended.
 * PHN_ERROR_NO_DEVICE: none came; PHN_ERROR_COMMUNICATION: it did not answer; PHN_ERROR_NOT_SUPPORTED: its model is not
 * served, or could not be read; PHN_ERROR_FAILED: out of memory. */
PHN_API PHN_ERROR PHN_CALL PHN_Startup(void) PHN_NOEXCEPT;

/* Says goodbye to the handset and ends all service: callbacks, listings and the map of contact indexes. The library
 * keeps watching the port; PHN_Startup starts again. Returns 0 even if the handset does not answer the goodbye;
 * PHN_ERROR_NO_DEVICE; PHN_ERROR_NO_SERVICE_OBJECT when not started. */
PHN_API PHN_ERROR PHN_CALL PHN_Shutdown(void) PHN_NOEXCEPT;

/* ---- Status ------------------------------------------------------------------------------------------------------ */

/* State of the data connection. PHN_ERROR_INVALID_PARAMETER: null; PHN_ERROR_BUFFER_TOO_SMALL: uSize. */
PHN_API PHN_ERROR PHN_CALL PHN_GetConnectionInfo(PHN_CONNECTION_INFO* pConnectionInfo) PHN_NOEXCEPT;

/* Network and signal. PHN_ERROR_INVALID_PARAMETER: null; PHN_ERROR_BUFFER_TOO_SMALL: uSize. */
PHN_API PHN_ERROR PHN_CALL PHN_GetNetworkInfo(PHN_NETWORK_INFO* pNetworkInfo) PHN_NOEXCEPT;

/* Battery. PHN_ERROR_INVALID_PARAMETER: null; PHN_ERROR_BUFFER_TOO_SMALL: uSize. */
PHN_API PHN_ERROR PHN_CALL PHN_GetBatteryInfo(PHN_BATTERY_INFO* pBatteryInfo) PHN_NOEXCEPT;

/* The name and text of a network error code, such as "PHN_NETWORK_ERROR_1X_FADE, Fade", zero-terminated, into a buffer
 * of nBufferSize bytes, all of which are cleared first. 128 bytes hold every text. Asks the handset nothing, but one
 * must be connected and started. PHN_ERROR_INVALID_PARAMETER: null, size 0 or less, or a code without a text;
 * PHN_ERROR_BUFFER_TOO_SMALL: no room for text and terminator. */
PHN_API PHN_ERROR PHN_CALL PHN_GetNetworkErrorString(int32_t eError, char* pBuffer, int32_t nBufferSize) PHN_NOEXCEPT;

/* ---- Setup ------------------------------------------------------------------------------------------------------- */

/* Number, serial number, model and versions. PHN_ERROR_INVALID_PARAMETER: null; PHN_ERROR_BUFFER_TOO_SMALL: uSize. */
PHN_API PHN_ERROR PHN_CALL PHN_GetDeviceInfo(PHN_DEVICE_INFO* pDeviceInfo) PHN_NOEXCEPT;

/* Starts over-the-air service provisioning. Success is PHN_ERROR_ACTIVATION_STARTED, never 0; progress comes with
 * PHN_CALLBACK_ACTIVATION. PHN_ERROR_INVALID_PARAMETER: null; PHN_ERROR_BUFFER_TOO_SMALL: uSize;
 * PHN_ERROR_NOT_AUTOMATIC: bAutomatic is 0. */
PHN_API PHN_ERROR PHN_CALL PHN_Activate(PHN_ACTIVATION_DATA* pActivationData) PHN_NOEXCEPT;

/* Switches the radio on (1) or off (0); the low byte of the value is sent. */
PHN_API PHN_ERROR PHN_CALL PHN_SetRadioPower(uint32_t uRadioState) PHN_NOEXCEPT;

/* Locks (1) or unlocks (0) the phone; the low byte of the value is sent. The lock code is a zero-terminated string of
 * exactly four characters, whatever they are. PHN_ERROR_INVALID_PARAMETER: null; PHN_ERROR_INVALID_LOCK_CODE: another
 * length, or the handset refuses the code. */
PHN_API PHN_ERROR PHN_CALL PHN_SetLock(uint32_t uLock, const char* pExistingLockCode) PHN_NOEXCEPT;

/* Replaces the lock code; both are strings of exactly four characters. Codes as PHN_SetLock. */
PHN_API PHN_ERROR PHN_CALL PHN_ChangeLockCode(const char* pExistingLockCode, const char* pNewLockCode) PHN_NOEXCEPT;

/* Reads the three phone parameters. PHN_ERROR_INVALID_PARAMETER: null; PHN_ERROR_BUFFER_TOO_SMALL: uSize. */
PHN_API PHN_ERROR PHN_CALL PHN_GetParameters(PHN_PARAMETERS* pParameters) PHN_NOEXCEPT;

/* Writes the three phone parameters. PHN_ERROR_INVALID_PARAMETER: null; PHN_ERROR_BUFFER_TOO_SMALL: uSize. */
PHN_API PHN_ERROR PHN_CALL PHN_SetParameters(PHN_PARAMETERS* pParameters) PHN_NOEXCEPT;

/* ---- Phonebook ---------------------------------------------------------------------------------------------------
 * The host numbers contacts by an index of its own. From PHN_Startup to PHN_Shutdown the library remembers which record
 * of the handset an index stands for; an index it has not met is taken for the handset's record number. */

/* The phonebook's sizes. PHN_ERROR_INVALID_PARAMETER: null; PHN_ERROR_BUFFER_TOO_SMALL: uSize. */
PHN_API PHN_ERROR PHN_CALL PHN_GetFieldSizes(PHN_FIELD_SIZES* pFieldSizes) PHN_NOEXCEPT;

/* Reads a contact as zero-terminated vCard text into pContactData, all of whose uSizeofData bytes are cleared first.
 * PHN_ERROR_INVALID_PARAMETER: null record or buffer, size 0, or an index beyond the handset's capacity;
 * PHN_ERROR_BUFFER_TOO_SMALL: uSize; PHN_ERROR_NOT_FOUND: no contact there; PHN_ERROR_FAILED: also when the text does
 * not fit the buffer. */
PHN_API PHN_ERROR PHN_CALL PHN_GetContact(uint32_t uIndex, PHN_CONTACT_RECORD* pRecord) PHN_NOEXCEPT;

/* Adds or replaces a contact from vCard text of uSizeofData bytes. PHN_ERROR_INVALID_PARAMETER: null, or a text that is
 * rejected; PHN_ERROR_BUFFER_TOO_SMALL: uSize; PHN_ERROR_RESULT_4: such as a full phonebook. */
PHN_API PHN_ERROR PHN_CALL PHN_SetContact(uint32_t uIndex, PHN_CONTACT_RECORD* pRecord) PHN_NOEXCEPT;

/* Deletes one contact; waits 40 ms before asking. PHN_ERROR_NOT_FOUND, PHN_ERROR_INVALID_PARAMETER: refused by the
 * handset. */
PHN_API PHN_ERROR PHN_CALL PHN_DeleteContact(uint32_t uIndex) PHN_NOEXCEPT;

/* Deletes all contacts and forgets every index. May take minutes: see convention 10. */
PHN_API PHN_ERROR PHN_CALL PHN_DeleteAllContacts(void) PHN_NOEXCEPT;

/* The display names of a picture, a ringer and a group, by the id that contacts use. uSize and dwID are set as soon as
 * the handset was asked. PHN_ERROR_INVALID_PARAMETER: null; PHN_ERROR_BUFFER_TOO_SMALL: uSize; PHN_ERROR_NOT_FOUND. */
PHN_API PHN_ERROR PHN_CALL PHN_GetPictureID(uint32_t uIndex, PHN_PICTURE_ID* pPictureID) PHN_NOEXCEPT;
PHN_API PHN_ERROR PHN_CALL PHN_GetRingerID(uint32_t uIndex, PHN_RINGER_ID* pRingTone) PHN_NOEXCEPT;
PHN_API PHN_ERROR PHN_CALL PHN_GetGroup(uint32_t uIndex, PHN_GROUP* pGroup) PHN_NOEXCEPT;

/* ---- Calendar ----------------------------------------------------------------------------------------------------
 * The index of an event is the handset's. */

/* Reads an event as zero-terminated iCalendar text into pCalendarData, all of whose uSizeofData bytes are cleared
 * first. PHN_ERROR_INVALID_PARAMETER: null record or buffer, or size 0; PHN_ERROR_BUFFER_TOO_SMALL: uSize, or a buffer
 * that is too small: then uSizeofData holds the text's length without its terminator; PHN_ERROR_NOT_FOUND: no event
 * there. */
PHN_API PHN_ERROR PHN_CALL PHN_GetEvent(uint32_t uIndex, PHN_EVENT_RECORD* pRecord) PHN_NOEXCEPT;

/* Stores the event of the iCalendar text. PHN_ERROR_INVALID_PARAMETER: null record or buffer, size 0, or a text that is
 * rejected; PHN_ERROR_BUFFER_TOO_SMALL: uSize. */
PHN_API PHN_ERROR PHN_CALL PHN_SetEvent(uint32_t uIndex, PHN_EVENT_RECORD* pRecord) PHN_NOEXCEPT;

/* Deletes one event. PHN_ERROR_NOT_FOUND, PHN_ERROR_INVALID_PARAMETER: refused by the handset. */
PHN_API PHN_ERROR PHN_CALL PHN_DeleteEvent(uint32_t uIndex) PHN_NOEXCEPT;

/* Deletes all events. */
PHN_API PHN_ERROR PHN_CALL PHN_DeleteAllEvents(void) PHN_NOEXCEPT;

/* ---- Messages ----------------------------------------------------------------------------------------------------
 * Every function but the two of the listing ends a listing in progress. Message indexes are the handset's, 16 bits.
 * A PDU that is read holds teleservice, originating address, message identifier, priority, reply option, time stamp in
 * local time, call-back number and text, as far as the handset stores them. Its address is in 8-bit form: it cannot be
 * sent as it is. */

/* Number of messages in a box; 0 also on every failure, a type out of range included. */
PHN_API uint32_t PHN_CALL PHN_GetMessageCount(int32_t eType) PHN_NOEXCEPT;

/* Sends a message. On success wIndex is its index and uIndexValid 1. PHN_ERROR_INVALID_PARAMETER: null record or PDU,
 * or length 0; PHN_ERROR_BUFFER_TOO_SMALL: uSize; PHN_ERROR_PDU_NOT_DECODABLE, PHN_ERROR_PDU_NO_DESTINATION,
 * PHN_NETWORK_ERROR_1X_CO_ACCESS_FAILURE: the PDU cannot be used (its User Data, its destination, or an address or
 * call-back number in it, of 36 digits at most). */
PHN_API PHN_ERROR PHN_CALL PHN_SendMessage(PHN_SMS_MESSAGE* pMessage) PHN_NOEXCEPT;

/* Saves a message without sending it. As PHN_SendMessage. */
PHN_API PHN_ERROR PHN_CALL PHN_SaveMessage(PHN_SMS_MESSAGE* pMessage) PHN_NOEXCEPT;

/* Starts a listing and reads the first message of a box into pIS637Data, all of whose uSizeofData bytes are cleared
 * first; 512 bytes hold any PDU. uSizeofData becomes the PDU's length: set it anew before the next call.
 * PHN_ERROR_INVALID_PARAMETER: null record or buffer, size 0, or a type out of range; PHN_ERROR_BUFFER_TOO_SMALL:
 * uSize, or a buffer that is too small: then uSizeofData holds the PDU's length, and the same call with a larger buffer
 * brings the same message; PHN_ERROR_NO_MORE_MESSAGES: the box is empty. */
PHN_API PHN_ERROR PHN_CALL PHN_GetFirstMessage(int32_t eType, PHN_SMS_MESSAGE* pMessage) PHN_NOEXCEPT;

/* Reads the next message of the listing. As PHN_GetFirstMessage; PHN_ERROR_NO_MORE_MESSAGES: the listing is over, or
 * none was begun. */
PHN_API PHN_ERROR PHN_CALL PHN_GetNextMessage(PHN_SMS_MESSAGE* pMessage) PHN_NOEXCEPT;

/* Deletes one message, by the low 16 bits of the index. PHN_ERROR_MESSAGE_NOT_FOUND. */
PHN_API PHN_ERROR PHN_CALL PHN_DeleteMessage(uint32_t uIndex) PHN_NOEXCEPT;

/* Deletes all messages of a box. May take minutes: see convention 10. PHN_ERROR_INVALID_PARAMETER: type out of range.
 */
PHN_API PHN_ERROR PHN_CALL PHN_DeleteAllMessages(int32_t eType) PHN_NOEXCEPT;

/* Marks a message as read (nonzero) or unread (0), by the low 16 bits of the index. PHN_ERROR_MESSAGE_NOT_FOUND. */
PHN_API PHN_ERROR PHN_CALL PHN_SetMessageStatus(uint32_t uIndex, uint32_t bRead) PHN_NOEXCEPT;

/* ---- Calls ------------------------------------------------------------------------------------------------------- */

/* Number of entries in a call list; 0 also on every failure, a type out of range included. Ends a listing. */
PHN_API uint32_t PHN_CALL PHN_GetCallEntryCount(int32_t eType) PHN_NOEXCEPT;

/* Starts a listing and reads the first entry of a list. PHN_ERROR_INVALID_PARAMETER: null or a type out of range;
 * PHN_ERROR_BUFFER_TOO_SMALL: uSize; PHN_ERROR_NO_MORE_ENTRIES: the list is empty. */
PHN_API PHN_ERROR PHN_CALL PHN_GetFirstCallEntry(int32_t eType, PHN_CALL_ENTRY* pEntry) PHN_NOEXCEPT;

/* Reads the next entry of the listing. PHN_ERROR_INVALID_PARAMETER: null; PHN_ERROR_BUFFER_TOO_SMALL: uSize;
 * PHN_ERROR_NO_MORE_ENTRIES: the listing is over, or none was begun. */
PHN_API PHN_ERROR PHN_CALL PHN_GetNextCallEntry(PHN_CALL_ENTRY* pEntry) PHN_NOEXCEPT;

/* Clears a call list. PHN_ERROR_INVALID_PARAMETER: type out of range, or 3. */
PHN_API PHN_ERROR PHN_CALL PHN_ClearCallEntries(int32_t eType) PHN_NOEXCEPT;

/* ---- Callbacks --------------------------------------------------------------------------------------------------- */

/* Registers (bRemove 0) or removes (any other value) the function for a callback type. A second registration does not
 * replace the first and succeeds: remove it before. Registrations end with PHN_Shutdown and with the loss of the
 * handset. PHN_ERROR_INVALID_PARAMETER: null (also when removing), or a type outside 0 to 16; PHN_ERROR_NOT_SUPPORTED:
 * a type without callback; PHN_ERROR_FAILED: the poll cannot be started (the loading thread has ended), nothing is
 * registered.
 */
PHN_API PHN_ERROR PHN_CALL PHN_SetCallback(int32_t eCallbackType, PHN_CALLBACK_FUNCTION pCallbackFunction,
                                           uint32_t bRemove) PHN_NOEXCEPT;

/* ---- Functions without implementation ----------------------------------------------------------------------------
 * They ignore their arguments and return PHN_ERROR_NOT_SUPPORTED. The caller removes the arguments, so a host that
 * declares argument lists of its own may keep them. */

PHN_API PHN_ERROR PHN_CALL PHN_CheckForUpgrade(void) PHN_NOEXCEPT;
PHN_API PHN_ERROR PHN_CALL PHN_GetLocationInfo(void) PHN_NOEXCEPT;
PHN_API PHN_ERROR PHN_CALL PHN_GetMassStorageMode(void) PHN_NOEXCEPT;
PHN_API PHN_ERROR PHN_CALL PHN_GetNDISMode(void) PHN_NOEXCEPT;
PHN_API PHN_ERROR PHN_CALL PHN_PlayRingerID(void) PHN_NOEXCEPT;
PHN_API PHN_ERROR PHN_CALL PHN_SetCallbackExtended(void) PHN_NOEXCEPT;
PHN_API PHN_ERROR PHN_CALL PHN_SetFieldTest(void) PHN_NOEXCEPT;
PHN_API PHN_ERROR PHN_CALL PHN_SetLocationMode(void) PHN_NOEXCEPT;
PHN_API PHN_ERROR PHN_CALL PHN_SetMassStorageMode(void) PHN_NOEXCEPT;
PHN_API PHN_ERROR PHN_CALL PHN_SetNDISMode(void) PHN_NOEXCEPT;
PHN_API PHN_ERROR PHN_CALL PHN_SetPower(void) PHN_NOEXCEPT;
PHN_API PHN_ERROR PHN_CALL PHN_SetPowerState(void) PHN_NOEXCEPT;
PHN_API PHN_ERROR PHN_CALL PHN_Upgrade(void) PHN_NOEXCEPT;

#ifdef __cplusplus
}
#endif

#endif
