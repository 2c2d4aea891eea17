// The handset's message records, and a message in memory. Used by the message service and its PDU conversion alone.
#pragma once

#include <string>

#include <windows.h>

#include "common/date_time.h"
#include "common/packed.h"
#include "common/wide_field.h"
#include "link/command.h"

inline constexpr size_t kNumberUnits = 36; // of an address or a call-back number

// The fixed part of a message. Its body, dwBodySize bytes, follows it.
struct PHN_PACKED SMS_RECORD
{
    uint32_t dwIndex;
    uint32_t dwReserved4; // the handset's; 0 in a record that is sent
    uint32_t dwReplyOption;
    DEV_DATE_TIME rcTime; // UTC
    WideField<kNumberUnits> szAddress;
    WideField<kNumberUnits> szCallbackNumber;
    uint32_t dwPriority;
    uint32_t dwBodySize; // the text's terminator included; 0: no body
};
static_assert(sizeof(SMS_RECORD) == 172);
PHN_OFFSET(SMS_RECORD, dwIndex, 0);
PHN_OFFSET(SMS_RECORD, dwReserved4, 4);
PHN_OFFSET(SMS_RECORD, dwReplyOption, 8);
PHN_OFFSET(SMS_RECORD, rcTime, 12);
PHN_OFFSET(SMS_RECORD, szAddress, 20);
PHN_OFFSET(SMS_RECORD, szCallbackNumber, 92);
PHN_OFFSET(SMS_RECORD, dwPriority, 164);
PHN_OFFSET(SMS_RECORD, dwBodySize, 168);

using SMS_RET_INFO_RES = DEV_RX_NUMBER;  // the reply to a count, and to a listing step, which counts its messages
using SMS_RET_INDEX_RES = DEV_RX_NUMBER; // the index under which a sent or saved message was stored

// A message in memory: the body is a text of its own, dwBodySize / 2 units with whatever terminator they hold.
struct SMS_MESSAGE
{
    SMS_RECORD rcRecord{};
    std::u16string strBody;
};
