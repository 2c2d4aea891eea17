// The two AT-command helpers of a modem port, used while such a port is being opened. Both are whole exchanges on the
// current port, and both take an answer with the word "ERROR" in it, in any mix of cases, for a failure.
#pragma once

#include <windows.h>

// Sends a command and stores what its answer says behind "NAME: ", or the whole answer if it has no colon. Nothing is
// terminated; the caller's buffer is zeroed. False if the exchange failed, the answer is an error or does not fit.
bool GetATCmdStr(HANDLE hDevice, const char* pCommand, DWORD dwCommandLen, char* pAnswer, DWORD dwAnswerSize,
                 DWORD* pdwAnswerLen, DWORD* pdwErrSts);

// Switches the handset's interface mode; an empty answer counts as success.
bool SetPhoneMode(HANDLE hDevice, int nMode);
