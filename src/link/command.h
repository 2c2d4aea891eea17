// The vocabulary that all requests and replies share: command numbers, the two headers, sizes and time-outs. Requests
// are RequestHeader and the command's parameters; replies are DEV_RX_HEADER and the command's record.
#pragma once

#include <windows.h>

#include "common/packed.h"

inline constexpr DWORD kMaxRequest = 8193;      // longest request that is written, and the longest frame
inline constexpr DWORD kMaxReply = 50001;       // largest reply buffer that is read into
inline constexpr DWORD kReplyBufferSize = 8193; // the services' reply buffer, a terminating zero included
inline constexpr DWORD kServiceTimeout = 15000; // milliseconds that one read of a reply waits
inline constexpr DWORD kDeleteAllTimeout = 301000;

// Command numbers, each named after the operation that it carries.
inline constexpr DWORD kCommandStartup = 1; // the port probe sends it too
inline constexpr DWORD kCommandShutdown = 2;
inline constexpr DWORD kCommandConnectionInfo = 3;
inline constexpr DWORD kCommandNetworkInfo = 4;
inline constexpr DWORD kCommandBatteryInfo = 5;
inline constexpr DWORD kCommandDeviceInfo = 6;
inline constexpr DWORD kCommandRadioPower = 8;
inline constexpr DWORD kCommandLock = 9;
inline constexpr DWORD kCommandChangeLockCode = 10;
inline constexpr DWORD kCommandGetParameters = 12;
inline constexpr DWORD kCommandSetParameters = 13;
inline constexpr DWORD kCommandMessageCount = 15;
inline constexpr DWORD kCommandSendMessage = 16;
inline constexpr DWORD kCommandFirstMessage = 17;
inline constexpr DWORD kCommandNextMessage = 18;
inline constexpr DWORD kCommandSaveMessage = 19;
inline constexpr DWORD kCommandDeleteMessage = 20;
inline constexpr DWORD kCommandDeleteAllMessages = 21;
inline constexpr DWORD kCommandSetMessageStatus = 22;
inline constexpr DWORD kCommandCallEntryCount = 25;
inline constexpr DWORD kCommandFirstCallEntry = 26;
inline constexpr DWORD kCommandNextCallEntry = 27;
inline constexpr DWORD kCommandClearCallEntries = 28;
inline constexpr DWORD kCommandGetEvent = 30;
inline constexpr DWORD kCommandSetEvent = 31;
inline constexpr DWORD kCommandDeleteEvent = 32;
inline constexpr DWORD kCommandDeleteAllEvents = 33;
inline constexpr DWORD kCommandFieldSizes = 34;
inline constexpr DWORD kCommandGetContact = 35;
inline constexpr DWORD kCommandSetContact = 36;
inline constexpr DWORD kCommandDeleteContact = 37;
inline constexpr DWORD kCommandDeleteAllContacts = 38;
inline constexpr DWORD kCommandPictureID = 39;
inline constexpr DWORD kCommandRingerID = 40;
inline constexpr DWORD kCommandGroup = 41;
inline constexpr DWORD kCommandActivate = 45;
inline constexpr DWORD kCommandOpenMessageStore = 46;
inline constexpr DWORD kCommandPhoneVariance = 49;

struct PHN_PACKED RequestHeader
{
    uint32_t dwCommand;
    uint16_t wOne;
};
static_assert(sizeof(RequestHeader) == 6);
PHN_OFFSET(RequestHeader, dwCommand, 0);
PHN_OFFSET(RequestHeader, wOne, 4);

constexpr RequestHeader MakeRequest(DWORD dwCommand)
{
    return {.dwCommand = dwCommand, .wOne = 1};
}

struct PHN_PACKED DEV_RX_HEADER
{
    uint32_t dwHeader0;
    uint16_t wHeader4;
    uint16_t wStatus; // 0: the handset carried out the command
};
static_assert(sizeof(DEV_RX_HEADER) == 8);
PHN_OFFSET(DEV_RX_HEADER, dwHeader0, 0);
PHN_OFFSET(DEV_RX_HEADER, wHeader4, 4);
PHN_OFFSET(DEV_RX_HEADER, wStatus, 6);

// What most commands are answered with: a result, and a count of the records that follow, if the handset keeps its
// word, or an id. Each service names it as its handset does.
struct PHN_PACKED DEV_RX_NUMBER
{
    DEV_RX_HEADER rcRxHeader;
    uint32_t dwResult; // 0: done
    uint32_t dwNumber;
};
static_assert(sizeof(DEV_RX_NUMBER) == 16);
PHN_OFFSET(DEV_RX_NUMBER, rcRxHeader, 0);
PHN_OFFSET(DEV_RX_NUMBER, dwResult, 8);
PHN_OFFSET(DEV_RX_NUMBER, dwNumber, 12);
