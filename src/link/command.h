// The vocabulary that all requests and replies share: command numbers, the two headers, sizes and time-outs. Requests
// are DEV_TX_HEADER and the command's parameters; replies are DEV_RX_HEADER and the command's record.
#pragma once

#include <windows.h>

#include "common/packed.h"

inline constexpr DWORD kMaxRequest = 8193;  // longest request that is written, and the longest frame
inline constexpr DWORD kMaxReply = 50001;   // largest reply buffer that is read into
inline constexpr DWORD kReplyBuffer = 8193; // the services' reply buffer, a terminating zero included
inline constexpr DWORD kTimeout = 15000;    // milliseconds that one read waits
inline constexpr DWORD kDeleteAllTimeout = 301000;
inline constexpr DWORD kProbeTimeout = 3000;

// Command numbers, each named after the operation that it carries.
inline constexpr DWORD kCmdStartup = 1; // the port probe sends it too
inline constexpr DWORD kCmdShutdown = 2;
inline constexpr DWORD kCmdConnectionInfo = 3;
inline constexpr DWORD kCmdNetworkInfo = 4;
inline constexpr DWORD kCmdBatteryInfo = 5;
inline constexpr DWORD kCmdDeviceInfo = 6;
inline constexpr DWORD kCmdRadioPower = 8;
inline constexpr DWORD kCmdLock = 9;
inline constexpr DWORD kCmdChangeLockCode = 10;
inline constexpr DWORD kCmdGetParameters = 12;
inline constexpr DWORD kCmdSetParameters = 13;
inline constexpr DWORD kCmdMessageCount = 15;
inline constexpr DWORD kCmdSendMessage = 16;
inline constexpr DWORD kCmdFirstMessage = 17;
inline constexpr DWORD kCmdNextMessage = 18;
inline constexpr DWORD kCmdSaveMessage = 19;
inline constexpr DWORD kCmdDeleteMessage = 20;
inline constexpr DWORD kCmdDeleteAllMessages = 21;
inline constexpr DWORD kCmdSetMessageStatus = 22;
inline constexpr DWORD kCmdCallEntryCount = 25;
inline constexpr DWORD kCmdFirstCallEntry = 26;
inline constexpr DWORD kCmdNextCallEntry = 27;
inline constexpr DWORD kCmdClearCallEntries = 28;
inline constexpr DWORD kCmdGetEvent = 30;
inline constexpr DWORD kCmdSetEvent = 31;
inline constexpr DWORD kCmdDeleteEvent = 32;
inline constexpr DWORD kCmdDeleteAllEvents = 33;
inline constexpr DWORD kCmdFieldSizes = 34;
inline constexpr DWORD kCmdGetContact = 35;
inline constexpr DWORD kCmdSetContact = 36;
inline constexpr DWORD kCmdDeleteContact = 37;
inline constexpr DWORD kCmdDeleteAllContacts = 38;
inline constexpr DWORD kCmdPictureID = 39;
inline constexpr DWORD kCmdRingerID = 40;
inline constexpr DWORD kCmdGroup = 41;
inline constexpr DWORD kCmdActivate = 45;
inline constexpr DWORD kCmdOpenMessageStore = 46;
inline constexpr DWORD kCmdPhoneVariance = 49;

struct PHN_PACKED DEV_TX_HEADER
{
    uint32_t dwCommand;
    uint16_t wOne = 1;
};
static_assert(sizeof(DEV_TX_HEADER) == 6);
PHN_OFFSET(DEV_TX_HEADER, dwCommand, 0);
PHN_OFFSET(DEV_TX_HEADER, wOne, 4);

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
