// The message service: counts, lists, sends, saves, deletes and marks the handset's short messages, one or two
// exchanges each, and keeps the place of the one listing. A listing asks for the message after the last one returned;
// every other operation ends it. All methods may run on any host threads at once. (windows.h renames SendMessage and
// GetMessage to the system's 8-bit variants, here as in every file that includes this one.)
#pragma once

#include <cstdint>
#include <span>

#include <windows.h>

#include "common/lock.h"
#include "phnnrv.h"

class CSMS
{
public:
    CSMS() = default;
    virtual ~CSMS() = default;
    CSMS(const CSMS&) = delete;
    CSMS& operator=(const CSMS&) = delete;

    // False, with a count of 0, if the handset does not say.
    bool GetMessageCount(HANDLE hDevice, int32_t eType, uint32_t* puCount);

    // The PDU of the host's message goes to the handset, whose index for it comes back. On false, *pError says why and
    // the record is as before.
    virtual bool SendMessage(HANDLE hDevice, PHN_SMS_MESSAGE* pMessage, PHN_ERROR* pError);
    virtual bool SaveMessage(HANDLE hDevice, PHN_SMS_MESSAGE* pMessage, PHN_ERROR* pError);

    // A message as PDU, in a buffer that the caller has cleared; PHN_ERROR_NO_MORE_MESSAGES at the end. When the buffer
    // is too small the listing stays where it was and uSizeofData says what the PDU needs.
    bool GetFirstMessage(HANDLE hDevice, int32_t eType, PHN_SMS_MESSAGE* pMessage, PHN_ERROR* pError);
    bool GetNextMessage(HANDLE hDevice, PHN_SMS_MESSAGE* pMessage, PHN_ERROR* pError);

    bool DeleteMessage(HANDLE hDevice, DWORD dwIndex, PHN_ERROR* pError);
    bool DeleteAllMessages(HANDLE hDevice, int32_t eType, PHN_ERROR* pError);
    virtual bool SetMessageStatus(HANDLE hDevice, DWORD dwIndex, DWORD dwRead, PHN_ERROR* pError);

private:
    void EndListing();
    bool OpenBrew(HANDLE hDevice, PHN_ERROR* pError);
    bool GetMessage(HANDLE hDevice, DWORD dwCommand, std::span<const uint8_t> Parameters, PHN_SMS_MESSAGE* pMessage,
                    PHN_ERROR* pError);

    COwnedCriticalSection m_csListing; // a leaf, never held across an exchange
    bool m_bListing PHN_GUARDED_BY(m_csListing) = false;
    DWORD m_dwLastIndex PHN_GUARDED_BY(m_csListing) = 0;
    int32_t m_eType PHN_GUARDED_BY(m_csListing) = 0;
};
