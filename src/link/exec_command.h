// One request and its reply: the layer that services and probes call. ExecCmd holds the command lock from the first
// byte written to the last one read, so all traffic with the handset takes turns. WriteDevice and ReadDevice are its
// two halves and hold no lock of their own.
#pragma once

#include <windows.h>

#include "link/open_port.h"
#include "link/sync.h"

// The command lock, g_csCommand, made on attach and destroyed on detach.
void CreateCommandLock();
void DestroyCommandLock();

// The reply is stored in pReply, *pdwRetBufferLen says how many bytes of it count, *pdwErrSts receives the system error
// code of a failed port operation, 0 if none. dwTimeout (milliseconds) is for each read of the port. pPort is the port
// to use; null means the current one. hDevice must be the handle of that port. False if the exchange failed, logged.
bool ExecCmd(HANDLE hDevice, const void* pRequest, DWORD dwRequestLen, void* pReply, DWORD dwReplySize,
             DWORD* pdwRetBufferLen, DWORD* pdwErrSts, DWORD dwTimeout, COpenPort* pPort);

bool WriteDevice(HANDLE hDevice, const void* pRequest, DWORD dwRequestLen, DWORD* pdwErrSts, COpenPort* pPort);
bool ReadDevice(HANDLE hDevice, void* pReply, DWORD dwReplySize, DWORD* pdwReplyLen, DWORD dwTimeout, DWORD* pdwErrSts,
                COpenPort* pPort);
